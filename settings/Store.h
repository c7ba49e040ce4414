#pragma once

#include <kora/Ini.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The settings store: where the two profiles are, the main one's table, and entries of both.
namespace kora {

/// Finds the profiles and reads the main one. Does nothing when that was done; false when memory ran out, everything
/// then reads as not there. Getters and setters start the store on their first use.
bool settingsStart();
/// Forgets both profiles; the next use starts anew. A main profile named with IniMainFileSet() stays named.
void settingsStop();

/// Where a profile is, in library form; empty when the system gives no directory for it.
std::string profilePath(eIniFile file);

/// The value of an entry as it stands in the profile; nothing when there is no such entry or a name is null. The text
/// stays until the next call.
std::optional<std::string_view> profileValue(eIniFile file, const char* section, const char* key) noexcept;

/// Entry @p index of a section, counted from 0 in file order; nothing when there is none. @p sectionFound tells
/// whether there is such a section at all.
struct ProfileItem {
    std::string_view key, value;
};
std::optional<ProfileItem> profileItem(eIniFile file, const char* section, int index, bool& sectionFound) noexcept;

/// One file of a profile: the state file as it is now, the main profile and what it includes as they were read.
struct ProfileSource {
    std::string path;
    std::string_view text;
};
/// All of them, in the order in which they were read. The texts stay until the next call. Throws what std::vector does.
std::vector<ProfileSource> profileSources(eIniFile file);

/// Puts an entry into the profile's file. The main profile's table does not take part.
bool profileSet(eIniFile file, const char* section, const char* key, const char* value) noexcept;

}  // namespace kora
