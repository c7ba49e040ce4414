#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Path arithmetic on texts in library form. Nothing here asks the system.
namespace kora {

/// One more than the longest directory, name or type.
inline constexpr std::size_t kPathTextSize = 255;

/// The part of @p path that ".." never removes: `c:\`, `c:`, `\\server\share`, `\`; nothing of a relative path.
std::string_view pathRoot(std::string_view path);

/// What stands before the last part of @p path: `c:\a` of `c:\a\b`, `c:\` of `c:\a`, nothing of a root or of a path
/// with one part.
std::string_view pathAbove(std::string_view path);

/// Applies @p text to the directory @p current (empty for none) by the rules of DirPath::DirStringSet(). @p result,
/// which may be where either of them stands, is untouched on failure and empty for the null directory.
bool resolveDirectory(std::string_view current, std::string_view text, char (&result)[kPathTextSize]);

/// Joins a file name, which may have relative directories in front of it, to @p directory: @p path becomes the whole
/// path. False when @p name has a drive, or when the result is longer than a path may be.
bool joinPath(std::string& path, std::string_view directory, std::string_view name);

/// Whether @p path lies somewhere in @p directory, without regard to case. @p rest is what follows.
bool liesIn(std::string_view path, std::string_view directory, std::string_view& rest);

/// Gives every part of @p path that consists of the letters a to z alone a capital first letter, except on the kind of
/// system (2 of UtlOS()) that shows names as they are.
void capitalizeForDisplay(char* path);

/// The directory as the system is asked for it: a bare drive means its root, and a `\` at the end goes.
std::string directoryForSystem(std::string_view directory);

}  // namespace kora
