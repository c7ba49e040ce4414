#include "paths/Places.h"

#include <kora/Dir.h>

#include <exception>

#include "paths/PathText.h"
#include "platform/Platform.h"

namespace {

/// Where the applications keep what is theirs, below the system's own data directories.
std::string applicationsIn(std::string directory) {
    if (directory.empty()) return directory;
    if (directory.back() != '\\') directory += '\\';
    return directory += "Veltrane\\Tessera5";
}

}  // namespace

CString DirGetAppDataDir() try {
    return applicationsIn(kora::platform::environment().userData());
} catch (const std::exception&) {
    return {};
}

CString DirGetPublicDataDir() try {
    return applicationsIn(kora::platform::environment().sharedData());
} catch (const std::exception&) {
    return {};
}

CString DirGetDocRootDir() try { return kora::platform::environment().documents(); } catch (const std::exception&) {
    return {};
}

namespace kora {

bool directoryMake(const std::string& directory) {
    platform::FileSystem& files = platform::fileSystem();
    const std::string path = directoryForSystem(directory);
    platform::Failure failure;
    if (path.empty()) return false;
    if (files.createDirectory(path, failure)) return true;
    platform::FileKind kind;
    platform::Failure ignored;
    if (files.kind(path, kind, ignored)) return kind == platform::FileKind::directory;
    const std::string above(pathAbove(path));
    return failure.cause == platform::Cause::notFound && directoryMake(above) && files.createDirectory(path, failure);
}

bool directoryMakeForWrite(const std::string& path) {
    const std::string directory(pathAbove(path));
    platform::FileKind kind;
    platform::Failure failure;
    if (platform::fileSystem().kind(directory, kind, failure)) return false;
    for (const std::string& place : {DirGetDocRootDir(), DirGetAppDataDir(), DirGetPublicDataDir()}) {
        std::string_view rest;
        if (liesIn(path, place, rest)) return directoryMake(directory);
    }
    return false;
}

}  // namespace kora
