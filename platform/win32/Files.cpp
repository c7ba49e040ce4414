#include "platform/win32/Win32.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace kora::platform {

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// One transfer. Network drives of old systems refuse very long ones.
constexpr std::size_t kTransfer = std::size_t{1} << 20;
constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kSecondsTo1970 = 11'644'473'600;  // from 1601, where the system's file times begin

std::int64_t secondsOf(FILETIME time) {
    const std::uint64_t ticks = std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    return static_cast<std::int64_t>(ticks / kTicksPerSecond) - kSecondsTo1970;
}

FileKind kindOf(DWORD attributes) {
    return attributes & FILE_ATTRIBUTE_DIRECTORY ? FileKind::directory : FileKind::file;
}

bool isKind(const std::string& native, FileKind kind) {
    const DWORD attributes = GetFileAttributesA(native.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && kindOf(attributes) == kind;
}

/// Runs an operation on a path in the system's form; memory that ran out becomes a failure.
template <typename Operation>
bool onPath(const std::string& path, Failure& failure, Operation operation) {
    try {
        std::string native;
        return systemPath(path, native, failure) && operation(native);
    } catch (const std::exception&) {
        return fail(failure, ERROR_NOT_ENOUGH_MEMORY);
    }
}

/// The same for two.
template <typename Operation>
bool onPaths(const std::string& from, const std::string& to, Failure& failure, Operation operation) {
    return onPath(from, failure, [&](const std::string& nativeFrom) {
        return onPath(to, failure, [&](const std::string& nativeTo) { return operation(nativeFrom, nativeTo); });
    });
}

/// Files the last error of an operation on a file. That a directory stands there, the system calls a missing
/// permission.
bool failOnFile(const std::string& native, Failure& failure) {
    failLast(failure);
    if (failure.cause == Cause::denied && isKind(native, FileKind::directory)) failure.cause = Cause::wrongKind;
    return false;
}

/// Opens what is a file on a disk; names such as CON and COM1 lead elsewhere from every directory.
Handle openFile(const std::string& native, DWORD access, DWORD share, DWORD creation, DWORD flags) {
    Handle file(CreateFileA(native.c_str(), access, share, nullptr, creation, flags, nullptr));
    if (file && GetFileType(file.get()) != FILE_TYPE_DISK) {
        file.close();
        SetLastError(ERROR_DIRECTORY);
    }
    return file;
}

/// Whether this process may make files in the directory. The read-only attribute does not tell: on a directory it
/// marks a folder with a look of its own.
bool directoryWritable(const std::string& native) {
    const Handle directory(CreateFileA(native.c_str(), FILE_ADD_FILE, kShareAll, nullptr, OPEN_EXISTING,
                                       FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (directory) return true;
    Failure failure;
    failLast(failure);
    return failure.cause != Cause::denied;
}

/// Whether another handle on the file is open at this moment.
bool heldOpen(const std::string& native) {
    const Handle file(CreateFileA(native.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    return !file && GetLastError() == ERROR_SHARING_VIOLATION;
}

bool identityOf(const std::string& native, BY_HANDLE_FILE_INFORMATION& identity) {
    const Handle file(
        CreateFileA(native.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return file && GetFileInformationByHandle(file.get(), &identity);
}

bool isSame(const std::string& a, const std::string& b) {
    BY_HANDLE_FILE_INFORMATION inA, inB;
    return identityOf(a, inA) && identityOf(b, inB) && inA.dwVolumeSerialNumber == inB.dwVolumeSerialNumber &&
           inA.nFileIndexHigh == inB.nFileIndexHigh && inA.nFileIndexLow == inB.nFileIndexLow;
}

/// Whether two names are one entry of one directory, however they are written.
bool isSameEntry(const std::string& a, const std::string& b) {
    WIN32_FIND_DATAA inA, inB;
    for (const auto& [native, data] : {std::pair{&a, &inA}, std::pair{&b, &inB}}) {
        const HANDLE search = FindFirstFileA(native->c_str(), data);
        if (search == INVALID_HANDLE_VALUE) return true;  // nothing may be concluded
        FindClose(search);
    }
    const auto directory = [](const std::string& native) { return native.substr(0, native.rfind('\\') + 1) + '.'; };
    return lstrcmpiA(inA.cFileName, inB.cFileName) == 0 && isSame(directory(a), directory(b));
}

bool writeAll(const Handle& file, std::string_view bytes, Failure& failure) {
    while (!bytes.empty()) {
        const DWORD wanted = static_cast<DWORD>(std::min(bytes.size(), kTransfer));
        DWORD written = 0;
        if (!WriteFile(file.get(), bytes.data(), wanted, &written, nullptr)) return failLast(failure);
        if (written == 0) return fail(failure, ERROR_DISK_FULL);
        bytes.remove_prefix(written);
    }
    return true;
}

bool finishWriting(Handle& file, bool flush, Failure& failure) {
    if (flush && !FlushFileBuffers(file.get())) return failLast(failure);
    return file.close() || failLast(failure);
}

/// The access list of a file, as a new file takes it; empty where the file or its file system has none.
std::string accessOf(const std::string& native) {
    std::string access;
    for (DWORD size = 1024; access.size() < size;) {
        access.resize(size);
        if (!GetFileSecurityA(native.c_str(), DACL_SECURITY_INFORMATION, access.data(), size, &size) &&
            (GetLastError() != ERROR_INSUFFICIENT_BUFFER || size <= access.size()))
            return {};
    }
    return access;
}

bool linksMissing(DWORD code) {
    return code == ERROR_INVALID_FUNCTION || code == ERROR_NOT_SUPPORTED || code == ERROR_CALL_NOT_IMPLEMENTED;
}

}  // namespace

bool FileSystem::status(const std::string& path, FileStatus& status, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        WIN32_FILE_ATTRIBUTE_DATA data;
        if (!GetFileAttributesExA(native.c_str(), GetFileExInfoStandard, &data)) return failLast(failure);
        status.kind = kindOf(data.dwFileAttributes);
        status.size = 0;
        if (status.kind == FileKind::file)
            status.size = static_cast<std::int64_t>(std::uint64_t{data.nFileSizeHigh} << 32 | data.nFileSizeLow);
        status.created = secondsOf(data.ftCreationTime);
        status.modified = secondsOf(data.ftLastWriteTime);
        status.readOnly = status.kind == FileKind::directory ? !directoryWritable(native)
                                                             : (data.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0;
        return true;
    });
}

bool FileSystem::kind(const std::string& path, FileKind& kind, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        const DWORD attributes = GetFileAttributesA(native.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) return failLast(failure);
        kind = kindOf(attributes);
        return true;
    });
}

bool FileSystem::read(const std::string& path, std::string& bytes, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        const Handle file = openFile(native, GENERIC_READ, kShareAll, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN);
        if (!file) return failOnFile(native, failure);
        LARGE_INTEGER size;
        if (!GetFileSizeEx(file.get(), &size)) return failLast(failure);
        std::string text;
        if (static_cast<std::uint64_t>(size.QuadPart) >= text.max_size() - kTransfer)
            return fail(failure, ERROR_NOT_ENOUGH_MEMORY);
        // One byte more than the file has, so that its end shows at once; a file that grows meanwhile is read to its
        // end.
        text.resize(static_cast<std::size_t>(size.QuadPart) + 1);
        for (std::size_t length = 0;;) {
            const DWORD wanted = static_cast<DWORD>(std::min(text.size() - length, kTransfer));
            DWORD got = 0;
            if (!ReadFile(file.get(), text.data() + length, wanted, &got, nullptr)) return failLast(failure);
            length += got;
            if (got == 0) {
                text.resize(length);
                break;
            }
            if (length == text.size()) text.resize(length + kTransfer);
        }
        bytes = std::move(text);
        return true;
    });
}

bool FileSystem::write(const std::string& path, std::string_view bytes, WriteMode mode, bool flush, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        // Whoever appends shares the file with others that append: the system puts each piece at the end.
        const bool append = mode == WriteMode::append;
        Handle file = openFile(native, append ? FILE_APPEND_DATA | SYNCHRONIZE : GENERIC_WRITE,
                               append ? kShareAll : FILE_SHARE_READ | FILE_SHARE_DELETE,
                               mode == WriteMode::createNew ? CREATE_NEW : OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL);
        if (!file) return failOnFile(native, failure);
        // Emptied here and not by CREATE_ALWAYS, which refuses hidden files.
        if (mode == WriteMode::replace && !SetEndOfFile(file.get())) return failLast(failure);
        return writeAll(file, bytes, failure) && finishWriting(file, flush, failure);
    });
}

