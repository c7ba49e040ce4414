#pragma once

#include <string>

/// Directories of the user and of all users, and making what is missing of them. The directories themselves are
/// asked for with DirGetAppDataDir() and its like.
namespace kora {

/// Makes @p directory with every missing level above it. True when it is there afterwards.
bool directoryMake(const std::string& directory);

/// Makes the directory of file @p path where it is missing and lies in (or is) the document root, the per-user or the
/// public data directory: those are made on first write. False when nothing was made.
bool directoryMakeForWrite(const std::string& path);

}  // namespace kora
