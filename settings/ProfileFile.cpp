#include "settings/ProfileFile.h"

#include <kora/Trace.h>

#include <exception>

#include "core/TraceRing.h"

namespace kora {

using platform::Cause;
using platform::Failure;
using platform::fileSystem;
using platform::WriteMode;

namespace {

// Scanners and indexers hold a file for some milliseconds after it was written.
constexpr int kAttempts = 10;
constexpr std::uint32_t kPauseMilliseconds = 10;

template <class Operation>
bool retried(Failure& failure, Operation operation) {
    for (int attempt = 1;; ++attempt) {
        failure = {};
        if (operation()) return true;
        if (failure.cause != Cause::busy || attempt == kAttempts) return false;
        platform::pause(kPauseMilliseconds);
    }
}

bool isMissing(const std::string& path) {
    platform::FileKind kind;
    Failure failure;
    return !fileSystem().kind(path, kind, failure) && failure.cause == Cause::notFound;
}

bool removeFile(const std::string& path, Failure& failure) {
    return retried(failure, [&] { return fileSystem().remove(path, failure); }) || failure.cause == Cause::notFound;
}

bool renameFile(const std::string& from, const std::string& to, Failure& failure) {
    return retried(failure, [&] { return fileSystem().rename(from, to, failure); });
}

// A note that memory does not allow is left out: the swap and its answer do not depend on it.
template <class... Arguments>
void note(const Arguments&... texts) {
    try {
        std::string line;
        (line.append(texts), ...);
        TraceNote(line.c_str());
    } catch (const std::exception&) {
    }
}

bool swapFailed(const ProfileNames& names, const char* step, const Failure& failure) {
    traceStep(trace::kProfileSwapFailed);
    traceData(failure.code);
    note("IniSetString: '", names.file, "' keeps its old text: ", step, " failed, cause ",
         std::to_string(static_cast<int>(failure.cause)), ", system code ", std::to_string(failure.code));
    return false;
}

/// Puts the scratch file in the place of the file, which keeps a second name until that has come about.
bool swapFiles(const ProfileNames& names) {
    traceStep(trace::kProfileSwap);
    Failure failure;
    if (!removeFile(names.backup, failure)) return swapFailed(names, "removing an old backup", failure);
    // A file that somebody took away meanwhile has nothing to keep.
    if (!retried(failure, [&] { return fileSystem().link(names.file, names.backup, failure); }) &&
        failure.cause != Cause::notFound)
        return swapFailed(names, "keeping a backup", failure);
    Failure ignored;
    if (!renameFile(names.scratch, names.file, failure)) {
        // Whoever took the file away meanwhile gets the old text back under its name.
        if (isMissing(names.file))
            renameFile(names.backup, names.file, ignored);
        else
            removeFile(names.backup, ignored);
        return swapFailed(names, "putting the new file in its place", failure);
    }
    removeFile(names.backup, ignored);
    return true;
}

}  // namespace

bool profileNames(const std::string& path, ProfileNames& names) {
    Failure failure;
    if (!retried(failure, [&] { return fileSystem().resolveLinks(path, names.file, failure); })) return false;
    const std::string directory = names.file.substr(0, names.file.rfind('\\') + 1);
    names.scratch = directory + kProfileScratch;
    names.backup = directory + kProfileBackup;
    return true;
}

bool readProfile(const std::string& path, std::string& text, Failure& failure) {
    return retried(failure, [&] { return fileSystem().read(path, text, failure); });
}

bool createProfile(const std::string& path) {
    Failure failure;
    return fileSystem().write(path, {}, WriteMode::createNew, /*flush=*/false, failure);
}

bool replaceProfile(const ProfileNames& names, std::string_view text) {
    traceStep(trace::kProfileWrite);
    Failure failure;
    const bool copied =
        retried(failure, [&] { return fileSystem().writeLike(names.scratch, names.file, text, failure); });
    if (!copied || !swapFiles(names)) removeFile(names.scratch, failure);
    // The answer is the copy's: after a swap that failed, the old file stands.
    return copied;
}

bool takeBackupBack(const ProfileNames& names) {
    if (!isMissing(names.file) || isMissing(names.backup)) return true;
    platform::FileKind kind;
    Failure failure;
    if (fileSystem().kind(names.backup, kind, failure) && kind != platform::FileKind::file) return true;
    traceStep(trace::kProfileTakeBack);
    const bool done = renameFile(names.backup, names.file, failure);
    note("'", names.file, "' was missing, its backup ", done ? "was taken back" : "could not be taken back");
    return done;
}

}  // namespace kora