bool FileSystem::writeLike(const std::string& path, const std::string& model, std::string_view bytes,
                           Failure& failure) {
    return onPaths(path, model, failure, [&](const std::string& native, const std::string& nativeModel) {
        // What a file of that kind may have besides; the others say what is in it.
        constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
        DWORD attributes = GetFileAttributesA(nativeModel.c_str());
        attributes = attributes == INVALID_FILE_ATTRIBUTES ? 0 : attributes & kKept;
        std::string access = accessOf(nativeModel);
        SECURITY_ATTRIBUTES security = {sizeof security, access.empty() ? nullptr : access.data(), FALSE};
        if (!DeleteFileA(native.c_str()) && GetLastError() != ERROR_FILE_NOT_FOUND) return failOnFile(native, failure);
        Handle file(CreateFileA(native.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, &security,
                                CREATE_NEW, attributes | FILE_ATTRIBUTE_ARCHIVE, nullptr));
        if (!file) return failOnFile(native, failure);
        return writeAll(file, bytes, failure) && finishWriting(file, /*flush=*/true, failure);
    });
}

bool FileSystem::resolveLinks(const std::string& path, std::string& target, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        using GetFinalPathName = DWORD(WINAPI*)(HANDLE, LPSTR, DWORD, DWORD);
        static const auto finalPathName = systemFunction<GetFinalPathName>("kernel32.dll", "GetFinalPathNameByHandleA");
        const DWORD attributes = GetFileAttributesA(native.c_str());
        // A system without that function has no links to files either.
        if (!finalPathName || attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_REPARSE_POINT)) {
            target = path;
            return true;
        }
        const Handle file(
            CreateFileA(native.c_str(), 0, kShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        if (!file) return failLast(failure);
        constexpr std::string_view kLocal = "\\\\?\\", kServer = "\\\\?\\UNC\\";
        char name[MAX_PATH + kServer.size()];
        const DWORD length = finalPathName(file.get(), name, sizeof name, 0);
        if (length == 0) return failLast(failure);
        if (length >= sizeof name) return fail(failure, ERROR_FILENAME_EXCED_RANGE);
        const std::string_view text(name, length);
        if (text.starts_with(kServer))
            target = "\\\\" + std::string(text.substr(kServer.size()));
        else
            target = text.substr(text.starts_with(kLocal) ? kLocal.size() : 0);
        return true;
    });
}

