#pragma once

#include <string>
#include <vector>

namespace kora {

/// The folder that modules are loaded from, in library form.
std::string toolsFolder();
/// The module files in @p folder, in the order in which they are loaded: by name, regardless of case.
std::vector<std::string> moduleFiles(const std::string& folder);

}  // namespace kora
