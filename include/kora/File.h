#pragma once

#include <kora/Dir.h>
#include <kora/Kora.h>

enum eFileDisplay : int { FileDisplayPath = 0, FileDisplayName = 1 };

class KORA_API FilePath : public DirPath {
public:
    FilePath();
    FilePath(const FilePath& other);
    FilePath(const char* text);
    FilePath(DirPath* dir, const char* name, const char* base, const char* type);
    FilePath(const char* dir, const char* name, const char* base, const char* type);
    ~FilePath() override;
    FilePath& operator=(const FilePath& other);
    FilePath& operator=(const char* text);
    operator const char*();

    virtual bool FileStringSet(const char* text);
    virtual const char* FileStringGet();
    virtual bool FileFullNameSet(const char* name);
    virtual const char* FileFullNameGet();
    virtual bool FileBaseNameSet(const char* name);
    virtual const char* FileBaseNameGet();
    virtual bool FileTypeSet(const char* type);
    virtual const char* FileTypeGet();
    virtual const char* FileDisplayGet(eFileDisplay display);
    virtual bool FileCompare(FilePath* other);
    virtual DirPath& GetDir();
    virtual bool SetDir(DirPath& dir);
    virtual bool SetDir(DirPath* dir);
    virtual bool SetDir(const char* dir);
    virtual bool FileSet(DirPath& dir, const char* name);
    virtual void FileNullSet();
    virtual bool FileNullGet();
    virtual bool FileExists();
    virtual bool FileReadOnly();
    virtual bool FileDelete();
    virtual std::int64_t GetSize();
    virtual std::int64_t GetCreationTime();
    virtual std::int64_t GetModificationTime();
    virtual bool SetCreationTime(std::int64_t time);
    virtual bool FileReadString(CString& text);
    virtual bool FileWriteString(CString& text, bool flag);
    virtual bool Run(const char* arguments, int a, int b);
    virtual bool SetTempName(const char* prefix, const char* type);
};

KORA_API CString FileMakeFriendlyName(const char* path);
KORA_API CString FileMakeLimitedName(const char* path, int limit);
KORA_API CString FileMakePathRelative(const char* path);
KORA_API CString FileMakePathRelative(const char* path, CStringArray& dirs);
KORA_API void FileGetSearchDirs(CStringArray& dirs);
KORA_API bool FileLocateFile(const char* name, FilePath& result, bool flag);
KORA_API bool FileLocateFile(const char* name, CString& result, bool flag);
KORA_API bool FileLocateFile(CStringArray& dirs, const char* name, FilePath& result, bool flag);
KORA_API bool FileLocateFile(const char* dir, CStringArray& dirs, const char* name, FilePath& result, bool flag);
KORA_API void FileLocateFile(const char* name, CStringArray& dirs, const char* dir, CStringArray& results, bool flag);
KORA_API void FileAddToMRUList(const char* fullName);
KORA_API void FileAddToMRUList(FilePath& path);
KORA_API void FileGetMRUList(CStringArray& list);
KORA_API void FileGetProgramDir(CString& dir);
KORA_API void FileDocRootSearchSet(bool on);
KORA_API bool FileDocRootSearchGet();
