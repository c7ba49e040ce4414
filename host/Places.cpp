#include "host/Places.h"

#include <kora/File.h>
#include <kora/Ini.h>
#include <kora/Tsk.h>
#include <kora/Utl.h>

#include <algorithm>
#include <filesystem>

#include "host/ModuleFile.h"

namespace kora::host {

std::string nativeText(const std::string& path) {
    constexpr int kWindows = 3;
    if (UtlOS() == kWindows || !path.starts_with("Z:\\")) return path;
    std::string text = path.substr(2);  // the root directory is drive Z:
    std::replace(text.begin(), text.end(), '\\', '/');
    return text;
}

std::string programFile(const std::string& called) {
    std::error_code error;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!error) return self.string();
    CString folder;
    FileGetProgramDir(folder);
    std::string path = nativeText(folder + '\\' + nameOf(called));
    if (!readModuleFile(path).trouble.empty()) path += ".exe";  // the shell lets it be left out
    return path;
}

std::string usePlaces(const Options& options) {
    // What somebody named has to be there, unlike what is looked for.
    if (!options.ini.empty()) {
        FilePath file(options.ini.c_str());
        CString text;
        if (!file.FileReadString(text) || !IniMainFileSet(options.ini.c_str()))
            return "the profile " + options.ini +
                   (file.FileGetErrorCause() == FileErrorNotFound ? " is not there" : " cannot be read");
    }
    if (options.tools.empty()) return {};
    std::error_code error;
    if (!std::filesystem::is_directory(options.tools, error)) return "the folder " + options.tools + " is not there";
    if (const std::filesystem::directory_iterator first(options.tools, error); error)
        return "the folder " + options.tools + " cannot be read";
    TskToolsFolderSet(options.tools.c_str());
    return {};
}

void notePlaces(RunRecord& record) {
    CString folder, profile;
    CStringArray ignored;
    if (IniMainFileGet(profile)) record.profileThere = FilePath(profile.c_str()).FileExists();
    record.profile = nativeText(profile);
    if (TskModuleFilesGet(folder, ignored)) record.toolsFolder = nativeText(folder);
}

}  // namespace kora::host
