#include <kora/File.h>
#include <kora/Ini.h>

#include <exception>

#include "settings/Store.h"
#include "settings/ValueText.h"
#include "strings/Format.h"

using namespace kora;

bool IniSetString(eIniFile file, const char* section, const char* key, const char* value) {
    return profileSet(file, section, key, value);
}

bool IniSetBool(eIniFile file, const char* section, const char* key, bool value) {
    return IniSetString(file, section, key, value ? "True" : "False");
}

bool IniSetBool(eIniFile file, const char* section, const char* key, int value) {
    return IniSetBool(file, section, key, value != 0);
}

bool IniSetInt(eIniFile file, const char* section, const char* key, int value) try {
    return IniSetString(file, section, key, formatText("%d", value).c_str());
} catch (const std::exception&) {
    return false;
}

// A long is written as wide as an int: the files are the same wherever they are written.
bool IniSetLong(eIniFile file, const char* section, const char* key, long value) {
    return IniSetInt(file, section, key, static_cast<std::int32_t>(value));
}

bool IniSetShort(eIniFile file, const char* section, const char* key, short value) {
    return IniSetInt(file, section, key, value);
}

bool IniSetRect(eIniFile file, const char* section, const char* key, LRCT& value) try {
    return IniSetString(file, section, key, textOf(value).c_str());
} catch (const std::exception&) {
    return false;
}

bool IniSetFont(eIniFile file, const char* section, const char* key, WinFont& value) try {
    return IniSetString(file, section, key, textOf(value).c_str());
} catch (const std::exception&) {
    return false;
}

bool IniSetFilePath(eIniFile file, const char* section, const char* key, FilePath& value) {
    return IniSetString(file, section, key, value.FileStringGet());
}
