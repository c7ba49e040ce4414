#include <kora/Dir.h>
#include <kora/File.h>

#include <cstring>
#include <exception>
#include <new>

#include "core/Presenter.h"
#include "core/TraceRing.h"
#include "paths/DirectoryScan.h"
#include "paths/PathText.h"
#include "paths/SharedDirectories.h"
#include "platform/Platform.h"
#include "strings/Bytes.h"

using kora::directoryForSystem;
using kora::kPathTextSize;
using kora::SharedDirectory;
using kora::platform::Failure;
using kora::platform::FileKind;
using kora::platform::FileStatus;
using kora::platform::fileSystem;

DirPath::DirPath() = default;

DirPath::DirPath(const char* text) { DirPath::DirStringSet(text); }

DirPath::DirPath(const DirPath& other) { *this = other; }

DirPath::~DirPath() {
    delete scan_;
    directoryRelease();
}

DirPath& DirPath::operator=(const DirPath& other) {
    if (this == &other) return *this;
    if (kora::isSharedDirectory(other.dir_))
        directoryShare(other.dir_);
    else
        directoryStore(other.dir_);
    return *this;
}

void DirPath::directoryRelease() {
    if (!kora::isSharedDirectory(dir_)) delete[] dir_;
    dir_ = nullptr;
}

bool DirPath::directoryShare(char* shared) {
    if (shared == nullptr) return false;
    directoryRelease();
    dir_ = shared;
    return true;
}

/// Null and empty text make the null directory. @p text may be the old directory's.
bool DirPath::directoryStore(const char* text) {
    char* stored = nullptr;
    if (text != nullptr && *text != '\0') {
        stored = new (std::nothrow) char[kPathTextSize];
        if (stored == nullptr) return false;
        std::memcpy(stored, text, std::strlen(text) + 1);
    }
    directoryRelease();
    dir_ = stored;
    return true;
}

const char* DirPath::DirDisplayGet() {
    // Capitals in a shared text would show in everybody's directories.
    if (kora::isSharedDirectory(dir_) && !directoryStore(dir_)) return dir_;
    if (dir_ != nullptr) kora::capitalizeForDisplay(dir_);
    return dir_;
}

const char* DirPath::DirStringGet() { return dir_; }

bool DirPath::DirStringSet(const char* text) try {
    if (text == nullptr || std::strlen(text) >= kPathTextSize) return false;
    const char* current = dir_ != nullptr ? dir_ : "";
    char resolved[kPathTextSize];
    if (*text == '/' ? !kora::resolveDirectory(current, kora::platform::libraryPath(text), resolved)
                     : !kora::resolveDirectory(current, text, resolved))
        return false;
    return directoryStore(resolved);
} catch (const std::exception&) {
    return false;
}

bool DirPath::DirExists() try {
    const char* text = DirStringGet();
    FileKind kind;
    Failure ignored;
    return text != nullptr && fileSystem().kind(directoryForSystem(text), kind, ignored) && kind == FileKind::directory;
} catch (const std::exception&) {
    return false;
}

bool DirPath::DirReadOnly() try {
    const char* text = DirStringGet();
    FileStatus status;
    Failure ignored;
    return text != nullptr && fileSystem().status(directoryForSystem(text), status, ignored) &&
           status.kind == FileKind::directory && status.readOnly;
} catch (const std::exception&) {
    return false;
}

bool DirPath::DirDelete() try {
    kora::traceStep(kora::trace::kDirDelete);
    const char* text = DirStringGet();
    Failure ignored;
    return text != nullptr && fileSystem().removeDirectory(directoryForSystem(text), ignored);
} catch (const std::exception&) {
    return false;
}

bool DirPath::DirCreate() try {
    kora::traceStep(kora::trace::kDirCreate);
    const char* text = DirStringGet();
    Failure ignored;
    return text != nullptr && fileSystem().createDirectory(directoryForSystem(text), ignored);
} catch (const std::exception&) {
    return false;
}

bool DirPath::DirCompare(DirPath* other) {
    if (other == nullptr) return false;
    const char* mine = DirStringGet();
    const char* theirs = other->DirStringGet();
    if (mine == nullptr || theirs == nullptr) return mine == theirs;
    return kora::equalIgnoringCase(mine, theirs);
}

bool DirPath::DirInitExecutable() try {
    return directoryShare(kora::sharedDirectory(SharedDirectory::executable));
} catch (const std::exception&) {
    return false;
}

bool DirPath::DirInitAppData() { return DirStringSet(DirGetAppDataDir().c_str()); }

bool DirPath::DirInitPublicData() { return DirStringSet(DirGetPublicDataDir().c_str()); }

bool DirPath::DirInitDocRoot() { return DirStringSet(DirGetDocRootDir().c_str()); }

bool DirPath::DirInitStartIn() try {
    return directoryShare(kora::sharedDirectory(SharedDirectory::startIn));
} catch (const std::exception&) {
    return false;
}

bool DirPath::DirInitOSBase() try {
    return directoryShare(kora::sharedDirectory(SharedDirectory::systemBase));
} catch (const std::exception&) {
    return false;
}

bool DirPath::DirInitTemporary() try {
    return directoryShare(kora::sharedDirectory(SharedDirectory::temporary));
} catch (const std::exception&) {
    return false;
}

void DirPath::DirInitNull() { directoryRelease(); }

bool DirPath::DirIsNull() { return DirStringGet() == nullptr; }

FilePath* DirPath::DirFileFirst(const char* pattern, const char* type, bool files, bool directories) try {
    DirFileClose();
    const char* directory = DirStringGet();
    if (directory == nullptr) return nullptr;
    if (type != nullptr && *type == '.') ++type;
    scan_ = new (std::nothrow) kora::DirectoryScan(
        directory, {pattern != nullptr ? pattern : "", type != nullptr ? type : "", files, directories});
    return DirFileNext();
} catch (const std::exception&) {
    return nullptr;
}

FilePath* DirPath::DirFileNext() {
    const std::string* name = scan_ != nullptr ? scan_->next() : nullptr;
    if (name == nullptr) return nullptr;
    return new (std::nothrow) FilePath(scan_->directory().c_str(), name->c_str(), nullptr, nullptr);
}

void DirPath::DirFileClose() {
    delete scan_;
    scan_ = nullptr;
}

bool DirPath::DirDialogOpen(const char* prompt) try {
    const char* text = DirStringGet();
    CString chosen = text != nullptr ? text : "";
    return kora::presenter().ChooseDirectory(prompt != nullptr ? prompt : "", chosen) && DirStringSet(chosen.c_str());
} catch (...) {
    return false;
}

CString DirPath::GetFilePathInDir(const char* name) try {
    const char* directory = DirStringGet();
    CString path = directory != nullptr ? directory : "";
    if (!path.empty() && path.back() != '\\') path += '\\';
    return name != nullptr ? path += name : path;
} catch (const std::exception&) {
    return {};
}
