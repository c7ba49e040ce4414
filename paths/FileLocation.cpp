#include <kora/Err.h>
#include <kora/File.h>
#include <kora/Trace.h>

#include <exception>
#include <string>
#include <string_view>
#include <unordered_set>

#include "core/TraceCodes.h"
#include "paths/NameExpansion.h"
#include "paths/PathText.h"
#include "paths/SharedDirectories.h"
#include "platform/Platform.h"
#include "strings/Bytes.h"

using kora::equalIgnoringCase;
using kora::SharedDirectory;

namespace {

namespace platform = kora::platform;

enum Place : std::uint32_t { kSearch = 0xA00, kUnexpectedCount = 0xA44 };

constexpr std::string_view kProgramTypes[] = {"exe", "com", "bat", "cmd"};

struct {
    bool searchDocumentRoot = false;
} constinit state;

std::string_view sharedText(SharedDirectory which) {
    const char* text = kora::sharedDirectory(which);
    return text != nullptr ? text : std::string_view{};
}

// At position 0 two backslashes do not count: such a name is looked for like a relative one.
bool isFullPath(std::string_view name) { return name.find("\\\\", 1) != name.npos || name.find(":\\", 1) != name.npos; }

bool isProgram(std::string_view name) {
    if (const std::size_t separator = name.rfind('\\'); separator != name.npos) name.remove_prefix(separator + 1);
    const std::size_t dot = name.rfind('.');
    if (dot == name.npos) return false;
    for (const std::string_view type : kProgramTypes)
        if (equalIgnoringCase(name.substr(dot + 1), type)) return true;
    return false;
}

std::string expandedName(const char* name) { return platform::libraryPath(kora::expandName(name)); }

/// Looks for one name, directory after directory. One path buffer serves all of them, and each costs one question to
/// the system.
class Search {
public:
    explicit Search(const std::string& name) : name_(name) {}

    /// Whether the file is in @p directory; the empty directory holds nothing.
    bool hits(std::string_view directory) {
        if (directory.empty()) return false;
        if (directory.front() != '/') return kora::joinPath(path_, directory, name_) && isFile();
        const std::string fromNative = platform::libraryPath(directory);
        return kora::joinPath(path_, fromNative, name_) && isFile();
    }
    bool hitsAsFullPath() {
        path_ = name_;
        return isFile();
    }
    /// Where the last hit was.
    const std::string& path() const { return path_; }

    /// The fixed search order. Without @p stopAtFirst the answer is false for all but a full path, whatever was found.
    bool fixedOrder(CStringArray& results, bool stopAtFirst) {
        TraceCode(kora::trace::code(kora::trace::kFileLocation, kSearch));
        if (isFullPath(name_)) {
            if (!hitsAsFullPath()) return false;
            results.push_back(path_);
            return true;
        }
        const auto endsIn = [&](std::string_view directory) {
            if (!hits(directory)) return false;
            results.push_back(path_);
            return stopAtFirst;
        };
        if (state.searchDocumentRoot && endsIn(DirGetDocRootDir())) return true;
        if (endsIn(DirGetAppDataDir())) return true;
        if (endsIn(kora::rememberedWorkingDirectory())) return true;
        if (endsIn(sharedText(SharedDirectory::executable))) return true;
        if (!isProgram(name_)) return false;
        for (const std::string& directory :
             platform::splitDirectoryList(platform::environment().variable("PATH").value_or("")))
            if (endsIn(directory)) return true;
        return false;
    }

private:
    bool isFile() const {
        platform::FileKind kind;
        platform::Failure ignored;
        return platform::fileSystem().kind(path_, kind, ignored) && kind == platform::FileKind::file;
    }

    const std::string& name_;
    std::string path_;
};

/// Finds the one file of the fixed search order.
bool locateOne(Search& search, FilePath& result) {
    CStringArray found;
    if (!search.fixedOrder(found, /*stopAtFirst=*/true)) return false;
    if (found.size() != 1) {
        ERR(ErrLevelLowest, kora::trace::kModule, kora::trace::kFileLocation, kUnexpectedCount, nullptr, 0);
        return false;
    }
    return result.FileStringSet(found[0].c_str());
}

/// Looks in @p dir (may be null), in @p dirs (may be null), and then in the fixed search order.
bool locateIn(const char* dir, const CStringArray* dirs, const char* name, FilePath& result) {
    if (name == nullptr) return false;
    const std::string expanded = expandedName(name);
    Search search(expanded);
    if (dir != nullptr && search.hits(dir)) return result.FileStringSet(search.path().c_str());
    if (dirs != nullptr)
        for (const CString& directory : *dirs)
            if (search.hits(directory)) return result.FileStringSet(search.path().c_str());
    return locateOne(search, result);
}

/// Leaves of each path only its first occurrence, without regard to letter case.
void removeDuplicates(CStringArray& paths) {
    std::unordered_set<std::string> seen;
    std::erase_if(paths, [&](const CString& path) {
        std::string folded = path;
        for (char& c : folded) c = kora::foldCase(c);
        return !seen.insert(std::move(folded)).second;
    });
}

}  // namespace

void FileGetSearchDirs(CStringArray& dirs) try {
    const CString documents = DirGetDocRootDir(), data = DirGetAppDataDir();
    const std::string_view program = sharedText(SharedDirectory::executable);
    if (!documents.empty()) dirs.push_back(documents);
    if (!data.empty() && !equalIgnoringCase(data, documents)) dirs.push_back(data);
    if (!program.empty() && !equalIgnoringCase(program, documents) && !equalIgnoringCase(program, data))
        dirs.emplace_back(program);
} catch (const std::exception&) {
}

bool FileLocateFile(const char* name, FilePath& result, bool) try {
    return locateIn(nullptr, nullptr, name, result);
} catch (const std::exception&) {
    return false;
}

bool FileLocateFile(const char* name, CString& result, bool flag) try {
    FilePath found;
    if (!FileLocateFile(name, found, flag)) return false;
    result = found.FileStringGet();
    return true;
} catch (const std::exception&) {
    return false;
}

bool FileLocateFile(CStringArray& dirs, const char* name, FilePath& result, bool) try {
    return locateIn(nullptr, &dirs, name, result);
} catch (const std::exception&) {
    return false;
}

bool FileLocateFile(const char* dir, CStringArray& dirs, const char* name, FilePath& result, bool) try {
    return locateIn(dir, &dirs, name, result);
} catch (const std::exception&) {
    return false;
}

void FileLocateFile(const char* name, CStringArray& dirs, const char* dir, CStringArray& results, bool) try {
    if (name == nullptr) return;
    const std::string expanded = expandedName(name);
    Search search(expanded);
    if (dir != nullptr && search.hits(dir)) results.push_back(search.path());
    // By index, since both lists may be one.
    for (std::size_t i = 0, count = dirs.size(); i < count; ++i)
        if (search.hits(dirs[i])) results.push_back(search.path());
    search.fixedOrder(results, /*stopAtFirst=*/false);
    removeDuplicates(results);
} catch (const std::exception&) {
}

void FileGetProgramDir(CString& dir) try {
    dir = sharedText(SharedDirectory::executable);
} catch (const std::exception&) {
}

void FileDocRootSearchSet(bool on) { state.searchDocumentRoot = on; }

bool FileDocRootSearchGet() { return state.searchDocumentRoot; }
