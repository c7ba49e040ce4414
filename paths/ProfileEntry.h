#pragma once

#include <string>

/// What name expansion needs of the settings above it; settings/ answers.
namespace kora {

/// Entry @p key of section "Directories" of the main profile, as it stands there. False, with @p directory untouched,
/// when there is no such entry.
bool profileDirectory(const std::string& key, std::string& directory);

}  // namespace kora
