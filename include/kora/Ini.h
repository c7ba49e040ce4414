#pragma once

#include <kora/Kora.h>

class FilePath;
class WinFont;
struct LRCT;

enum eIniFile : int { eIniMain, eIniState };

KORA_API bool IniGetString(eIniFile file, const char* section, const char* key, const char* def, char* buffer, int size,
                           bool unquote);
KORA_API bool IniGetString(eIniFile file, const char* section, const char* key, const char* def, CString& text,
                           bool unquote);
KORA_API bool IniGetString(eIniFile file, const char* section, const char* key, CString& text, bool unquote);
KORA_API bool IniGetBool(eIniFile file, const char* section, const char* key, bool def);
KORA_API bool IniGetBool(eIniFile file, const char* section, const char* key, bool def, bool& value);
KORA_API bool IniGetBool(eIniFile file, const char* section, const char* key, int def, int& value);
KORA_API bool IniGetInt(eIniFile file, const char* section, const char* key, int def, int& value);
KORA_API bool IniGetInt(eIniFile file, const char* section, const char* key, int& value);
KORA_API bool IniGetLong(eIniFile file, const char* section, const char* key, long def, long& value);
KORA_API bool IniGetLong(eIniFile file, const char* section, const char* key, long& value);
KORA_API bool IniGetShort(eIniFile file, const char* section, const char* key, short def, short& value);
KORA_API bool IniGetShort(eIniFile file, const char* section, const char* key, short& value);
KORA_API bool IniGetColor(eIniFile file, const char* section, const char* key, int def, int& value);
KORA_API bool IniGetRect(eIniFile file, const char* section, const char* key, LRCT& def, LRCT& value);
KORA_API bool IniGetFont(eIniFile file, const char* section, const char* key, WinFont& def, WinFont& value);
KORA_API bool IniGetFilePath(eIniFile file, const char* section, const char* key, const char* def, FilePath& value);
KORA_API bool IniGetFilePath(eIniFile file, const char* section, const char* key, FilePath& def, FilePath& value);
KORA_API bool IniGetFilePath(eIniFile file, const char* section, const char* key, FilePath& value);
KORA_API bool IniSetString(eIniFile file, const char* section, const char* key, const char* value);
KORA_API bool IniSetBool(eIniFile file, const char* section, const char* key, bool value);
KORA_API bool IniSetBool(eIniFile file, const char* section, const char* key, int value);
KORA_API bool IniSetInt(eIniFile file, const char* section, const char* key, int value);
KORA_API bool IniSetLong(eIniFile file, const char* section, const char* key, long value);
KORA_API bool IniSetShort(eIniFile file, const char* section, const char* key, short value);
KORA_API bool IniSetRect(eIniFile file, const char* section, const char* key, LRCT& value);
KORA_API bool IniSetFont(eIniFile file, const char* section, const char* key, WinFont& value);
KORA_API bool IniSetFilePath(eIniFile file, const char* section, const char* key, FilePath& value);
KORA_API bool GetRegOption(const char* section, const char* name, int& value);
KORA_API bool GetRegOption(const char* section, const char* name, CString& value);
KORA_API bool GetRegOption(const char* section, const char* name, std::int64_t& value);
KORA_API bool GetRegOption(const char* section, const char* name, bool& value);
KORA_API bool GetRegOption(const char* section, const char* name, void* buffer, int size);
KORA_API int GetRegOptionLen(const char* section, const char* name);
KORA_API bool SetRegOption(const char* section, const char* name, int value);
KORA_API bool SetRegOption(const char* section, const char* name, const void* buffer, int size);
KORA_API bool SetRegOption(const char* section, const char* name, const CString& value);
KORA_API bool SetRegOption(const char* section, const char* name, std::int64_t value);
KORA_API bool SetRegOption(const char* section, const char* name, bool value);
