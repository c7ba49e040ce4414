#pragma once

#include <cstdarg>
#include <cstdio>

#include <kora/Kora.h>

class TskKoraModule;

KORA_API int StrLength(const char* s, int size);
KORA_API void StrAssign(const char* src, char* dst, int size);
KORA_API void StrAssign(const char* src, int srcSize, char* dst, int size);
KORA_API void StrAssign(const char* src, int srcSize, CString& dst);
KORA_API void StrAssign(const CString& src, char* dst, int size);
KORA_API void StrAppend(const char* src, char* dst, int size);
KORA_API void StrAppend(const char* src, int srcSize, char* dst, int size);
KORA_API void StrAppend(const char* src, int srcSize, CString& dst);
KORA_API void StrConcat(const char* a, int aSize, const char* b, int bSize, char* dst, int size);
KORA_API void StrCopy(const char* src, int start, int count, char* dst, int size);
KORA_API void StrInsert(const char* src, int srcSize, char* dst, int size, int position);
KORA_API void StrDelete(char* s, int size, int position, int count);
KORA_API int StrPos(const char* sought, int soughtSize, const char* s, int size);
KORA_API int StrCompare(const char* a, int aSize, const char* b, int bSize);
KORA_API bool StrEqualStr(const char* a, const char* b, int bSize, bool caseSensitive);
KORA_API bool StrEqualStr(const char* a, int aSize, const char* b, int bSize, bool caseSensitive);
KORA_API char* StrNew(const char* s);
KORA_API char* StrRes(TskKoraModule* module, int id);
KORA_API CString StrToCString(const char* s, int size);
KORA_API bool StrStringError();
KORA_API bool StrInit();
KORA_API void StrExit();
KORA_API void StrInt2Dec(long value, bool zeroPadded, char* dst, int size);
KORA_API int StrDec2Int(const char* text, int size);
KORA_API std::int64_t StrDec2Int64(const char* text, int size);
KORA_API void StrBinaryStrToRadix(const char* src, int srcSize, char* dst, int size, int radix, bool upperCase);
KORA_API CString StrBinaryStrToRadix(const CString& src, int radix, bool upperCase);
KORA_API void StrIncName(char* name, int size, int delta, bool keepWidth);
KORA_API void StrIncName(CString& name, int delta, bool keepWidth);
KORA_API void StrSplitName(const char* name, int size, char* prefix, int prefixSize, char* suffix, int suffixSize,
                           int* number, int* digits);
KORA_API void StrSplitName(const CString& name, CString& prefix, CString& suffix, int* number, int* digits);
KORA_API int StrCompareName(const char* a, int aSize, const char* b, int bSize, bool caseSensitive);
KORA_API bool StrComparePattern(const char* pattern, int patternSize, const char* s, int size, bool caseSensitive);
KORA_API void StrSortNameList(const CStringArray& names, std::vector<unsigned int>& tags);
KORA_API void StrMakeNameListString(const CStringArray& names, CString& result, bool sortFirst);
KORA_API bool StrGetItem(int& position, const CString& line, CString& item);
KORA_API char* StrTok(const char* text, char delimiter, void** state);
KORA_API int StrVerify(const char* s, int size, const char* set, int setSize);
KORA_API int StrVerify(const CString& s, const char* set, int setSize);
KORA_API void StrConvertNonNameChars(CString& s);
KORA_API int Strsprintf(char* buffer, const char* format, ...);
KORA_API int Strvsprintf(char* buffer, const char* format, va_list args);
KORA_API int Strprintf(const char* format, ...);
KORA_API int Strvprintf(const char* format, va_list args);
KORA_API int Strfprintf(std::FILE* stream, const char* format, ...);
KORA_API int Strvfprintf(std::FILE* stream, const char* format, va_list args);
