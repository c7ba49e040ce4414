#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <charconv>
#include <climits>
#include <exception>
#include <string>
#include <tuple>

#include "platform/Platform.h"
#include "platform/posix/Handles.h"
#include "platform/posix/NativePath.h"

namespace kora::platform {

using namespace posix;

namespace {

// Files have no settable time of making here, so one that was set is kept beside the file's contents.
constexpr char kCreationTime[] = "user.kora.creation-time";

/// Runs an operation on a path: turns it into its native name, and memory that ran out into a failure.
template <typename Operation>
bool onPath(const std::string& path, Failure& failure, Operation operation) {
    try {
        std::string native;
        return nativeName(path, native, failure) && operation(native);
    } catch (const std::exception&) {
        return fail(failure, ENOMEM);
    }
}

/// The same for two.
template <typename Operation>
bool onPaths(const std::string& from, const std::string& to, Failure& failure, Operation operation) {
    return onPath(from, failure, [&](const std::string& nativeFrom) {
        return onPath(to, failure, [&](const std::string& nativeTo) { return operation(nativeFrom, nativeTo); });
    });
}

/// Tells what stands under an open descriptor; false where it is no ordinary file.
bool isOrdinary(const Descriptor& file, struct stat& status, Failure& failure) {
    if (fstat(file.get(), &status) != 0) return fail(failure, errno);
    if (S_ISREG(status.st_mode)) return true;
    failure = {Cause::wrongKind, static_cast<std::uint32_t>(S_ISDIR(status.st_mode) ? EISDIR : EINVAL)};
    return false;
}

/// Fails with ENOTDIR: what stands under the name is a file, or only a part on the way to it is.
bool failOnFile(const std::string& native, Failure& failure) {
    struct stat status;
    fail(failure, ENOTDIR);
    if (lstat(findName(native).c_str(), &status) == 0) failure.cause = Cause::wrongKind;
    return false;
}

bool readAll(const Descriptor& file, std::string& bytes, struct stat& status, Failure& failure) {
    if (!isOrdinary(file, status, failure)) return false;
    // Files that the system makes up as they are read say 0; one byte more than the size shows the end at once.
    const auto size = static_cast<std::size_t>(status.st_size);
    bytes.resize(size == 0 ? 4096 : size + 1);
    for (std::size_t length = 0;;) {
        const ssize_t got = ::read(file.get(), bytes.data() + length, bytes.size() - length);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return fail(failure, errno);
        length += static_cast<std::size_t>(got);
        if (got == 0 || (length == size && size != 0)) {
            bytes.resize(length);
            return true;
        }
        if (length == bytes.size()) bytes.resize(length * 2);
    }
}

bool writeAll(const Descriptor& file, std::string_view bytes, Failure& failure) {
    while (!bytes.empty()) {
        const ssize_t done = ::write(file.get(), bytes.data(), bytes.size());
        if (done < 0 && errno == EINTR) continue;
        if (done < 0) return fail(failure, errno);
        bytes.remove_prefix(static_cast<std::size_t>(done));
    }
    return true;
}

bool finishWriting(Descriptor& file, bool flush, Failure& failure) {
    if (flush && fsync(file.get()) != 0) return fail(failure, errno);
    return file.close() || fail(failure, errno);
}

/// Gives a new file the owner and the permissions of another, as far as this process and the file system can.
void giveAccess(const Descriptor& file, const struct stat& like) {
    struct stat made;
    const bool isOwned = fstat(file.get(), &made) == 0 && made.st_uid == like.st_uid && made.st_gid == like.st_gid;
    std::ignore = isOwned || fchown(file.get(), like.st_uid, like.st_gid) == 0 ||
                  fchown(file.get(), static_cast<uid_t>(-1), like.st_gid) == 0;
    fchmod(file.get(), like.st_mode & 0777);
}

FileKind kindOf(mode_t mode) { return S_ISDIR(mode) ? FileKind::directory : FileKind::file; }

/// The time that setCreationTime() left.
std::optional<std::int64_t> creationTime(const char* native) {
    char text[32];
    const ssize_t length = getxattr(native, kCreationTime, text, sizeof text);
    std::int64_t time = 0;
    if (length <= 0 || std::from_chars(text, text + length, time).ptr != text + length) return std::nullopt;
    return time;
}

bool copyFile(const std::string& from, const std::string& to, Failure& failure) {
    const Descriptor source(openFile(from.c_str(), O_RDONLY));
    if (!source) return fail(failure, errno);
    std::string bytes;
    struct stat status;
    if (!readAll(source, bytes, status, failure)) return false;
    Descriptor copy(openFile(to.c_str(), O_WRONLY | O_CREAT | O_EXCL, status.st_mode & 0777));
    if (!copy) return fail(failure, errno);
    if (writeAll(copy, bytes, failure) && finishWriting(copy, /*flush=*/true, failure)) return true;
    unlink(to.c_str());
    return false;
}

FileKind kindOf(DIR* stream, const dirent& entry) {
    if (entry.d_type == DT_DIR) return FileKind::directory;
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return FileKind::file;
    struct stat status;
    return fstatat(dirfd(stream), entry.d_name, &status, 0) == 0 ? kindOf(status.st_mode) : FileKind::none;
}

/// Whether two names, both of which are there, are one entry of one directory.
bool isSameEntry(const std::string& a, const std::string& b) {
    const std::size_t slashA = a.rfind('/') + 1, slashB = b.rfind('/') + 1;  // 0 where there is none
    if (a.compare(slashA, a.npos, b, slashB, b.npos) != 0) return false;
    struct stat inA, inB;
    return stat((a.substr(0, slashA) + '.').c_str(), &inA) == 0 &&
           stat((b.substr(0, slashB) + '.').c_str(), &inB) == 0 && inA.st_dev == inB.st_dev && inA.st_ino == inB.st_ino;
}

}  // namespace

bool FileSystem::status(const std::string& path, FileStatus& status, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        if (isKnownMissing(native)) return fail(failure, ENOENT);
        struct statx found;
        std::optional<std::int64_t> setTime;
        bool writable = false;
        const int result = onExistingName(native, [&](const char* name) {
            if (statx(AT_FDCWD, name, 0, STATX_BASIC_STATS | STATX_BTIME, &found) != 0) return -1;
            setTime = creationTime(name);
            writable = (found.stx_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0 &&
                       faccessat(AT_FDCWD, name, W_OK, AT_EACCESS) == 0;
            return 0;
        });
        if (result != 0) return fail(failure, errno);
        status.kind = kindOf(found.stx_mode);
        status.size = status.kind == FileKind::file ? static_cast<std::int64_t>(found.stx_size) : 0;
        status.modified = found.stx_mtime.tv_sec;
        status.created = setTime                          ? *setTime
                         : (found.stx_mask & STATX_BTIME) ? found.stx_btime.tv_sec
                                                          : found.stx_mtime.tv_sec;
        status.readOnly = !writable;
        return true;
    });
}

