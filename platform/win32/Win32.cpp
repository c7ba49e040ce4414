#include "platform/win32/Win32.h"

namespace kora::platform {

namespace {

// A deleted file keeps its name until the last program closes it; the number for that in the layer below is the only
// thing that tells this from a missing permission.
bool deletePending() {
    using Status = LONG(WINAPI*)();
    constexpr LONG kDeletePending = static_cast<LONG>(0xC0000056);
    const auto lastStatus = systemFunction<Status>("ntdll.dll", "RtlGetLastNtStatus");
    return lastStatus && lastStatus() == kDeletePending;
}

constexpr DWORD kDiskQuotaExceeded = 1295;  // the header of this compiler has no name for it

Cause causeOf(DWORD code) {
    switch (code) {
        case ERROR_SUCCESS:
            return Cause::none;
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_NOT_READY:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME:
        case ERROR_BAD_PATHNAME:
        case ERROR_INVALID_NAME:
            return Cause::notFound;
        case ERROR_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT:
        case ERROR_NETWORK_ACCESS_DENIED:
        case ERROR_PRIVILEGE_NOT_HELD:
        case ERROR_CANCELLED:
            return Cause::denied;
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return Cause::exists;
        case ERROR_DIRECTORY:
            return Cause::wrongKind;
        case ERROR_DIR_NOT_EMPTY:
            return Cause::notEmpty;
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_USER_MAPPED_FILE:
        case ERROR_BUSY:
        case ERROR_DRIVE_LOCKED:
            return Cause::busy;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case kDiskQuotaExceeded:
            return Cause::full;
        case ERROR_INVALID_FUNCTION:
        case ERROR_NOT_SAME_DEVICE:
        case ERROR_NOT_SUPPORTED:
        case ERROR_CALL_NOT_IMPLEMENTED:
        case ERROR_NO_ASSOCIATION:
            return Cause::unsupported;
        default:
            return Cause::other;
    }
}

}  // namespace

bool fail(Failure& failure, DWORD code) {
    failure = {causeOf(code), code};
    return false;
}

bool failLast(Failure& failure) {
    fail(failure, GetLastError());
    if (failure.code == ERROR_ACCESS_DENIED && deletePending()) failure.cause = Cause::busy;
    return false;
}

bool systemPath(const std::string& path, std::string& native, Failure& failure) {
    if (path.find('\0') != std::string::npos) {
        failure = {Cause::other, ERROR_INVALID_NAME};
        return false;
    }
    if (path.size() >= MAX_PATH) return fail(failure, ERROR_FILENAME_EXCED_RANGE);
    native = path;
    if (native.size() == 2 && native[1] == ':') native += '\\';
    return true;
}

std::string directoryForm(std::string directory) {
    while (directory.size() > 1 && directory.back() == '\\' && directory[directory.size() - 2] != ':')
        directory.pop_back();
    return directory;
}

}  // namespace kora::platform
