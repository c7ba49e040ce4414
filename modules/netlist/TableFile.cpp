#include "TableFile.h"

#include <kora/File.h>

namespace netlist {

namespace {

const char* reasonUnwritable(eFileError cause) {
    switch (cause) {
        case FileErrorNotFound:
            return "there is no such folder";
        case FileErrorDenied:
            return "no permission to write the file";
        case FileErrorWrongKind:
            return "this is no file";
        case FileErrorBusy:
            return "another program holds the file";
        case FileErrorFull:
            return "the disk is full";
        default:
            return "the file cannot be written";
    }
}

}  // namespace

CString writeTableFile(const CString& name, CString& bytes) {
    FilePath file;
    if (!file.FileStringSet(name.c_str()) || *file.FileFullNameGet() == '\0') return "this is no file name";
    CString before;
    const bool isNew = !file.FileExists() && file.FileGetErrorCause() == FileErrorNone;
    const bool isKept = !isNew && file.FileReadString(before);
    if (file.FileWriteString(bytes, /*flag=*/true)) return {};
    const CString reason = reasonUnwritable(file.FileGetErrorCause());
    if (isKept) file.FileWriteString(before, /*flag=*/true);
    if (isNew && file.FileExists()) file.FileDelete();
    return reason;
}

}  // namespace netlist
