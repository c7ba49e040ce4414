#pragma once

#include <cstdarg>
#include <cstdio>

#include <kora/Kora.h>

/// @file
/// Strings in buffers of fixed size, and the names, numbers and patterns of designs.
///
/// **Sized strings.** A text is a pointer and the size behind it. It ends at its NUL and is never longer than the size:
/// one that fills its buffer has no NUL. A negative size is unbounded, the NUL alone ends the text. A null pointer is
/// an empty text.
///
/// **Destinations.** At most `size` characters are written, and a NUL behind them where one fits; a result of exactly
/// `size` characters stands without a NUL and is not an error. A destination with a negative size is unbounded and
/// always ended. To a null destination nothing is written.
///
/// **Characters** are plain bytes, ordered as signed 8-bit values: 0x80 to 0xFF come before all of ASCII. Where case
/// does not matter, the letters a-z count as A-Z; no other byte folds.
///
/// **The string error flag** is one for the whole process. An operation that cuts its result sets it; every other
/// operation that takes a sized string clears it, so it is read right after the call that matters. Operations on
/// CString also set it when memory runs out.
///
/// A CString argument is as long as it says, NULs inside it included, except where told otherwise.
///
/// All of this belongs to the user-interface thread.

class TskKoraModule;

/// Length of a sized string. Null has length 0 and leaves the string error flag alone; otherwise the flag is cleared.
KORA_API int StrLength(const char* s, int size);

/// Copies a text that ends at its NUL. The flag tells whether characters were left over.
///
///     "abc" into 4 bytes    abc and a NUL
///     "abc" into 3 bytes    abc, no NUL
///     "abc" into 2 bytes    ab, no NUL, flag set
KORA_API void StrAssign(const char* src, char* dst, int size);

/// Copies a sized string.
KORA_API void StrAssign(const char* src, int srcSize, char* dst, int size);

/// Makes @p dst the sized string, which may be a part of it. Unchanged, with the flag set, when memory runs out.
KORA_API void StrAssign(const char* src, int srcSize, CString& dst);

/// Copies @p src up to its first NUL.
KORA_API void StrAssign(const CString& src, char* dst, int size);

/// Appends a text that ends at its NUL to the sized string in @p dst. The flag tells whether characters were left over.
KORA_API void StrAppend(const char* src, char* dst, int size);

/// Appends a sized string.
KORA_API void StrAppend(const char* src, int srcSize, char* dst, int size);

/// Appends a sized string, which may be a part of @p dst. Unchanged, with the flag set, when memory runs out.
KORA_API void StrAppend(const char* src, int srcSize, CString& dst);

/// Makes @p dst the first text followed by the second. @p dst may be the first text's buffer, not the second's.
KORA_API void StrConcat(const char* a, int aSize, const char* b, int bSize, char* dst, int size);

/// Copies @p count characters from index @p start of @p src, whose own end is not looked for: they have to be there.
/// A count of 0 or less copies none.
KORA_API void StrCopy(const char* src, int start, int count, char* dst, int size);

/// Inserts a sized string into the one in @p dst, before index @p position, which may be its length and counts as 0
/// when negative. When the result would not fit, or the position is beyond the length, nothing changes and the flag is
/// set.
KORA_API void StrInsert(const char* src, int srcSize, char* dst, int size, int position);

/// Removes @p count characters at index @p position, which counts as 0 when negative; fewer where the text ends before.
/// A position at or beyond the length changes nothing and sets the flag. A text that filled its buffer ends with a NUL
/// afterwards.
KORA_API void StrDelete(char* s, int size, int position, int count);

/// First index of the sought text in the other, byte by byte, or -1. An empty text is found at 0. Takes time linear in
/// both texts.
KORA_API int StrPos(const char* sought, int soughtSize, const char* s, int size);

/// -1, 0 or 1: the first differing byte decides, then the shorter text comes first.
KORA_API int StrCompare(const char* a, int aSize, const char* b, int bSize);

/// True when both texts are equal; the first one ends at its NUL.
KORA_API bool StrEqualStr(const char* a, const char* b, int bSize, bool caseSensitive);

