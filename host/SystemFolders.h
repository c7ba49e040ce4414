#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Where the two systems keep their libraries.
namespace kora::host {

/// The folders of LD_LIBRARY_PATH.
std::vector<std::string> foldersOfUser();
/// The folders of /etc/ld.so.conf and what it includes, then the usual ones.
std::vector<std::string> foldersOfLoader();
/// The folders of @p list, split at ':', with $ORIGIN for @p origin.
std::vector<std::string> foldersOf(std::string_view list, const std::string& origin);
/// The two folders of the Windows system.
std::vector<std::string> foldersOfWindows();
/// The folders of PATH on Windows.
std::vector<std::string> foldersOfPath();

}  // namespace kora::host