bool FileSystem::kind(const std::string& path, FileKind& kind, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        if (isKnownMissing(native)) return fail(failure, ENOENT);
        struct stat found;
        if (onExistingName(native, [&](const char* name) { return stat(name, &found); }) != 0)
            return fail(failure, errno);
        kind = kindOf(found.st_mode);
        return true;
    });
}

bool FileSystem::read(const std::string& path, std::string& bytes, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        const Descriptor file(onExistingName(native, [](const char* name) { return openFile(name, O_RDONLY); }));
        if (!file) return fail(failure, errno);
        std::string all;
        struct stat status;
        if (!readAll(file, all, status, failure)) return false;
        bytes.swap(all);
        return true;
    });
}

bool FileSystem::write(const std::string& path, std::string_view bytes, WriteMode mode, bool flush, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        int flags = O_WRONLY | O_CREAT;
        if (mode == WriteMode::createNew) flags |= O_EXCL;
        if (mode == WriteMode::replace) flags |= O_TRUNC;
        if (mode == WriteMode::append) flags |= O_APPEND;
        Descriptor file(openFile(findName(native).c_str(), flags, 0666));
        if (!file) return fail(failure, errno);
        struct stat status;
        return isOrdinary(file, status, failure) && writeAll(file, bytes, failure) &&
               finishWriting(file, flush, failure);
    });
}

bool FileSystem::writeLike(const std::string& path, const std::string& model, std::string_view bytes,
                           Failure& failure) {
    return onPaths(path, model, failure, [&](const std::string& native, const std::string& nativeModel) {
        struct stat like;
        const bool known = onExistingName(nativeModel, [&](const char* name) { return stat(name, &like); }) == 0;
        const std::string name = findName(native);
        if (unlink(name.c_str()) != 0 && errno != ENOENT) return fail(failure, errno);
        Descriptor file(openFile(name.c_str(), O_WRONLY | O_CREAT | O_EXCL, known ? 0600 : 0666));
        if (!file) return fail(failure, errno);
        if (known) giveAccess(file, like);
        return writeAll(file, bytes, failure) && finishWriting(file, /*flush=*/true, failure);
    });
}

