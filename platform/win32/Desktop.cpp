#include "platform/win32/Desktop.h"

#include <objbase.h>

#include <cstdio>
#include <vector>

namespace kora::platform {

namespace {

BOOL CALLBACK takeVisible(HWND window, LPARAM found) {
    if (!IsWindowVisible(window)) return TRUE;
    *reinterpret_cast<HWND*>(found) = GetLastActivePopup(window);
    return FALSE;
}

std::string productName(const char* program) {
    DWORD ignored;
    const DWORD size = GetFileVersionInfoSizeA(program, &ignored);
    if (size == 0) return {};
    std::vector<char> record(size);
    if (!GetFileVersionInfoA(program, 0, size, record.data())) return {};
    struct Translation {
        WORD language, codePage;
    };
    void* found = nullptr;
    UINT length = 0;
    if (!VerQueryValueA(record.data(), "\\VarFileInfo\\Translation", &found, &length) || length < sizeof(Translation))
        return {};
    const Translation translation = *static_cast<const Translation*>(found);
    char name[64];
    std::snprintf(name, sizeof name, "\\StringFileInfo\\%04x%04x\\ProductName", translation.language,
                  translation.codePage);
    if (!VerQueryValueA(record.data(), name, &found, &length) || length == 0) return {};
    return static_cast<const char*>(found);
}

}  // namespace

HWND ownerWindow() {
    HWND window = GetActiveWindow();
    if (!window) EnumThreadWindows(GetCurrentThreadId(), takeVisible, reinterpret_cast<LPARAM>(&window));
    return window;
}

bool windowsVisible() {
    USEROBJECTFLAGS flags = {};
    DWORD size = 0;
    if (!GetUserObjectInformationA(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, &size)) return true;
    return (flags.dwFlags & WSF_VISIBLE) != 0;
}

std::string applicationTitle() {
    char program[MAX_PATH];
    const DWORD length = GetModuleFileNameA(nullptr, program, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return {};
    std::string title = productName(program);
    if (!title.empty()) return title;
    title = program;
    title.erase(0, title.rfind('\\') + 1);
    return title.substr(0, title.rfind('.'));
}

Components::Components()
    : ready_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE))) {}

Components::~Components() {
    if (ready_) CoUninitialize();
}

}  // namespace kora::platform
