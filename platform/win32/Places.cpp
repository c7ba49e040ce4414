#include "platform/win32/Win32.h"

#include <shlobj.h>

#include <exception>

namespace kora::platform {

namespace {

/// What a call with a buffer answers, whose result is the length, or the size it needs when there was no room.
template <typename Call>
std::string grownText(Call call) {
    std::string text(MAX_PATH, '\0');
    for (;;) {
        const DWORD length = call(text.data(), static_cast<DWORD>(text.size()));
        if (length < text.size()) {
            text.resize(length);
            return text;
        }
        text.resize(std::size_t{length} + 1);
    }
}

/// Runs @p place; memory that runs out leaves the directory unnamed.
template <typename Place>
std::string named(Place place) {
    try {
        return directoryForm(place());
    } catch (const std::exception&) {
        return {};
    }
}

std::string specialFolder(int folder) {
    using FolderPath = HRESULT(WINAPI*)(HWND, int, HANDLE, DWORD, LPSTR);
    static const auto folderPath = systemFunction<FolderPath>("shell32.dll", "SHGetFolderPathA");
    using SpecialPath = BOOL(WINAPI*)(HWND, LPSTR, int, BOOL);
    static const auto specialPath = systemFunction<SpecialPath>("shell32.dll", "SHGetSpecialFolderPathA");
    char path[MAX_PATH] = "";
    const bool known =
        folderPath ? SUCCEEDED(folderPath(nullptr, folder | CSIDL_FLAG_DONT_VERIFY, nullptr, SHGFP_TYPE_CURRENT, path))
                   : specialPath && specialPath(nullptr, path, folder, /*create=*/FALSE);
    return named([&] { return std::string(known ? path : ""); });
}

}  // namespace

std::optional<std::string> Environment::variable(const std::string& name) try {
    if (name.find('\0') != name.npos) return std::nullopt;
    SetLastError(ERROR_SUCCESS);
    std::string value =
        grownText([&](char* text, DWORD size) { return GetEnvironmentVariableA(name.c_str(), text, size); });
    if (value.empty() && GetLastError() == ERROR_ENVVAR_NOT_FOUND) return std::nullopt;
    return value;
} catch (const std::exception&) {
    return std::nullopt;
}

std::string Environment::documents() { return specialFolder(CSIDL_PERSONAL); }

std::string Environment::userData() { return specialFolder(CSIDL_APPDATA); }

std::string Environment::sharedData() { return specialFolder(CSIDL_COMMON_APPDATA); }

std::string Environment::systemDirectory() {
    return named(
        [] { return grownText([](char* text, DWORD size) { return DWORD{GetWindowsDirectoryA(text, size)}; }); });
}

std::string Environment::temporary() {
    return named([] {
        std::string directory = grownText([](char* text, DWORD size) { return GetTempPathA(size, text); });
        // Only a file made there shows that the system's answer can be used.
        char trial[MAX_PATH];
        if (directory.empty() || !GetTempFileNameA(directory.c_str(), "a", 0, trial)) return std::string();
        DeleteFileA(trial);
        return directory;
    });
}

std::string Environment::workingDirectory() {
    return named([] { return grownText([](char* text, DWORD size) { return GetCurrentDirectoryA(size, text); }); });
}

std::string Environment::programDirectory() {
    return named([] {
        // Without room the call answers the size it was given, which grownText() takes for one that is too small.
        std::string program = grownText([](char* text, DWORD size) { return GetModuleFileNameA(nullptr, text, size); });
        program.erase(program.rfind('\\') + 1);
        return program;
    });
}

std::string Environment::registryFolder() { return {}; }

}  // namespace kora::platform