/// True when both texts are equal.
KORA_API bool StrEqualStr(const char* a, int aSize, const char* b, int bSize, bool caseSensitive);

/// A copy on the heap of a text that ends at its NUL. The caller frees it with `operator delete`. Null for null, and
/// when memory runs out.
KORA_API char* StrNew(const char* s);

/// String @p id of the module's resources, cut to 511 characters, as a copy that the caller frees with
/// `operator delete`. The module is found by its name, so of two with one name it is the first. Null when the module is
/// null or not connected, when it has no such string, and when memory runs out.
KORA_API char* StrRes(TskKoraModule* module, int id);

/// The sized string as a CString; empty, with the flag set, when memory runs out.
KORA_API CString StrToCString(const char* s, int size);

/// The string error flag, which is then cleared.
KORA_API bool StrStringError();

/// True at the first call, which clears the string error flag; false at every later one.
KORA_API bool StrInit();

/// Does nothing; the counterpart of StrInit().
KORA_API void StrExit();

/// Writes the low 32 bits of @p value as a signed decimal number, as StrAssign() does; @p zeroPadded fills it with
/// zeros to five characters, the sign included.
KORA_API void StrInt2Dec(long value, bool zeroPadded, char* dst, int size);

/// The number in a text: blanks, an optional "-", digits, and directly behind them "H" for hexadecimal or "B" for
/// binary; decimal otherwise. What stands behind the next blank does not matter. A character that is no digit of the
/// radix ends the number, and what was read until then counts. Lower-case letters are neither digits nor radix letters.
/// Wraps at 32 bits.
///
///     "  -7"  -7      "1010B"  10      "FFH"  255      "12x"  12
///     "1Fh"   1       "ffh"    0       "1B"   1        "H"    0
KORA_API int StrDec2Int(const char* text, int size);

/// The same in 64 bits.
KORA_API std::int64_t StrDec2Int64(const char* text, int size);

/// Writes a logic value, given as bits with the most significant first, in another radix from 2 to 36. "0" and "1" are
/// bits; every other character is an unknown bit, "Z" one of high impedance. Letters come out in lower case unless
/// @p upperCase is true.
///
/// Radix 4, 8, 16 and 32 convert bit groups of 2, 3, 4 and 5, the first group holding what is left over. A group with
/// unknown bits becomes "z" when all of these are "Z", else "x". A value of more than 64 bits that was asked for in
/// another radix, 2 and 10 included, comes out in hexadecimal. What does not fit is left out without setting the flag.
///
/// Radix 2 copies up to 64 bits as StrAssign() does.
///
/// Every other radix sums the bits, unknown ones as 0; with unknown bits each digit of the sum becomes "x", or "z" when
/// all of these are "Z". For n bits the destination must hold n + 1 characters for radix 3, n/2 + 1 up to radix 7,
/// n/3 + 1 up to 15, n/4 + 1 up to 31 and n/5 + 1 above, else nothing is written.
///
/// Nothing is written when a pointer is null, a size is 0 or the radix is none. Source and destination may be the same
/// buffer.
///
///     "101" radix 16  5        "1Z10X" radix 4  1zx       "1111011" radix 10  123
KORA_API void StrBinaryStrToRadix(const char* src, int srcSize, char* dst, int size, int radix, bool upperCase);

/// The same into a result with room for one character more than the source; empty where nothing would be written and
/// when memory runs out.
KORA_API CString StrBinaryStrToRadix(const CString& src, int radix, bool upperCase);

/// Adds @p delta to the last digit run of a name, in place. A name without digits gets a "1" appended. Unless
/// @p keepWidth is true, a result of two digits or more that begins with "0" loses that one zero. A borrow out of the
/// run is dropped.
///
///     "A9"  +1  A10        "A10" -1  A9, or A09 with the width kept       ""   +1  1
///     "A1B" +1  A2B        "A0"  -1  A9                                   "X"  +1  X1
///
/// Each digit passes on a carry of one at most, so a delta beyond -9 to 9 leaves a last character that is no digit.
/// Where a further digit is needed and the buffer is full, the flag is set: the name stands with its run counted on but
/// without that digit.
KORA_API void StrIncName(char* name, int size, int delta, bool keepWidth);

