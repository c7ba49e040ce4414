#include <kora/Ini.h>
#include <kora/Trace.h>

#include <exception>

#include "settings/CopyText.h"
#include "settings/Store.h"
#include "strings/Format.h"

using namespace kora;

namespace {

std::optional<ProfileItem> tracedItem(eIniFile file, const char* section, short line) {
    bool sectionFound = false;
    const auto item = profileItem(file, section, line, sectionFound);
    const char* name = section ? section : "";
    if (!TraceToFileGet()) return item;
    if (sectionFound) TraceNote(formatText("Section '%s' found", name).c_str());
    if (!item) TraceNote(formatText("Section '%s': Line %d not found", name, line).c_str());
    return item;
}

}  // namespace

bool IniGetLine(eIniFile file, const char* section, short line, char* key, int keySize, char* value,
                int valueSize) try {
    const auto item = tracedItem(file, section, line);
    if (!item) return false;
    copyText(item->key, key, keySize);
    copyText(item->value, value, valueSize);
    return true;
} catch (const std::exception&) {
    return false;
}

bool IniGetLine(eIniFile file, const char* section, short line, CString& key, CString& value) try {
    const auto item = tracedItem(file, section, line);
    if (!item) return false;
    // Both or none.
    CString keyText(item->key), valueText(item->value);
    key = std::move(keyText);
    value = std::move(valueText);
    return true;
} catch (const std::exception&) {
    return false;
}

bool IniGetLine(eIniFile file, const char* section, short line, CString& value) {
    CString key;
    return IniGetLine(file, section, line, key, value);
}
