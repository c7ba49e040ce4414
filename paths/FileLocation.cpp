#include <kora/File.h>

#include <exception>
#include <string>
#include <string_view>
#include <unordered_set>

#include "core/FiledFaults.h"
#include "paths/FileSearch.h"
#include "paths/SharedDirectories.h"
#include "strings/Bytes.h"

using kora::equalIgnoringCase;
using kora::FileSearch;
using kora::nameToFind;
using kora::SharedDirectory;
using kora::sharedText;

namespace {

struct {
    bool searchDocumentRoot = false;
} constinit state;

/// Finds the one file of the fixed search order.
bool locateOne(FileSearch& search, FilePath& result) {
    CStringArray found;
    if (!search.fixedOrder(found, /*stopAtFirst=*/true)) return false;
    if (found.size() != 1) {
        kora::fileFault(kora::trace::kSearchCount);
        return false;
    }
    return result.FileStringSet(found[0].c_str());
}

/// Looks in @p dir (may be null), in @p dirs (may be null), and then in the fixed search order.
bool locateIn(const char* dir, const CStringArray* dirs, const char* name, FilePath& result) {
    if (name == nullptr) return false;
    const std::string expanded = nameToFind(name);
    FileSearch search(expanded);
    if (dir != nullptr && search.hits(FilePlaceGiven, dir)) return result.FileStringSet(search.path().c_str());
    if (dirs != nullptr)
        for (const CString& directory : *dirs)
            if (search.hits(FilePlaceList, directory)) return result.FileStringSet(search.path().c_str());
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
    const std::string expanded = nameToFind(name);
    FileSearch search(expanded);
    search.everywhere(dir, dirs, results);
    removeDuplicates(results);
} catch (const std::exception&) {
}

void FileGetProgramDir(CString& dir) try {
    dir = sharedText(SharedDirectory::executable);
} catch (const std::exception&) {
}

void FileDocRootSearchSet(bool on) { state.searchDocumentRoot = on; }

bool FileDocRootSearchGet() { return state.searchDocumentRoot; }