/// The same for a CString up to its first NUL, which grows as needed. Unchanged, with the flag set, when memory runs
/// out.
KORA_API void StrIncName(CString& name, int delta, bool keepWidth);

/// Splits a name at its last digit run into prefix, number and suffix. A name without digits has an empty prefix,
/// number 0, no digits and is all suffix. The flag is set when a part was cut. @p number and @p digits may be null.
///
///     "D12Q"  prefix D, number 12, two digits, suffix Q
///
/// The first five digits from the right weigh 1 to 10000, all before them 10000 too: "A123456" has number 33456. At
/// most nine digits are taken; the ones before them stay in the prefix.
KORA_API void StrSplitName(const char* name, int size, char* prefix, int prefixSize, char* suffix, int suffixSize,
                           int* number, int* digits);

/// The same for a CString; the parts may be the name itself. Both are empty, with the flag set, when memory runs out.
KORA_API void StrSplitName(const CString& name, CString& prefix, CString& suffix, int* number, int* digits);

/// -1, 0 or 1 in the order a person expects: digit runs compare as numbers (unsigned 32-bit, wrapping), everything else
/// byte by byte. An empty name comes after all others. Names that are equal so far are compared by StrCompare(), so
/// "A01" comes before "A1", and "A1" before "a1" when case does not matter. StrSortNameList() has another order.
KORA_API int StrCompareName(const char* a, int aSize, const char* b, int bSize, bool caseSensitive);

/// True when the pattern matches the whole text: "*" is any run of characters, the empty one too; "?" is one character;
/// "#" is one or more decimal digits; every other character stands for itself. There is no escape character. Takes time
/// proportional to pattern times text at most, whatever they hold. False when memory runs out; only "#" beside other
/// open characters needs any.
///
///     "R#"  matches R12, not R or Rx        "A*"  matches A        "?"  does not match an empty text
KORA_API bool StrComparePattern(const char* pattern, int patternSize, const char* s, int size, bool caseSensitive);

/// Puts @p tags, one for each name, into the order of the names: by prefix; names with a number before those without;
/// by number; by suffix; parts as StrSplitName() gives them, case-sensitive. Callers pass 0, 1, 2, ... and read the
/// permutation. Where one array is longer, only as many entries as the other has take part and the rest stays.
/// Unchanged, with the flag set, when memory runs out.
KORA_API void StrSortNameList(const CStringArray& names, std::vector<unsigned int>& tags);

/// Writes the names one after the other, with a blank between two, and draws three or more with neighbouring numbers,
/// upwards or downwards, together; with @p sortFirst in the order of StrSortNameList().
///
///     A1 A2 A3 B C5 C6   A1..A3 B C5 C6
///     A3 A2 A1           A3..A1
///
/// Names in a range share prefix and suffix; names with "[" or "]" and numbers above 32767 are not drawn together.
/// Numbers are those of StrSplitName(), whatever the digits: "A9 A10 A011" is "A9..A011", and A100001 follows A10000.
/// Empty, with the flag set, when memory runs out.
KORA_API void StrMakeNameListString(const CStringArray& names, CString& result, bool sortFirst);

/// Reads the next item of a line from index @p position (a negative one counts as 0), which moves to the item after it.
/// Items stand between blanks, control characters and commas; one in double or single quotes holds anything but that
/// quote, may be empty, and runs to the end of the line when its quote is not closed; the next one begins right behind
/// it. A comma that begins the line makes an empty item, other commas do not. Bytes from 0x80 up are ordinary
/// characters. False at the end of the line, with @p item unchanged, or when memory runs out.
KORA_API bool StrGetItem(int& position, const CString& line, CString& item);

/// Takes a text apart at each delimiter. A call with a text copies it and gives the first token; calls with null give
/// the others, empty ones between two delimiters included. The call after the last token frees what @p state holds,
/// sets it to null and returns null; tokens are valid until then. Null also when @p state is null or memory runs out.
/// A call with a text does not free what @p state held before.
KORA_API char* StrTok(const char* text, char delimiter, void** state);

