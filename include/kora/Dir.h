#pragma once

#include <kora/Kora.h>

class FilePath;

class KORA_API DirPath {
public:
    DirPath();
    DirPath(const char* text);
    DirPath(const DirPath& other);
    virtual ~DirPath();
    DirPath& operator=(const DirPath& other);

    virtual const char* DirDisplayGet();
    virtual const char* DirStringGet();
    virtual bool DirStringSet(const char* text);
    virtual bool DirExists();
    virtual bool DirReadOnly();
    virtual bool DirDelete();
    virtual bool DirCreate();
    virtual bool DirCompare(DirPath* other);
    virtual bool DirInitExecutable();
    virtual bool DirInitAppData();
    virtual bool DirInitPublicData();
    virtual bool DirInitDocRoot();
    virtual bool DirInitStartIn();
    virtual bool DirInitOSBase();
    virtual bool DirInitTemporary();
    virtual void DirInitNull();
    virtual bool DirIsNull();
    virtual FilePath* DirFileFirst(const char* pattern, const char* type, bool files, bool directories);
    virtual FilePath* DirFileNext();
    virtual void DirFileClose();
    virtual bool DirDialogOpen(const char* prompt);
    CString GetFilePathInDir(const char* name);
};
