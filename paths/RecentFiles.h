#pragma once

#include <kora/Kora.h>

/// What the recent-files operations need of the application object above them; tasks/ answers.
namespace kora {

/// Whether the application keeps a recent-files list at all.
bool recentFilesExist();
/// Puts @p fullName, never null, at the head of the list and writes the list out before it returns. Nothing happens
/// where there is no list.
void recentFileAdd(const char* fullName);
/// Appends every entry, newest first, empty ones included.
void recentFilesList(CStringArray& list);

}  // namespace kora
