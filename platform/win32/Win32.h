#pragma once

// The one place that includes the system's header; only the sources of this folder include this one.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <string>

#include "platform/Platform.h"

namespace kora::platform {

/// Fills @p failure from a system error number and answers false.
bool fail(Failure& failure, DWORD code);
/// The same from what the last call in this thread left behind.
bool failLast(Failure& failure);

/// A path as the system takes it: a bare drive means its root, as everywhere in the library, and not the drive's
/// working directory. False, with @p failure set, for what the system's calls would cut short.
bool systemPath(const std::string& path, std::string& native, Failure& failure);

/// A directory as the library writes it: without a `\` at the end unless it is a root.
std::string directoryForm(std::string directory);

/// A kernel handle that is closed when it goes. Null and INVALID_HANDLE_VALUE are none.
class Handle {
public:
    explicit Handle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
    ~Handle() { close(); }
    Handle(Handle&& other) noexcept : handle_(other.handle_) { other.handle_ = nullptr; }
    Handle& operator=(Handle&&) = delete;

    explicit operator bool() const { return handle_ != nullptr; }
    HANDLE get() const { return handle_; }
    bool close() {
        HANDLE handle = handle_;
        handle_ = nullptr;
        return !handle || CloseHandle(handle);
    }

private:
    HANDLE handle_;
};

/// A function that not every supported system has; null where it is missing.
template <typename Function>
Function systemFunction(const char* library, const char* name) {
    const HMODULE module = GetModuleHandleA(library);
    return module ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name))) : nullptr;
}

}  // namespace kora::platform
