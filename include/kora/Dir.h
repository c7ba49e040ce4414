#pragma once

#include <kora/Kora.h>

/// @file
/// Directories. Everything that names a directory or a file holds it as 8-bit text in library form: `\` between
/// parts, a drive or `\\server\share` in front. Where the system writes paths with `/`, its root directory is drive
/// `Z:`, and text that begins with `/` is accepted wherever a whole path may be given.
///
/// No directory text, file name, base name or type reaches 255 characters: setters refuse what would, answer false
/// and leave the old value.

class FilePath;

namespace kora {
class DirectoryScan;
}

/// A directory, or the null directory (none).
///
/// Composite operations call the others through the virtual table. The order of declaration is the order of slots,
/// which modules count on: new operations go at the end. No operation throws; what fails answers false or null.
class KORA_API DirPath {
public:
    /// The null directory.
    DirPath();
    /// Set from @p text as by DirStringSet(); the null directory when that refuses it.
    DirPath(const char* text);
    /// Copies the directory; a running enumeration stays with @p other.
    DirPath(const DirPath& other);
    virtual ~DirPath();
    /// Copies the directory. An enumeration that runs here goes on over the directory that it was started for.
    DirPath& operator=(const DirPath& other);

    /// The directory for display: every part that consists of the letters a to z alone gets a capital first letter.
    ///
    ///     c:\projects\my files    c:\Projects\my files
    ///     c:\notes2\Docs          c:\notes2\Docs
    ///
    /// The stored text itself is changed, so DirStringGet() answers the capitals from then on. A directory that is
    /// shared with others (DirInitExecutable() and its like) is copied first, and the others keep their text.
    ///
    /// @return the stored text, null for the null directory.
    virtual const char* DirDisplayGet();
    /// The directory's text as it is stored, null for the null directory. It stands until the directory changes.
    virtual const char* DirStringGet();
    /// Sets the directory from absolute or relative text, which may be its own.
    ///
    /// - Text with a drive (`:` as its second character) or a server (`\\` in front) replaces the directory, as it
    ///   stands.
    /// - Other text that begins with `\` is appended to the drive, or to `\\server\share`, of the directory.
    /// - Anything else is applied part by part: ".." removes the last part and stops at the root, "." and empty parts
    ///   do nothing, any other part is appended. On the null directory the first part stands alone; a relative
    ///   directory whose last part goes becomes null.
    ///
    ///     c:\a\b    ..\c       c:\a\c
    ///     c:\a      ..\..      c:\         (the root stops it)
    ///     c:\a      \x\y       c:\x\y
    ///     (null)    lib\data   lib\data
    ///
    /// @return false for null, empty or overlong text and for a result of 255 characters or more.
    virtual bool DirStringSet(const char* text);
    virtual bool DirExists();  ///< whether there is such a directory
    /// Whether the directory is there and cannot be written.
    virtual bool DirReadOnly();
    /// Removes the directory, which must be empty.
    virtual bool DirDelete();
    /// Makes the directory; the one above it must be there. False when there is something of that name already.
    virtual bool DirCreate();
    /// Whether both directories are equal without regard to case. Two null directories are; a null @p other is not.
    virtual bool DirCompare(DirPath* other);
    /// Points at the directory of the running program.
    ///
    /// This and the other DirInit operations answer false, with the old value kept, when the system names no such
    /// directory or one that is too long.
    virtual bool DirInitExecutable();
    /// Copies DirGetAppDataDir().
    virtual bool DirInitAppData();
    /// Copies DirGetPublicDataDir().
    virtual bool DirInitPublicData();
    /// Copies DirGetDocRootDir().
    virtual bool DirInitDocRoot();
    /// Points at the directory in which the program was started.
    virtual bool DirInitStartIn();
    /// Points at the operating system's own directory.
    virtual bool DirInitOSBase();
    /// Points at the directory for temporary files: the environment variable "TEMP", else "TMP", else the system's.
    virtual bool DirInitTemporary();
    /// Makes it the null directory.
    virtual void DirInitNull();
    virtual bool DirIsNull();  ///< whether it is the null directory
    /// Starts an enumeration of the directory and ends one that was running.
    ///
    /// What the directory holds is taken at this call, in the order of names without regard to case.
    ///
    /// @param pattern     the names wanted, with `*` for any characters and `?` for one, without regard to case; null,
    ///                    empty, "*" and "*.*" want all. With a @p type it may be a pattern for the base name alone.
    /// @param type        the type wanted, a pattern as well, with or without its dot; null or empty wants all.
    /// @param files       list files.
    /// @param directories list sub-directories, whose names are tested in the same way.
    /// @return the first hit as a new object, which the caller deletes; null when there is none.
    virtual FilePath* DirFileFirst(const char* pattern, const char* type, bool files, bool directories);
    /// The next hit as a new object, which the caller deletes; null when there is none or no enumeration runs.
    virtual FilePath* DirFileNext();
    virtual void DirFileClose();  ///< ends the enumeration; the next DirFileFirst() does so too
    /// Lets the user choose a directory, beginning at this one. @p prompt may be null.
    /// @return true when one was chosen and set.
    virtual bool DirDialogOpen(const char* prompt);
    /// The directory, a `\` when it does not end in one, and @p name. Of the null directory, @p name alone.
    CString GetFilePathInDir(const char* name);

private:
    bool directoryShare(char* shared);
    bool directoryStore(const char* text);
    void directoryRelease();

    char* dir_ = nullptr;  // 255 characters on the heap, or one of the library's shared directories
    kora::DirectoryScan* scan_ = nullptr;
};

/// The per-user data directory of the applications, the one of all users, and the root directory of documents. Each
/// is empty when the system names none; none of them need exist, FileWriteString() makes them on first use.
KORA_API CString DirGetAppDataDir();
KORA_API CString DirGetPublicDataDir();  ///< see DirGetAppDataDir()
KORA_API CString DirGetDocRootDir();     ///< see DirGetAppDataDir()
