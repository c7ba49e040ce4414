#include <kora/File.h>

#include <exception>
#include <string>

#include "core/Presenter.h"
#include "core/TraceRing.h"
#include "paths/Places.h"
#include "platform/Platform.h"

using kora::platform::Cause;
using kora::platform::Failure;
using kora::platform::FileKind;
using kora::platform::FileStatus;
using kora::platform::fileSystem;

namespace {

// What a failure inside the standard library is filed as.
constexpr Failure kNoMemory{Cause::other, 0};

static_assert(static_cast<int>(Cause::other) == FileErrorOther, "eFileError repeats the causes of the seam");

}  // namespace

bool FilePath::failed(const Failure& failure) {
    cause_ = static_cast<eFileError>(failure.cause);
    code_ = failure.code;
    return false;
}

bool FilePath::FileExists() try {
    FileKind kind;
    Failure failure;
    if (fileSystem().kind(FileStringGet(), kind, failure)) return kind == FileKind::file;
    return failure.cause == Cause::notFound ? false : failed(failure);
} catch (const std::exception&) {
    return failed(kNoMemory);
}

bool FilePath::FileReadOnly() try {
    FileStatus status;
    Failure failure;
    return fileSystem().status(FileStringGet(), status, failure) ? status.readOnly : failed(failure);
} catch (const std::exception&) {
    return failed(kNoMemory);
}

bool FilePath::FileDelete() try {
    kora::traceStep(kora::trace::kFileDelete);
    Failure failure;
    return fileSystem().remove(FileStringGet(), failure) || failed(failure);
} catch (const std::exception&) {
    return failed(kNoMemory);
}

std::int64_t FilePath::statusGet(std::int64_t FileStatus::*field) try {
    FileStatus status;
    Failure failure;
    if (fileSystem().status(FileStringGet(), status, failure)) return status.*field;
    failed(failure);
    return -1;
} catch (const std::exception&) {
    failed(kNoMemory);
    return -1;
}

std::int64_t FilePath::GetSize() { return statusGet(&FileStatus::size); }

std::int64_t FilePath::GetCreationTime() { return statusGet(&FileStatus::created); }

std::int64_t FilePath::GetModificationTime() { return statusGet(&FileStatus::modified); }

bool FilePath::SetCreationTime(std::int64_t time) try {
    Failure failure;
    return fileSystem().setCreationTime(FileStringGet(), time, failure) || failed(failure);
} catch (const std::exception&) {
    return failed(kNoMemory);
}

bool FilePath::FileReadString(CString& text) try {
    kora::traceStep(kora::trace::kFileRead);
    Failure failure;
    return fileSystem().read(FileStringGet(), text, failure) || failed(failure);
} catch (const std::exception&) {
    return failed(kNoMemory);
}

bool FilePath::FileWriteString(CString& text, bool flag) try {
    kora::traceStep(kora::trace::kFileWrite);
    const std::string path = FileStringGet();
    const auto write = [&](Failure& failure) {
        return fileSystem().write(path, text, kora::platform::WriteMode::replace, /*flush=*/flag, failure);
    };
    Failure failure;
    if (write(failure)) return true;
    if (failure.cause == Cause::notFound && kora::directoryMakeForWrite(path) && write(failure)) return true;
    return failed(failure);
} catch (const std::exception&) {
    return failed(kNoMemory);
}

bool FilePath::Run(const char* arguments, int a, int b) try {
    kora::traceStep(kora::trace::kFileRun);
    Failure failure;
    return kora::platform::runProgram(FileStringGet(), arguments != nullptr ? arguments : "", /*show=*/a,
                                      /*wait=*/b != 0, failure) ||
           failed(failure);
} catch (const std::exception&) {
    return failed(kNoMemory);
}

bool FilePath::choose(const char* prompt, const char* filter, bool saving) try {
    MsgFileChoice choice{prompt != nullptr ? prompt : "", filter != nullptr ? filter : "", FileStringGet(), saving};
    return kora::presenter().ChooseFile(choice) && FileStringSet(choice.path.c_str());
} catch (...) {
    return false;
}

bool FilePath::FileDialogOpen(const char* prompt, const char* filter) {
    return choose(prompt, filter, /*saving=*/false);
}

bool FilePath::FileDialogSaveAs(const char* prompt, const char* filter) {
    return choose(prompt, filter, /*saving=*/true);
}

short FilePath::FileCreatorGet() { return creator_; }

void FilePath::FileCreatorSet(short creator) { creator_ = creator; }

eFileError FilePath::FileGetErrorCause() { return cause_; }

unsigned long FilePath::FileGetErrorCode() { return code_; }