bool FileSystem::remove(const std::string& path, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        return DeleteFileA(native.c_str()) || failOnFile(native, failure);
    });
}

bool FileSystem::link(const std::string& from, const std::string& to, Failure& failure) {
    return onPaths(from, to, failure, [&](const std::string& nativeFrom, const std::string& nativeTo) {
        using CreateHardLink = BOOL(WINAPI*)(LPCSTR, LPCSTR, LPSECURITY_ATTRIBUTES);
        static const auto createHardLink = systemFunction<CreateHardLink>("kernel32.dll", "CreateHardLinkA");
        if (createHardLink) {
            if (createHardLink(nativeTo.c_str(), nativeFrom.c_str(), nullptr)) return true;
            if (!linksMissing(GetLastError())) return failOnFile(nativeFrom, failure);
        }
        return CopyFileA(nativeFrom.c_str(), nativeTo.c_str(), /*failIfExists=*/TRUE) ||
               failOnFile(nativeFrom, failure);
    });
}

bool FileSystem::rename(const std::string& from, const std::string& to, Failure& failure) {
    return onPaths(from, to, failure, [&](const std::string& nativeFrom, const std::string& nativeTo) {
        if (MoveFileExA(nativeFrom.c_str(), nativeTo.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
            // Two names of one file: servers that lend the files of another system leave both.
            if (isSame(nativeFrom, nativeTo) && !isSameEntry(nativeFrom, nativeTo)) DeleteFileA(nativeFrom.c_str());
            return true;
        }
        failOnFile(nativeTo, failure);
        // Over a file that somebody reads the system has no permission to give, at this moment.
        if (failure.cause == Cause::denied && heldOpen(nativeTo)) failure.cause = Cause::busy;
        return false;
    });
}

bool FileSystem::createDirectory(const std::string& path, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        if (CreateDirectoryA(native.c_str(), nullptr)) return true;
        failLast(failure);
        if (failure.cause == Cause::denied && isKind(native, FileKind::directory))
            failure.cause = Cause::exists;  // a root
        return false;
    });
}

