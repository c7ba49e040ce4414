#pragma once

#include <string>
#include <string_view>

#include "platform/Platform.h"

/// Profile files as files: reading them, and putting a new text in the place of the old one.
///
/// While a file is written, its directory also holds the scratch file, the new text in the making, and the backup, a
/// second name of the old file. At every moment the old or the new text is whole under the file's own name.
namespace kora {

inline constexpr char kProfileScratch[] = "qznew96.ert";
inline constexpr char kProfileBackup[] = "qzold96.ert";

/// The three names in one directory.
struct ProfileNames {
    std::string file, scratch, backup;
};

/// The names for the profile at @p path. Where that is a symbolic link, the file that it leads to is the one that is
/// read and replaced, and the other two stand beside it. False when it cannot be told where a link leads.
bool profileNames(const std::string& path, ProfileNames& names);

/// Reads the whole file. A file that another program holds is tried for a moment.
bool readProfile(const std::string& path, std::string& text, platform::Failure& failure);

/// Makes an empty file where none is; a file that is there is left alone and a failure.
bool createProfile(const std::string& path);

/// Writes @p text beside the file, with its permissions and down to the disk, and swaps the two. False when the new
/// text could not be written; a swap that did not come about is only noted in the trace, and the old file stands.
bool replaceProfile(const ProfileNames& names, std::string_view text);

/// Gives a file that is missing the backup's text back, where a swap was once broken off half-way. True when nothing
/// is left to be done: the file is there, or it has no backup.
bool takeBackupBack(const ProfileNames& names);

}  // namespace kora
