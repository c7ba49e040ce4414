#pragma once

#include <cstdint>
#include <string_view>

/// The four directories that every DirPath may point at, and the working directory of start-up.
///
/// They are filled when the library starts, or by whoever asks first. Their storage is the library's own for as long
/// as it is loaded: a DirPath that outlives shut-down still points at a text.
namespace kora {

enum class SharedDirectory : std::uint8_t { startIn, executable, systemBase, temporary };

/// The directory's text, of at most 254 characters; null when the system names none, or a longer one.
char* sharedDirectory(SharedDirectory which);
/// The same as a view, empty for null.
std::string_view sharedText(SharedDirectory which);
/// Whether @p text is one of the four, so not to be freed or written.
bool isSharedDirectory(const char* text);

/// Fills the four afresh.
void pathsStart();
/// Forgets the four and the remembered working directory: the next use, or the next start, asks the system again.
/// Tests that put other places in force call it before and after.
void pathsStop();

/// Remembers the process's working directory for the fixed search order; start-up calls it.
void workingDirectoryRemember();
/// Empty until remembered, and for one so long that no path in it could be held.
std::string_view rememberedWorkingDirectory();

}  // namespace kora
