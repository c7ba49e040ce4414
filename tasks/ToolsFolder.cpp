#include "tasks/ToolsFolder.h"

#include <kora/Dir.h>
#include <kora/Ini.h>
#include <kora/Str.h>
#include <kora/Tsk.h>

#include <algorithm>
#include <exception>
#include <new>
#include <string_view>
#include <tuple>

#include "paths/NameExpansion.h"
#include "platform/Platform.h"
#include "strings/Bytes.h"

namespace kora {

namespace {

constexpr std::string_view kModuleEnding = ".qzx";

// A folder that the host set; null leaves it to the settings.
constinit char* hostFolder = nullptr;

std::string folded(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), foldCase);
    return text;
}

bool isModuleFile(const platform::DirectoryEntry& entry) {
    const std::string_view name = entry.name;
    return entry.kind == platform::FileKind::file && name.size() >= kModuleEnding.size() &&
           equalIgnoringCase(name.substr(name.size() - kModuleEnding.size()), kModuleEnding);
}

}  // namespace

std::string toolsFolder() {
    CString text;
    if (hostFolder != nullptr)
        text = hostFolder;
    else
        IniGetString(eIniMain, "System", "toolfolder", text, true);
    text = text.empty() ? "tools" : expandName(text);
    DirPath folder;
    folder.DirInitExecutable();
    // What no directory can be called is answered as it stands: nothing will be found there.
    if (!folder.DirStringSet(text.c_str())) return text;
    const char* resolved = folder.DirStringGet();
    return resolved != nullptr ? resolved : text;
}

std::vector<std::string> moduleFiles(const std::string& folder) {
    std::vector<platform::DirectoryEntry> entries;
    platform::Failure ignored;
    platform::fileSystem().list(folder, entries, ignored);
    std::vector<std::string> names;
    for (const platform::DirectoryEntry& entry : entries)
        if (isModuleFile(entry)) names.push_back(entry.name);
    std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
        return std::tuple(folded(a), a) < std::tuple(folded(b), b);
    });
    return names;
}

}  // namespace kora

bool TskModuleFilesGet(CString& folder, CStringArray& files) try {
    folder = kora::toolsFolder();
    files = kora::moduleFiles(folder);
    return true;
} catch (const std::exception&) {
    folder.clear();
    files.clear();
    return false;
}

void TskToolsFolderSet(const char* folder) {
    ::operator delete(kora::hostFolder);
    kora::hostFolder = StrNew(folder);
}
