#include "platform/win32/Win32.h"

#include <cstring>
#include <exception>
#include <string_view>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace kora::platform {

namespace {

/// Keeps the system from asking the user to put a disk in, or telling him of a missing library, while it lives.
class NoErrorBoxes {
public:
    NoErrorBoxes() : before_(SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX)) {}
    ~NoErrorBoxes() { SetErrorMode(before_); }
    NoErrorBoxes(const NoErrorBoxes&) = delete;
    NoErrorBoxes& operator=(const NoErrorBoxes&) = delete;

private:
    UINT before_;
};

HMODULE instanceOf(ModuleHandle module) { return reinterpret_cast<HMODULE>(module); }

/// The file's whole path with a dot in its name, without which the loader would look for a ".dll".
std::string loaderPath(const std::string& path) {
    char full[MAX_PATH];
    char* name = nullptr;
    const DWORD length = GetFullPathNameA(path.c_str(), MAX_PATH, full, &name);
    if (length == 0 || length >= MAX_PATH) return path;
    std::string text = full;
    if (name && std::string_view(name).find('.') == std::string_view::npos) text += '.';
    return text;
}

}  // namespace

ModuleHandle loadModule(const std::string& path, LoadFailure& failure) try {
    failure.detail.clear();  // the system has nothing to say beyond its number
    std::string native;
    Failure refused;
    if (!systemPath(path, native, refused)) {
        failure.code = refused.code;
        return 0;
    }
    const NoErrorBoxes quiet;
    // With this search order the libraries beside the module are found.
    const HMODULE module = LoadLibraryExA(loaderPath(native).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (module) return reinterpret_cast<ModuleHandle>(module);
    failure.code = GetLastError();
    // The loader says the same of a file that is not there as of one that needs a library that is not there.
    if (failure.code == ERROR_MOD_NOT_FOUND && GetFileAttributesA(native.c_str()) == INVALID_FILE_ATTRIBUTES)
        failure.code = GetLastError();
    return 0;
} catch (const std::exception&) {
    failure.code = ERROR_NOT_ENOUGH_MEMORY;
    return 0;
}

void unloadModule(ModuleHandle module) {
    if (module) FreeLibrary(instanceOf(module));
}

void* moduleFunction(ModuleHandle module, const char* name) {
    if (!module || !name) return nullptr;
    return reinterpret_cast<void*>(GetProcAddress(instanceOf(module), name));
}

int moduleString(ModuleHandle module, int id, char* buffer, int size) {
    // An id is 16 bits wide; the system would take a larger one for another string.
    if (!module || !buffer || size <= 0) return 0;
    if (id >= 0 && id <= 0xFFFF) {
        const int length = LoadStringA(instanceOf(module), static_cast<UINT>(id), buffer, size);
        if (length > 0) return length;
    }
    buffer[0] = '\0';
    return 0;
}

ModuleHandle ownModule() { return reinterpret_cast<ModuleHandle>(&__ImageBase); }

const void* calledCode(const void* code) {
    // A stub is one jump through the import table: FF 25, then the address of the entry.
    const auto* bytes = static_cast<const unsigned char*>(code);
    if (bytes[0] != 0xFF || bytes[1] != 0x25) return code;
    const void* const* entry;
    std::memcpy(&entry, bytes + 2, sizeof entry);
    return *entry;
}

}  // namespace kora::platform
