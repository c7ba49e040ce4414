#include <kora/File.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <string>

#include "core/FiledFaults.h"
#include "paths/PathText.h"
#include "platform/Platform.h"
#include "strings/Bytes.h"

using kora::kPathTextSize;
namespace trace = kora::trace;

namespace {

/// Whether a name, null counting as empty, is too long; files the fault then.
bool refused(const char* text, trace::Place fault) {
    if (text == nullptr || std::strlen(text) < kPathTextSize) return false;
    kora::fileFault(fault);
    return true;
}

/// Copies a text that may stand in the buffer itself, cut where that ends.
template <std::size_t kSize>
void copyText(char (&buffer)[kSize], const char* text) {
    const std::size_t length = std::min(std::strlen(text), kSize - 1);
    std::memmove(buffer, text, length);
    buffer[length] = '\0';
}

/// Puts texts one behind the other into a buffer, cut where it ends.
template <std::size_t kSize>
class Joiner {
public:
    explicit Joiner(char (&buffer)[kSize]) : buffer_(buffer) { buffer_[0] = '\0'; }

    void add(const char* text) {
        const std::size_t length = std::min(std::strlen(text), kSize - 1 - length_);
        std::memcpy(buffer_ + length_, text, length);
        length_ += length;
        buffer_[length_] = '\0';
    }
    void addSeparator() {
        if (length_ > 0 && buffer_[length_ - 1] != '\\') add("\\");
    }

private:
    char (&buffer_)[kSize];
    std::size_t length_ = 0;
};

template <std::size_t kSize>
void addName(Joiner<kSize>& joiner, FilePath& path) {
    joiner.add(path.FileBaseNameGet());
    const char* type = path.FileTypeGet();
    if (*type == '\0') return;
    joiner.add(".");
    joiner.add(type);
}

}  // namespace

FilePath::FilePath() { fullName_[0] = baseName_[0] = type_[0] = '\0'; }

FilePath::FilePath(const FilePath& other)
    : DirPath(other), creator_(other.creator_), cause_(other.cause_), code_(other.code_) {
    nameCopy(other);
}

FilePath::FilePath(const char* text) : FilePath() { FilePath::FileStringSet(text); }

FilePath::FilePath(DirPath* dir, const char* name, const char* base, const char* type)
    : FilePath(static_cast<const char*>(nullptr), name, base, type) {
    FilePath::SetDir(dir);
}

FilePath::FilePath(const char* dir, const char* name, const char* base, const char* type) : FilePath() {
    FilePath::SetDir(dir);
    if (name != nullptr && *name != '\0') {
        FilePath::FileFullNameSet(name);
    } else {
        FilePath::FileBaseNameSet(base);
        FilePath::FileTypeSet(type);
    }
}

FilePath::~FilePath() = default;

FilePath& FilePath::operator=(const FilePath& other) {
    if (this == &other) return *this;
    DirPath::operator=(other);
    nameCopy(other);
    creator_ = other.creator_;
    cause_ = other.cause_;
    code_ = other.code_;
    return *this;
}

FilePath& FilePath::operator=(const char* text) {
    FileStringSet(text);
    return *this;
}

FilePath::operator const char*() { return FileStringGet(); }

void FilePath::nameCopy(const FilePath& other) {
    fullName_[0] = '\0';
    std::memcpy(baseName_, other.baseName_, sizeof baseName_);
    std::memcpy(type_, other.type_, sizeof type_);
}

bool FilePath::FileStringSet(const char* text) try {
    if (text == nullptr || *text == '\0' || std::strlen(text) >= kPathTextSize) return false;
    // A copy: the text may stand in this object's own buffer.
    const std::string path = *text == '/' ? kora::platform::libraryPath(text) : text;
    if (path.size() >= kPathTextSize) return false;
    const std::size_t last = path.rfind('\\');
    const std::string directory = last == path.npos ? "" : last == 0 ? "\\" : path.substr(0, last);
    // The empty text is refused, and so the directory stays.
    if (!DirStringSet(directory.c_str()) && !directory.empty()) return false;
    return FileFullNameSet(path.c_str() + (last == path.npos ? 0 : last + 1));
} catch (const std::exception&) {
    return false;
}

const char* FilePath::FileStringGet() {
    Joiner whole(fullName_);
    if (const char* directory = DirStringGet()) {
        whole.add(directory);
        whole.addSeparator();
    }
    addName(whole, *this);
    return fullName_;
}

bool FilePath::FileFullNameSet(const char* name) {
    if (refused(name, trace::kFullNameTooLong)) return false;
    char base[kPathTextSize] = "";
    if (name != nullptr) std::memcpy(base, name, std::strlen(name) + 1);
    char* dot = std::strrchr(base, '.');
    if (dot != nullptr) *dot = '\0';
    return FileBaseNameSet(base) && FileTypeSet(dot != nullptr ? dot + 1 : "");
}

const char* FilePath::FileFullNameGet() {
    Joiner name(fullName_);
    addName(name, *this);
    return fullName_;
}

bool FilePath::FileBaseNameSet(const char* name) {
    if (refused(name, trace::kBaseNameTooLong)) return false;
    copyText(baseName_, name != nullptr ? name : "");
    return true;
}

const char* FilePath::FileBaseNameGet() { return baseName_; }

bool FilePath::FileTypeSet(const char* type) {
    if (refused(type, trace::kTypeTooLong)) return false;
    if (type != nullptr && *type == '.') ++type;
    copyText(type_, type != nullptr ? type : "");
    return true;
}

const char* FilePath::FileTypeGet() { return type_; }

const char* FilePath::FileDisplayGet(eFileDisplay display) {
    copyText(fullName_, FileStringGet());
    kora::capitalizeForDisplay(fullName_);
    const char* last = display == FileDisplayName ? std::strrchr(fullName_, '\\') : nullptr;
    return last != nullptr ? last + 1 : fullName_;
}

bool FilePath::FileCompare(FilePath* other) try {
    if (other == nullptr) return false;
    const std::string mine = FileStringGet();
    return kora::equalIgnoringCase(mine, other->FileStringGet());
} catch (const std::exception&) {
    return false;
}

DirPath& FilePath::GetDir() { return *this; }

bool FilePath::SetDir(DirPath& dir) {
    if (&dir == this) return true;
    const char* text = dir.DirStringGet();
    const DirPath before(*this);
    DirInitNull();
    if (text == nullptr || DirStringSet(text)) return true;
    DirPath::operator=(before);
    return false;
}

bool FilePath::SetDir(DirPath* dir) { return dir != nullptr && SetDir(*dir); }

bool FilePath::SetDir(const char* dir) { return DirStringSet(dir); }

bool FilePath::FileSet(DirPath& dir, const char* name) {
    const DirPath before(*this);
    if (!SetDir(dir)) return false;
    if (FileFullNameSet(name)) return true;
    DirPath::operator=(before);
    return false;
}

void FilePath::FileNullSet() {
    DirInitNull();
    FileFullNameSet(nullptr);
}

bool FilePath::FileNullGet() { return DirIsNull() && *FileBaseNameGet() == '\0' && *FileTypeGet() == '\0'; }