bool FileSystem::resolveLinks(const std::string& path, std::string& target, Failure& failure) {
    return onPath(path, failure, [&](std::string name) {
        constexpr int kMaxLinks = 40;  // as many as the system follows
        char text[PATH_MAX];
        for (int links = 0; links <= kMaxLinks; ++links) {
            const ssize_t length =
                onExistingName(name, [&](const char* link) { return readlink(link, text, sizeof text); });
            if (length < 0) {  // no link any more
                target = links == 0 ? path : libraryPath(name);
                return true;
            }
            const std::string_view next(text, static_cast<std::size_t>(length));
            // A name with the separator in it has no library form.
            if (next.size() == sizeof text || next.find('\\') != next.npos) return fail(failure, EINVAL);
            name.resize(next.starts_with('/') ? 0 : name.rfind('/') + 1);
            name += next;
        }
        return fail(failure, ELOOP);
    });
}

bool FileSystem::remove(const std::string& path, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        return onExistingName(native, unlink) == 0 || fail(failure, errno);
    });
}

bool FileSystem::link(const std::string& from, const std::string& to, Failure& failure) {
    return onPaths(from, to, failure, [&](const std::string& nativeFrom, const std::string& nativeTo) {
        const std::string source = findName(nativeFrom), target = findName(nativeTo);
        if (linkat(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), AT_SYMLINK_FOLLOW) == 0) return true;
        switch (errno) {
            case EPERM:  // no links here, or not to somebody else's file
            case EXDEV:
            case EMLINK:
            case EOPNOTSUPP:
            case ENOSYS:
                return copyFile(source, target, failure);
            default:
                return fail(failure, errno);
        }
    });
}

bool FileSystem::rename(const std::string& from, const std::string& to, Failure& failure) {
    return onPaths(from, to, failure, [&](const std::string& nativeFrom, const std::string& nativeTo) {
        const std::string source = findName(nativeFrom);
        std::string target = findName(nativeTo);
        struct stat old, replaced;
        if (lstat(source.c_str(), &old) != 0) return fail(failure, errno);
        bool sameFile = false;
        if (lstat(target.c_str(), &replaced) == 0) {
            if (S_ISDIR(replaced.st_mode) != S_ISDIR(old.st_mode)) return fail(failure, EISDIR);
            sameFile = old.st_dev == replaced.st_dev && old.st_ino == replaced.st_ino;
            if (sameFile && isSameEntry(source, target)) {
                // The file's own name in another letter case is a new name for it.
                target = target.substr(0, target.rfind('/') + 1) + nativeTo.substr(nativeTo.rfind('/') + 1);
                sameFile = false;
            } else if (S_ISDIR(old.st_mode)) {
                return fail(failure, EISDIR);
            }
        }
        // Two names of one file: the system would leave both.
        const int result = sameFile ? unlink(source.c_str()) : ::rename(source.c_str(), target.c_str());
        return result == 0 || fail(failure, errno);
    });
}

bool FileSystem::createDirectory(const std::string& path, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        return mkdir(findName(native).c_str(), 0777) == 0 || fail(failure, errno);
    });
}

bool FileSystem::removeDirectory(const std::string& path, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        if (onExistingName(native, rmdir) == 0) return true;
        if (errno == EEXIST) return fail(failure, ENOTEMPTY);
        if (errno != ENOTDIR) return fail(failure, errno);
        return failOnFile(native, failure);
    });
}

bool FileSystem::list(const std::string& path, std::vector<DirectoryEntry>& entries, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        const int descriptor =
            onExistingName(native, [](const char* name) { return openFile(name, O_RDONLY | O_DIRECTORY); });
        if (descriptor < 0) return errno == ENOTDIR ? failOnFile(native, failure) : fail(failure, errno);
        const DirectoryStream stream(fdopendir(descriptor));
        if (!stream) {
            const int error = errno;
            ::close(descriptor);
            return fail(failure, error);
        }
        std::vector<DirectoryEntry> found;
        for (;;) {
            errno = 0;
            const dirent* entry = readdir(stream.get());
            if (!entry) break;
            const std::string_view name = entry->d_name;
            // A name with the separator in it has no library form: a path made of it would name another file.
            if (name == "." || name == ".." || name.find('\\') != std::string_view::npos) continue;
            found.push_back({std::string(name), kindOf(stream.get(), *entry)});
        }
        if (errno != 0) return fail(failure, errno);
        entries.swap(found);
        return true;
    });
}

bool FileSystem::setCreationTime(const std::string& path, std::int64_t time, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        const std::string text = std::to_string(time);
        const int result = onExistingName(
            native, [&](const char* name) { return setxattr(name, kCreationTime, text.data(), text.size(), 0); });
        return result == 0 || fail(failure, errno);
    });
}

}  // namespace kora::platform
