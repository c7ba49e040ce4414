#pragma once

#include <kora/Kora.h>

/// @file
/// Settings: two profile files of sections and entries, and options in the user's registry.
///
/// A profile file is plain 8-bit text, one record a line:
///
///     [ Frame ]        a section: only white space before `[` and behind `]`; white space inside goes; not empty
///     Zoomed = True    an entry: the printable characters before the first `=` are the key, the rest is the value;
///                      white space goes behind the key and on both sides of the value, and stays in front of the key
///     ; a comment      `;` or `/` is the very first character
///
/// Everything else is ignored, and kept when the file is written. Of a line 1023 characters are looked at, up to a NUL;
/// what stands beyond belongs to the line. Of a key that occurs twice in its section the first counts.
///
/// "ts.ini", the main profile, is where FileLocateFile() finds it, else in the document root. It is read once, at
/// start-up or first use; a value written to it is read back only after it was read again. Entry IncludeFolder of its
/// section "System" names a folder, which may be relative to the file's own and may have `%` references: the `*.ini`
/// files there are read behind it in name order, each with the files of its own IncludeFolder, and the first entry of a
/// key wins. A folder that is missing, or was had before, is passed over.
///
/// "tsstate.ini", the state file, is in the per-user data directory; with LocalStateFile = yes in section "System" of
/// the main profile in the operating system's directory. It is read from its start at every call.
///
/// Keys are found without regard to case, and so are sections of the state file, and of either file when it is written.
/// Sections of the main profile are found as they are written.
///
/// Null sections and keys are never found and never written.

class FilePath;
class WinFont;
struct LRCT;

/// The profile files. Any other value means the main profile too.
enum eIniFile : int { eIniMain, eIniState };

/// @name Getters
/// All answer whether the entry was found. The default is stored first, and stands when there is no such entry, or when
/// its text is no value of the kind wanted: that still counts as found. The forms without a default leave the output
/// alone instead.
/// @{

/// Copies the value's text, at most @p size - 1 characters and a NUL. A negative size is no bound, a size of 0 or a
/// null buffer gets nothing.
///
/// With @p unquote, a value of two characters or more that begins and ends with the same quote, single or double, loses
/// both. White space at the end of what was copied is removed. The default is copied as it stands, and may stand in the
/// buffer; null is empty.
///
///     "abc"    abc        'a    'a        ""    (empty)
KORA_API bool IniGetString(eIniFile file, const char* section, const char* key, const char* def, char* buffer, int size,
                           bool unquote);
/// The same into a counted string, of at most 31999 characters.
KORA_API bool IniGetString(eIniFile file, const char* section, const char* key, const char* def, CString& text,
                           bool unquote);
KORA_API bool IniGetString(eIniFile file, const char* section, const char* key, CString& text, bool unquote);
/// "yes", "on" and "true" are true, "no", "off" and "false" are false, without regard to case. This form answers the
/// value itself.
KORA_API bool IniGetBool(eIniFile file, const char* section, const char* key, bool def);
KORA_API bool IniGetBool(eIniFile file, const char* section, const char* key, bool def, bool& value);
KORA_API bool IniGetBool(eIniFile file, const char* section, const char* key, int def, int& value);
/// Decimal numbers, as far as the text goes: "12abc" is 12, and "abc" is none. All are read with 32 bits, where they
/// wrap; a short takes the low 16 of them, a wider long the number with its sign.
KORA_API bool IniGetInt(eIniFile file, const char* section, const char* key, int def, int& value);
KORA_API bool IniGetInt(eIniFile file, const char* section, const char* key, int& value);
/// See IniGetInt().
KORA_API bool IniGetLong(eIniFile file, const char* section, const char* key, long def, long& value);
KORA_API bool IniGetLong(eIniFile file, const char* section, const char* key, long& value);
/// See IniGetInt().
KORA_API bool IniGetShort(eIniFile file, const char* section, const char* key, short def, short& value);
KORA_API bool IniGetShort(eIniFile file, const char* section, const char* key, short& value);
/// A text that begins with "0x" or "0X" is a hexadecimal number, taken as the colour value itself; every other is a
/// name for WinGetColourByName(), and 0, not the default, when that knows no such colour. So red is "0x800000ff" here,
/// with its tag, and "0x0000ff" there.
KORA_API bool IniGetColor(eIniFile file, const char* section, const char* key, int def, int& value);
/// Four decimal numbers with white space between them: left, top, right, bottom.
KORA_API bool IniGetRect(eIniFile file, const char* section, const char* key, LRCT& def, LRCT& value);
/// The face in double quotes, then words without regard to case: "bold", "italic", "frame", "shadow", "rule" are the
/// styles, digits alone the size in points. Unknown words are passed over; without a size that of the default stays.
///
///     "Swiss Light" Bold 10
KORA_API bool IniGetFont(eIniFile file, const char* section, const char* key, WinFont& def, WinFont& value);
/// Sets the path from the value's text with FileStringSet(): a relative one starts from the default, one that is
/// refused leaves it. A null default, or one that is refused, is the null path.
KORA_API bool IniGetFilePath(eIniFile file, const char* section, const char* key, const char* def, FilePath& value);
KORA_API bool IniGetFilePath(eIniFile file, const char* section, const char* key, FilePath& def, FilePath& value);
KORA_API bool IniGetFilePath(eIniFile file, const char* section, const char* key, FilePath& value);

