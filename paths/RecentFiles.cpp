#include "paths/RecentFiles.h"

#include <kora/File.h>

#include <exception>

void FileAddToMRUList(const char* fullName) try {
    if (fullName != nullptr) kora::recentFileAdd(fullName);
} catch (const std::exception&) {
}

void FileAddToMRUList(FilePath& path) { FileAddToMRUList(path.FileStringGet()); }

void FileGetMRUList(CStringArray& list) try {
    list.clear();
    if (!kora::recentFilesExist()) return;
    kora::recentFilesList(list);
    std::erase_if(list, [](const CString& entry) { return entry.empty(); });
} catch (const std::exception&) {
}