/// Index of the first character that is not in the set, -1 when all are or the text is empty.
KORA_API int StrVerify(const char* s, int size, const char* set, int setSize);

/// The same for a CString.
KORA_API int StrVerify(const CString& s, const char* set, int setSize);

/// Replaces every run of characters other than A-Z, a-z and 0-9 by one "_".
KORA_API void StrConvertNonNameChars(CString& s);

/// Formatted output into a buffer. No size is applied: the caller provides room for all of it and the NUL.
///
/// The engine is the library's own and prints the same on every platform: the conversions d i u o x X c s p f F e E g
/// G a A b B n and %, the flags - + blank # 0, width and precision (also as *, where a negative width means flag - and
/// a negative precision none), and the lengths hh h l ll j z t L, all as in C. Sizes are those of the platform: long
/// has 32 bits on Windows. Floating point is exact and rounded to the nearest, of two equally near to the even one;
/// there is no locale.
///
///     "%05.1f"  3.25         003.2
///     "%s"      null         (null), or nothing with a precision below 6
///     "%p"      null         (nil)
///     "%n"      a pointer    nothing, and nothing is stored
///     "%ls"     wide text    its characters, which have to be below 128
///     "%-5k"    no argument  %-5k: there is no such conversion
///
/// A text that is printed may stand at the start of the buffer itself if it is printed first.
///
/// @return the number of characters written, the NUL included. -1 when @p buffer or @p format is null, when the format
/// ends within a conversion, when a width, a precision or the whole is longer than an int can say, and at a wide
/// character above 127; what comes before is in the buffer then, with its NUL.
KORA_API int Strsprintf(char* buffer, const char* format, ...);

/// The same with the arguments as a list, which is used up.
KORA_API int Strvsprintf(char* buffer, const char* format, va_list args);

/// Formatted output to standard output: Strfprintf() with that stream.
KORA_API int Strprintf(const char* format, ...);

/// The same with the arguments as a list, which is used up.
KORA_API int Strvprintf(const char* format, va_list args);

/// Formatted output to a C stream, as Strsprintf() prints it, without a NUL.
///
/// @return the number of characters written. -1 for a null stream, where writing fails, and where Strsprintf() answers
/// -1; some characters may be written then.
KORA_API int Strfprintf(std::FILE* stream, const char* format, ...);

/// The same with the arguments as a list, which is used up.
KORA_API int Strvfprintf(std::FILE* stream, const char* format, va_list args);

/// Reads what StrMakeNameListString() writes: names between blanks (any number of them; control characters count as
/// blanks), and ranges, which stand for every name from the first to the last, upwards or downwards. What @p names held
/// is replaced.
///
///     A1..A3 B C5    A1 A2 A3 B C5        A08..A10Q      A08..A10Q, which is a name: the suffixes differ
///     A11..A9        A11 A10 A9           D[0]..D[7]     D[0]..D[7], since names with brackets are not drawn together
///     A08..A10       A08 A09 A10          A1..B3         A1..B3
///     A098..A101     A098 A099 A100 A101
///
/// Of a range both names have the same prefix and suffix, and different numbers; the names between them get as many
/// digits as the shorter of the two. Numbers are read as they stand, unlike by StrSplitName(): up to 64 bits behind the
/// digits that both begin with. Greater ones stand for too many names.
///
/// Lists come back as they were, except for names that are empty or hold blanks, names that look like a range, ranges
/// over names of mixed width (A1 A02 A3), and ranges that were drawn across a number above 32767:
/// StrMakeNameListString() counts in 16 bits, so A65536, A1 and A2 become "A65536..A2".
///
/// @param most how many names the list may stand for at most. Its ranges may stand for 256 characters for each of them,
///             so that no list takes more memory than its caller meant.
/// @return false, with @p names as it was, when the list stands for more, and, with the flag set, when memory runs out.
KORA_API bool StrExpandNameList(const CString& list, CStringArray& names, unsigned int most = 65536);