/// Entry @p line of a section, counted from 0 in file order over all its parts, entries of one key included. Outputs
/// are untouched when there is none. The trace is told "Section '...' found" and "Section '...': Line ... not found".
///
/// This form copies key and value as IniGetString() does, without unquoting.
KORA_API bool IniGetLine(eIniFile file, const char* section, short line, char* key, int keySize, char* value,
                         int valueSize);
KORA_API bool IniGetLine(eIniFile file, const char* section, short line, CString& key, CString& value);
/// The value alone, for lists whose keys do not matter.
KORA_API bool IniGetLine(eIniFile file, const char* section, short line, CString& value);

/// @}

/// @name Setters
/// @{

/// Writes an entry `key = value` to the file: in the place of the first entry of the key, else behind the section's
/// last entry, else with a new section at the end behind a blank line. Every other byte of the file stays as it is.
/// New lines end as the line before them does; a new file has line feeds.
///
/// A file that is not there is made, and so is the directory of the user's that it belongs in. The new text is written
/// beside it as "qznew96.ert", down to the disk, and then takes the old one's place, which meanwhile is kept as
/// "qzold96.ert" too: whenever the process ends, the old or the new text stands whole under the file's own name. A
/// file that is missing when it is first used gets the text of a "qzold96.ert" beside it.
///
/// @param value  null is the empty text.
/// @return whether the new text was written. When it then could not take the old one's place, the answer is still true:
///         callers rely on that, and the trace has the reason. False for section, key or value that would not be read
///         back under these names (a line feed, `=` in the key, white space around a name, a key that begins a
///         comment).
KORA_API bool IniSetString(eIniFile file, const char* section, const char* key, const char* value);
/// "True" or "False".
KORA_API bool IniSetBool(eIniFile file, const char* section, const char* key, bool value);
KORA_API bool IniSetBool(eIniFile file, const char* section, const char* key, int value);
/// In decimal, with 32 bits at the most: the upper half of a wider long is dropped.
KORA_API bool IniSetInt(eIniFile file, const char* section, const char* key, int value);
/// See IniSetInt().
KORA_API bool IniSetLong(eIniFile file, const char* section, const char* key, long value);
/// See IniSetInt().
KORA_API bool IniSetShort(eIniFile file, const char* section, const char* key, short value);
/// Left, top, right and bottom in decimal.
KORA_API bool IniSetRect(eIniFile file, const char* section, const char* key, LRCT& value);
/// As IniGetFont() reads it: `"Face" Bold Italic Frame Shadow Rule 12`, with the styles that the font has.
KORA_API bool IniSetFont(eIniFile file, const char* section, const char* key, WinFont& value);
/// The text of FileStringGet().
KORA_API bool IniSetFilePath(eIniFile file, const char* section, const char* key, FilePath& value);

/// @}

/// Names the main profile, in library or native form, a relative path from the working directory; null gives the usual
/// search back. Both profiles are then found and read anew.
/// @return false for a path that FilePath refuses, which changes nothing, or when memory ran out. A file that is not
///         there is no failure: everything is at its default, and the first setting makes it.
KORA_API bool IniMainFileSet(const char* path);
/// The main profile that is in force, in library form; the settings are started for it. It need not be there.
/// @return false, with @p path empty, when the system names no directory for it, or memory ran out.
KORA_API bool IniMainFileGet(CString& path);

/// @name Registry options
/// Values @p name under the current user's key "Software\Veltrane\Tessera5\" @p section; on POSIX a file each. All
/// answer false when the value cannot be had or written, with outputs untouched.
/// @{

