#include "platform/win32/Desktop.h"

#include <cderr.h>
#include <commdlg.h>
#include <objbase.h>
#include <shlobj.h>

#include <algorithm>
#include <cstring>
#include <string_view>

namespace kora::platform {

namespace {

/// The choosers walk about; the program stays where it was.
class WorkingDirectoryKept {
public:
    WorkingDirectoryKept() : known_(GetCurrentDirectoryA(sizeof before_, before_) - 1 < sizeof before_ - 1) {}
    ~WorkingDirectoryKept() {
        if (known_) SetCurrentDirectoryA(before_);
    }
    WorkingDirectoryKept(const WorkingDirectoryKept&) = delete;
    WorkingDirectoryKept& operator=(const WorkingDirectoryKept&) = delete;

private:
    char before_[MAX_PATH];
    bool known_;
};

/// What stands before the first `;` of @p list, which is removed with it.
std::string_view takeFirst(std::string_view& list) {
    const std::string_view first = list.substr(0, list.find(';'));
    list.remove_prefix(std::min(first.size() + 1, list.size()));
    return first;
}

/// The filter as the system takes it: description, NUL, pattern, NUL, and so on. @p type becomes the first pair's.
std::string systemFilter(std::string_view pairs, std::string& type) {
    std::string filter;
    while (!pairs.empty()) {
        const std::string_view description = takeFirst(pairs);
        std::string_view pairType = takeFirst(pairs);
        if (pairType.empty()) pairType = "*";
        if (filter.empty() && pairType != "*") type = pairType;
        filter.append(description).push_back('\0');
        filter.append("*.").append(pairType).push_back('\0');
    }
    return filter;
}

int CALLBACK startAtPath(HWND window, UINT message, LPARAM, LPARAM path) {
    if (message == BFFM_INITIALIZED) SendMessageA(window, BFFM_SETSELECTIONA, /*path, not list=*/TRUE, path);
    return 0;
}

}  // namespace

bool chooseFile(const std::string& prompt, const std::string& filter, bool saving, std::string& path) {
    if (!windowsVisible()) return false;
    std::string start = path, name;
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
        const std::size_t end = path.rfind('\\') + 1;
        start = directoryForm(path.substr(0, end));
        name = path.substr(end);
    }
    char file[4 * MAX_PATH] = "";
    if (name.size() < sizeof file) std::memcpy(file, name.c_str(), name.size() + 1);
    std::string type;
    const std::string pairs = systemFilter(filter, type);

    const Components components;
    const WorkingDirectoryKept kept;
    OPENFILENAMEA dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = ownerWindow();
    dialog.lpstrFilter = pairs.empty() ? nullptr : pairs.c_str();
    dialog.lpstrFile = file;
    dialog.nMaxFile = sizeof file;
    dialog.lpstrInitialDir = start.empty() ? nullptr : start.c_str();
    dialog.lpstrTitle = prompt.empty() ? nullptr : prompt.c_str();
    dialog.lpstrDefExt = type.empty() ? nullptr : type.c_str();
    dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_NOCHANGEDIR;
    dialog.Flags |= saving ? OFN_OVERWRITEPROMPT : OFN_FILEMUSTEXIST;
    const auto show = saving ? GetSaveFileNameA : GetOpenFileNameA;
    bool chosen = show(&dialog);
    // Old names may hold what a name may not; then it begins without one.
    if (!chosen && CommDlgExtendedError() == FNERR_INVALIDFILENAME) {
        file[0] = '\0';
        chosen = show(&dialog);
    }
    if (chosen) path = file;
    return chosen;
}

bool chooseDirectory(const std::string& prompt, std::string& path) {
    if (!windowsVisible()) return false;
    const Components components;
    const WorkingDirectoryKept kept;
    BROWSEINFOA browse = {};
    browse.hwndOwner = ownerWindow();
    browse.lpszTitle = prompt.c_str();
    browse.ulFlags = BIF_RETURNONLYFSDIRS | BIF_NEWDIALOGSTYLE;
    browse.lpfn = path.empty() ? nullptr : startAtPath;
    browse.lParam = reinterpret_cast<LPARAM>(path.c_str());
    const auto list = SHBrowseForFolderA(&browse);
    if (!list) return false;
    char chosen[MAX_PATH];
    const bool named = SHGetPathFromIDListA(list, chosen);
    CoTaskMemFree(list);
    if (named) path = directoryForm(chosen);
    return named;
}

}  // namespace kora::platform