bool FileSystem::removeDirectory(const std::string& path, Failure& failure) {
    return onPath(path, failure,
                  [&](const std::string& native) { return RemoveDirectoryA(native.c_str()) || failLast(failure); });
}

bool FileSystem::list(const std::string& path, std::vector<DirectoryEntry>& entries, Failure& failure) {
    return onPath(path, failure, [&](std::string& native) {
        const DWORD attributes = GetFileAttributesA(native.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) return failLast(failure);
        if (kindOf(attributes) != FileKind::directory) return fail(failure, ERROR_DIRECTORY);
        if (native.back() != '\\') native += '\\';
        WIN32_FIND_DATAA data;
        const HANDLE search = FindFirstFileA((native + '*').c_str(), &data);
        if (search == INVALID_HANDLE_VALUE) {
            // The root of an empty disk holds nothing at all, not even "." and "..".
            if (GetLastError() != ERROR_FILE_NOT_FOUND) return failLast(failure);
            entries.clear();
            return true;
        }
        struct Closed {
            HANDLE search;
            ~Closed() { FindClose(search); }
        } const closed{search};
        std::vector<DirectoryEntry> found;
        do {
            std::string name = data.cFileName;
            if (name == "." || name == "..") continue;
            // A name with letters that this system's 8-bit text lacks is only known by its short form.
            if (name.find('?') != std::string::npos && data.cAlternateFileName[0]) name = data.cAlternateFileName;
            found.push_back({std::move(name), kindOf(data.dwFileAttributes)});
        } while (FindNextFileA(search, &data));
        if (GetLastError() != ERROR_NO_MORE_FILES) return failLast(failure);
        entries = std::move(found);
        return true;
    });
}

bool FileSystem::setCreationTime(const std::string& path, std::int64_t time, Failure& failure) {
    return onPath(path, failure, [&](const std::string& native) {
        // The system takes 0 for "leave it", and nothing from the year 30828 on.
        if (time <= -kSecondsTo1970 || time > INT64_MAX / kTicksPerSecond - kSecondsTo1970)
            return fail(failure, ERROR_INVALID_PARAMETER);
        const Handle file(CreateFileA(native.c_str(), FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES, kShareAll, nullptr,
                                      OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        if (!file) return failLast(failure);
        const auto ticks = static_cast<std::uint64_t>((time + kSecondsTo1970) * kTicksPerSecond);
        const FILETIME created = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
        if (!SetFileTime(file.get(), &created, nullptr, nullptr)) return failLast(failure);
        // Some file systems, and servers that lend theirs, take the time and drop it.
        FILETIME kept;
        if (GetFileTime(file.get(), &kept, nullptr, nullptr) && secondsOf(kept) == time) return true;
        return fail(failure, ERROR_NOT_SUPPORTED);
    });
}

}  // namespace kora::platform
