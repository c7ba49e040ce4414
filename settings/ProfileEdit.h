#pragma once

#include <string>
#include <string_view>

namespace kora {

/// Whether an entry with these three texts can stand in a profile and be found there again: no line feed in it, no
/// `=` in the key, no `]` in the section, nothing that trimming or the line limit would take from the names.
bool isProfileEntry(std::string_view section, std::string_view key, std::string_view value);

/// Puts @p text with the entry in it and every other byte as it was into @p edited, which is another string.
///
/// The first entry of the key is written anew. A new entry goes behind the section's last one, or its header; a new
/// section to the end, behind one blank line. New lines end as the line before them does, and a last line without a
/// line feed stays without one.
void setProfileEntry(std::string_view text, std::string_view section, std::string_view key, std::string_view value,
                     std::string& edited);

}  // namespace kora
