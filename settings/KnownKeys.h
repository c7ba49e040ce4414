#pragma once

#include <kora/Ini.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kora {

/// The known keys of a section, in the order of IniKnownKeyGet(). Sections of the main profile are compared exactly,
/// those of the state file without regard to case.
std::vector<IniKnownKey> knownKeysOf(eIniFile file, std::string_view section);
/// The same text for the same section.
std::string sectionKey(eIniFile file, std::string_view section);

/// Tables made known from here on have greater numbers than this.
std::uint32_t knownKeysMark();
/// Takes back the tables that were made known since: their module did not connect.
void knownKeysUndo(std::uint32_t mark);
/// Takes back all tables but the library's own.
void knownKeysStop();

}  // namespace kora
