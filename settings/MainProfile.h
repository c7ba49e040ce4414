#pragma once

#include <string>

#include "settings/ProfileTable.h"

namespace kora {

/// Reads a profile file into @p table, then the `*.ini` files of the folder that its entry IncludeFolder in section
/// "System" names, in name order, each followed in the same way by the files of its own folder. The folder may be
/// relative to the file's and may have `%` references; a missing one, and a file that was read before, is passed over.
void loadProfile(const std::string& path, ProfileTable& table);

}  // namespace kora
