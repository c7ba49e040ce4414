#pragma once

#include <string>

namespace kora {

/// Loads the module file @p name in the directory @p folder (library form) and connects it. A file that cannot be
/// loaded or does not connect is reported to the user and leaves nothing behind.
void moduleLoad(const std::string& folder, const std::string& name);

}  // namespace kora