/// Type REG_DWORD, or REG_BINARY of exactly 4 bytes.
KORA_API bool GetRegOption(const char* section, const char* name, int& value);
/// Type REG_SZ, up to its first NUL.
KORA_API bool GetRegOption(const char* section, const char* name, CString& value);
/// Type REG_QWORD, or REG_BINARY of exactly 8 bytes.
KORA_API bool GetRegOption(const char* section, const char* name, std::int64_t& value);
/// As an int: true when that is not 0.
KORA_API bool GetRegOption(const char* section, const char* name, bool& value);
/// The bytes of a value of any type as they are stored. False when they are more than @p size; of a larger buffer only
/// as many bytes are written.
KORA_API bool GetRegOption(const char* section, const char* name, void* buffer, int size);
/// The stored size in bytes, the terminator of a text included; 0 when there is no such value.
KORA_API int GetRegOptionLen(const char* section, const char* name);
/// Type REG_DWORD.
KORA_API bool SetRegOption(const char* section, const char* name, int value);
/// Type REG_BINARY. A null buffer only with size 0.
KORA_API bool SetRegOption(const char* section, const char* name, const void* buffer, int size);
/// Type REG_SZ, up to the first NUL, with its terminator.
KORA_API bool SetRegOption(const char* section, const char* name, const CString& value);
/// Type REG_QWORD.
KORA_API bool SetRegOption(const char* section, const char* name, std::int64_t value);
/// As an int, 1 or 0.
KORA_API bool SetRegOption(const char* section, const char* name, bool value);
/// As for a counted string. Without this form a text in quotes would count as true.
KORA_API bool SetRegOption(const char* section, const char* name, const char* value);
/// @}

/// @name Known keys, and checking profiles against them
/// Whoever reads a key says so in a table, and IniCheck() finds what nobody reads. The library's own keys are known at
/// all times; docs/settings.md lists them.
/// @{

/// What a value is read as: the getter of that name.
enum eIniKind : int {
    IniKindText = 0,
    IniKindBool = 1,
    IniKindInt = 2,
    IniKindLong = 3,
    IniKindShort = 4,
    IniKindColour = 5,
    IniKindRect = 6,
    IniKindFont = 7,
    IniKindPath = 8
};

/// One key that somebody reads: a row of a table for IniKnownKeysSet().
struct IniKnownKey {
    eIniFile file;        ///< in which profile it is looked for
    const char* section;  ///< as the getter is given it
    const char* key;      ///< null is every key of the section
    eIniKind kind;        ///< what its value is read as
    const char* def;      ///< as it would be written; null or empty when there is none
    const char* meaning;  ///< one line for people
};

/// Makes the @p count keys of a table known (@p on), or takes the table back. The texts are copied; the address is what
/// the table is known by, and one that is known already is read anew.
///
///     static constexpr IniKnownKey kKeys[] = {
///         {eIniMain, "Stations", "Announce", IniKindInt, "5", "seconds between two announcements"},
///     };
///     IniKnownKeysSet(kKeys, 1, true);    // in TskInit1(); with false in TskExit1()
///
/// What a module's entry has made known is taken back when the entry fails, and everything at the library's exit.
///
/// @return false, with nothing changed, for a null table or section, a negative count, and when memory ran out. Taking
///         back always answers true.
KORA_API bool IniKnownKeysSet(const IniKnownKey* keys, int count, bool on);
/// Known key @p index, counted from 0: the library's own first, then the tables in the order in which they came. The
/// texts, none of them null but a key that is every key, stand until its table is taken back.
/// @return false, with @p key untouched, when there are not as many.
KORA_API bool IniKnownKeyGet(int index, IniKnownKey& key);

/// What is wrong with a line.
enum eIniFault : int {
    IniFaultUnknownSection = 0,  ///< nobody knows the section
    IniFaultUnknownKey = 1,      ///< the section is known, and the key is not
    IniFaultNoSection = 2,       ///< an entry before the first section, which is never found
    IniFaultValue = 3            ///< the value's text is no value of the key's kind, or is not all of one
};

/// One line of a profile in which something is wrong.
struct IniFinding {
    eIniFault fault;     ///< what is wrong
    CString file;        ///< the whole path
    long line;           ///< of the file, from 1
    CString section;     ///< as it is written; empty when there is none
    CString key;         ///< empty for a section
    CString value;       ///< as it is written
    CString suggestion;  ///< what may be meant: a known section or key, or a value; empty when nothing is near
    CString text;        ///< what is wrong, in words: "no such key; is \"toolfolder\" meant?"
};

/// Checks a profile against the known keys of that file: the main one as it was read, with the files of its include
/// folders, the state file as it is now. What @p findings held is replaced by what is wrong, in the order of the files
/// and their lines.
///
/// A section that nobody knows may belong to a module that is not loaded. It is listed, once, when its name is nearly
/// that of a known one, which differs in letter case alone, say; with @p unknownSections all of them are. Its entries
/// are not listed.
///
/// Stricter than the getters, which make something of most texts, and take the default for the rest: a number goes to
/// the end of the text or to white space or `;`, and within the range of its kind; a hexadecimal colour is a valid one,
/// with its tag; of a font every word means something. An empty value is no fault, and texts have none. Nothing is said
/// about keys that stand twice, and about lines that are no entries.
///
/// @return whether the profile was checked, however much was found. False, with @p findings untouched, when memory ran
///         out. A file that is not there has no faults.
KORA_API bool IniCheck(eIniFile file, std::vector<IniFinding>& findings, bool unknownSections = false);

/// @}
