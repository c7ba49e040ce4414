#include "paths/FileSearch.h"

#include "core/TraceRing.h"
#include "paths/NameExpansion.h"
#include "paths/PathText.h"
#include "paths/SharedDirectories.h"
#include "platform/Platform.h"
#include "strings/Bytes.h"

namespace kora {

namespace {

constexpr std::string_view kProgramTypes[] = {"exe", "com", "bat", "cmd"};

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

eFileVerdict verdictOf(platform::Cause cause) {
    if (cause == platform::Cause::notFound) return FileVerdictNotThere;
    return cause == platform::Cause::denied ? FileVerdictDenied : FileVerdictFailed;
}

}  // namespace

std::string nameToFind(const char* name, std::vector<FileReference>* references) {
    return platform::libraryPath(expandName(name, references));
}

bool FileSearch::join(std::string_view directory) {
    if (directory.empty()) return false;
    if (directory.front() != '/') return joinPath(path_, directory, name_);
    const std::string fromNative = platform::libraryPath(directory);
    return joinPath(path_, fromNative, name_);
}

/// Puts the question to the system; the reason goes to @p told, which may be null.
eFileVerdict FileSearch::ask(FileTry* told) {
    platform::FileKind kind;
    platform::Failure failure;
    if (platform::fileSystem().kind(path_, kind, failure))
        return kind == platform::FileKind::file ? FileVerdictFound : FileVerdictNotAFile;
    if (told != nullptr) {
        told->cause = static_cast<eFileError>(failure.cause);
        told->code = failure.code;
    }
    return verdictOf(failure.cause);
}

bool FileSearch::hitsPath(eFilePlace place, std::string_view directory, bool hasPath) {
    if (tries_ == nullptr) return hasPath && ask(nullptr) == FileVerdictFound;
    FileTry& told = tries_->emplace_back(
        FileTry{place, CString(directory), hasPath ? path_ : CString(), FileVerdictNoPath, FileErrorNone, 0});
    if (hasPath) told.verdict = done_ ? FileVerdictNotAsked : ask(&told);
    const bool found = told.verdict == FileVerdictFound;
    if (found && !asksEverywhere_) done_ = true;
    return found;
}

bool FileSearch::hits(eFilePlace place, std::string_view directory) {
    return hitsPath(place, directory, join(directory));
}

bool FileSearch::fixedOrder(CStringArray& results, bool stopAtFirst) {
    traceStep(trace::kFileSearch);
    if (isFullPath(name_)) {
        path_ = name_;
        if (!hitsPath(FilePlaceFullPath, {}, /*hasPath=*/true)) return false;
        results.push_back(path_);
        return true;
    }
    const auto endsIn = [&](eFilePlace place, std::string_view directory) {
        if (!hits(place, directory)) return false;
        results.push_back(path_);
        return stopAtFirst;
    };
    if (FileDocRootSearchGet() && endsIn(FilePlaceDocRoot, DirGetDocRootDir())) return true;
    if (endsIn(FilePlaceAppData, DirGetAppDataDir())) return true;
    if (endsIn(FilePlaceStartIn, rememberedWorkingDirectory())) return true;
    if (endsIn(FilePlaceProgram, sharedText(SharedDirectory::executable))) return true;
    if (!isProgram(name_)) return false;
    for (const std::string& directory :
         platform::splitDirectoryList(platform::environment().variable("PATH").value_or("")))
        if (endsIn(FilePlacePath, directory)) return true;
    return false;
}

void FileSearch::everywhere(const char* dir, const CStringArray& dirs, CStringArray& results) {
    if (dir != nullptr && hits(FilePlaceGiven, dir)) results.push_back(path_);
    // By index, since both lists may be one.
    for (std::size_t i = 0, count = dirs.size(); i < count; ++i)
        if (hits(FilePlaceList, dirs[i])) results.push_back(path_);
    fixedOrder(results, /*stopAtFirst=*/false);
}

}  // namespace kora
