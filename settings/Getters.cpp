#include <kora/File.h>
#include <kora/Ini.h>
#include <kora/Win.h>

#include <exception>

#include "settings/CopyText.h"
#include "settings/Store.h"
#include "settings/ValueText.h"
#include "strings/WhiteSpace.h"

using namespace kora;

namespace {

// What the counted-string getters hand on, its NUL included.
constexpr std::size_t kLongestText = 32000;

/// Stores the default first. A text that says nothing leaves it, and counts as found.
template <class Value, class Decode>
bool getValue(eIniFile file, const char* section, const char* key, const Value& def, Value& value, Decode decode) try {
    value = def;
    const auto text = profileValue(file, section, key);
    if (!text) return false;
    if (const auto decoded = decode(*text)) value = static_cast<Value>(*decoded);
    return true;
} catch (const std::exception&) {
    return false;
}

}  // namespace

bool IniGetString(eIniFile file, const char* section, const char* key, const char* def, char* buffer, int size,
                  bool unquote) {
    const auto value = profileValue(file, section, key);
    if (!value) {
        copyText(def ? def : "", buffer, size);
        return false;
    }
    std::string_view text = unquote ? unquoted(*value) : *value;
    // Cut first: what was an inner blank may be the last one now.
    if (size > 0) text = trimEnd(text.substr(0, static_cast<std::size_t>(size) - 1));
    copyText(text, buffer, size);
    return true;
}

bool IniGetString(eIniFile file, const char* section, const char* key, const char* def, CString& text,
                  bool unquote) try {
    const auto value = profileValue(file, section, key);
    if (value)
        text = unquote ? unquoted(*value) : *value;
    else  // by way of a copy: it may stand in the text
        text = CString(std::string_view(def ? def : "").substr(0, kLongestText - 1));
    return value.has_value();
} catch (const std::exception&) {
    return false;
}

bool IniGetString(eIniFile file, const char* section, const char* key, CString& text, bool unquote) try {
    const auto value = profileValue(file, section, key);
    if (value) text = unquote ? unquoted(*value) : *value;
    return value.has_value();
} catch (const std::exception&) {
    return false;
}

bool IniGetBool(eIniFile file, const char* section, const char* key, bool def) {
    bool value = def;
    getValue(file, section, key, def, value, boolOf);
    return value;
}

bool IniGetBool(eIniFile file, const char* section, const char* key, bool def, bool& value) {
    return getValue(file, section, key, def, value, boolOf);
}

bool IniGetBool(eIniFile file, const char* section, const char* key, int def, int& value) {
    return getValue(file, section, key, def, value, boolOf);
}

bool IniGetInt(eIniFile file, const char* section, const char* key, int def, int& value) {
    return getValue(file, section, key, def, value, numberOf);
}

bool IniGetInt(eIniFile file, const char* section, const char* key, int& value) {
    return getValue(file, section, key, value, value, numberOf);
}

bool IniGetLong(eIniFile file, const char* section, const char* key, long def, long& value) {
    return getValue(file, section, key, def, value, numberOf);
}

bool IniGetLong(eIniFile file, const char* section, const char* key, long& value) {
    return getValue(file, section, key, value, value, numberOf);
}

bool IniGetShort(eIniFile file, const char* section, const char* key, short def, short& value) {
    return getValue(file, section, key, def, value, numberOf);
}

bool IniGetShort(eIniFile file, const char* section, const char* key, short& value) {
    return getValue(file, section, key, value, value, numberOf);
}

bool IniGetColor(eIniFile file, const char* section, const char* key, int def, int& value) {
    return getValue(file, section, key, def, value, colourOf);
}

bool IniGetRect(eIniFile file, const char* section, const char* key, LRCT& def, LRCT& value) {
    return getValue(file, section, key, def, value, rectOf);
}

bool IniGetFont(eIniFile file, const char* section, const char* key, WinFont& def, WinFont& value) {
    return getValue(file, section, key, def, value, [&](std::string_view text) { return fontOf(text, value); });
}

bool IniGetFilePath(eIniFile file, const char* section, const char* key, const char* def, FilePath& value) {
    if (!def || !value.FileStringSet(def)) value.FileNullSet();
    return IniGetFilePath(file, section, key, value);
}

bool IniGetFilePath(eIniFile file, const char* section, const char* key, FilePath& def, FilePath& value) {
    value = def;
    return IniGetFilePath(file, section, key, value);
}

bool IniGetFilePath(eIniFile file, const char* section, const char* key, FilePath& value) try {
    const auto text = profileValue(file, section, key);
    if (text) value.FileStringSet(std::string(*text).c_str());
    return text.has_value();
} catch (const std::exception&) {
    return false;
}
