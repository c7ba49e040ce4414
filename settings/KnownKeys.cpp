#include "settings/KnownKeys.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include "strings/Bytes.h"

namespace kora {

namespace {

// Every key that the library reads. docs/settings.md shows the same table, and a test compares them.
// clang-format off
constexpr IniKnownKey kOwnKeys[] = {
    {eIniMain, "System", "toolfolder", IniKindText, "tools",
     "the folder from which modules are loaded; % references are expanded, and a relative one begins at the program's directory"},
    {eIniMain, "System", "IncludeFolder", IniKindText, "",
     "a folder whose *.ini files are read behind this file; % references are expanded, and a relative one begins at the file's directory"},
    {eIniMain, "System", "LocalStateFile", IniKindBool, "no",
     "whether the state file stands in the operating system's directory, not in the user's"},
    {eIniMain, "System", "LengthUnit", IniKindText, "inch",
     "the unit in which lengths are shown: inch, and centimetres for everything else"},
    {eIniMain, "System", "NugPinNameDisplayUp", IniKindShort, "0",
     "handed on to modules by TskNugPinNameDisplayUp(), as it was at start-up"},
    {eIniMain, "System SpreadSheet", "Cell Font", IniKindFont, "\"\" 12",
     "the font of a new sheet"},
    {eIniMain, "System SpreadSheet", "Cell Protected Color", IniKindColour, "blue",
     "the colour of protected cells in a new sheet"},
    {eIniMain, "System SpreadSheet", "GridLines Color", IniKindColour, "gray",
     "the colour of the grid lines in a new sheet"},
    {eIniMain, "NetBIOS", "Interface", IniKindText, "",
     "the network interface's name; else the first one that is up and can broadcast"},
    {eIniMain, "NetBIOS", "Broadcast", IniKindText, "",
     "the address that broadcasts go to; else the interface's own"},
    {eIniMain, "NetBIOS", "NamePort", IniKindInt, "137",
     "the UDP port of the name service"},
    {eIniMain, "NetBIOS", "DatagramPort", IniKindInt, "138",
     "the UDP port of the datagram service"},
    {eIniMain, "NetBIOS", "Scope", IniKindText, "",
     "the NetBIOS scope; only stations of the same scope see each other"},
    {eIniMain, "Directories", nullptr, IniKindText, "",
     "any key: a directory that file names can begin with, as %ini:KEY%"},
};
// clang-format on

constexpr std::size_t kOwnCount = std::size(kOwnKeys);

/// A key with texts of its own, since the table goes with its module.
struct KeptKey {
    explicit KeptKey(const IniKnownKey& known)
        : file(known.file),
          everyKey(known.key == nullptr),
          kind(known.kind),
          section(known.section),
          key(everyKey ? "" : known.key),
          def(known.def ? known.def : ""),
          meaning(known.meaning ? known.meaning : "") {}
    IniKnownKey told() const {
        return {file, section.c_str(), everyKey ? nullptr : key.c_str(), kind, def.c_str(), meaning.c_str()};
    }

    eIniFile file;
    bool everyKey;
    eIniKind kind;
    std::string section, key, def, meaning;
};

struct KeptTable {
    const IniKnownKey* address;
    std::uint32_t number;
    std::vector<KeptKey> keys;
};

struct {
    std::vector<std::unique_ptr<KeptTable>>* tables;
    std::uint32_t lastNumber;
} constinit family{};

template <class Condition>
void removeTables(Condition condition) {
    if (family.tables) std::erase_if(*family.tables, condition);
}

bool isTable(const IniKnownKey* keys, int count) {
    return keys && count >= 0 && std::all_of(keys, keys + count, [](const IniKnownKey& key) { return key.section; });
}

void keep(const IniKnownKey* keys, int count) {
    auto table = std::make_unique<KeptTable>(KeptTable{keys, family.lastNumber + 1, {}});
    for (const IniKnownKey* key = keys; key != keys + count; ++key) table->keys.emplace_back(*key);
    if (!family.tables) family.tables = new std::vector<std::unique_ptr<KeptTable>>;
    const auto same = std::ranges::find(*family.tables, keys, [](const auto& kept) { return kept->address; });
    if (same != family.tables->end())
        *same = std::move(table);
    else
        family.tables->push_back(std::move(table));
    ++family.lastNumber;
}

}  // namespace

std::string sectionKey(eIniFile file, std::string_view section) {
    std::string key(section);
    if (file == eIniState) std::ranges::transform(key, key.begin(), foldCase);
    return key;
}

std::vector<IniKnownKey> knownKeysOf(eIniFile file, std::string_view section) {
    std::vector<IniKnownKey> keys;
    IniKnownKey key;
    for (int index = 0; IniKnownKeyGet(index, key); ++index)
        if ((key.file == eIniState) == (file == eIniState) &&
            (key.section == section || (file == eIniState && equalIgnoringCase(key.section, section))))
            keys.push_back(key);
    return keys;
}

std::uint32_t knownKeysMark() { return family.lastNumber; }

void knownKeysUndo(std::uint32_t mark) {
    removeTables([mark](const auto& table) { return static_cast<std::int32_t>(table->number - mark) > 0; });
}

void knownKeysStop() {
    delete family.tables;
    family.tables = nullptr;
}

}  // namespace kora

bool IniKnownKeysSet(const IniKnownKey* keys, int count, bool on) try {
    if (!on)
        kora::removeTables([keys](const auto& table) { return table->address == keys; });
    else if (kora::isTable(keys, count))
        kora::keep(keys, count);
    else
        return false;
    return true;
} catch (const std::exception&) {
    return false;
}

bool IniKnownKeyGet(int index, IniKnownKey& key) {
    if (index < 0) return false;
    auto left = static_cast<std::size_t>(index);
    if (left < kora::kOwnCount) {
        key = kora::kOwnKeys[left];
        return true;
    }
    left -= kora::kOwnCount;
    if (!kora::family.tables) return false;
    for (const auto& table : *kora::family.tables) {
        if (left < table->keys.size()) {
            key = table->keys[left].told();
            return true;
        }
        left -= table->keys.size();
    }
    return false;
}
