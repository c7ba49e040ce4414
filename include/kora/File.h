#pragma once

#include <kora/Dir.h>
#include <kora/Kora.h>

/// @file
/// Files: their paths, what can be done with them, and finding them by name.

namespace kora::platform {
struct Failure;
struct FileStatus;
}  // namespace kora::platform

/// What of a path is shown to people.
enum eFileDisplay : int {
    FileDisplayPath = 0,  ///< the whole path
    FileDisplayName = 1   ///< only what stands behind the last `\`
};

/// Why a file operation failed.
enum eFileError : int {
    FileErrorNone = 0,
    FileErrorNotFound = 1,     ///< the file, or a directory on the way to it, is not there
    FileErrorDenied = 2,       ///< no permission, or read-only
    FileErrorExists = 3,       ///< there is something of that name already
    FileErrorWrongKind = 4,    ///< a directory where a file is needed, or the other way round
    FileErrorNotEmpty = 5,     ///< a directory still holds something
    FileErrorBusy = 6,         ///< another program holds the file
    FileErrorFull = 7,         ///< no room on the disk
    FileErrorUnsupported = 8,  ///< this file system or platform has no such thing
    FileErrorOther = 9
};

/// A file: its directory (the inherited part) and its name, kept split at the last dot into base name and type, so
/// that each part can be replaced alone. The type is the extension without its dot.
///
/// All the getters that answer a whole text build it in one buffer of the object: it stands until the next call.
/// Everything said of DirPath about slots, overrides and failure holds here too.
class KORA_API FilePath : public DirPath {
public:
    /// The null path: no directory, no name.
    FilePath();
    FilePath(const FilePath& other);
    /// Set from a whole path as by FileStringSet().
    FilePath(const char* text);
    /// @p dir may be null. A @p name that is neither null nor empty wins over @p base and @p type; parts that their
    /// setters refuse stay empty.
    FilePath(DirPath* dir, const char* name, const char* base, const char* type);
    FilePath(const char* dir, const char* name, const char* base, const char* type);
    ~FilePath() override;
    FilePath& operator=(const FilePath& other);  ///< copies the other path
    /// FileStringSet().
    FilePath& operator=(const char* text);
    /// FileStringGet().
    operator const char*();

    /// Sets directory and name from a whole path: what stands before the last `\` goes to DirStringSet(), so it may
    /// be relative to the present directory; what stands behind it is the name. Text without `\` leaves the
    /// directory as it was; text whose only `\` is its first character means the root of the present drive.
    ///
    ///     c:\dir\name.ext.bak    directory c:\dir, base name name.ext, type bak
    ///
    /// @return false for null, empty or overlong text and for a directory that DirStringSet() refuses; nothing has
    /// changed then.
    virtual bool FileStringSet(const char* text);
    /// The directory, a `\` when it does not end in one, the base name, and a dot and the type when there is one. Of
    /// a null directory the name alone.
    virtual const char* FileStringGet();
    /// Sets base name and type from a name, split at its last dot; null is the empty name. 255 characters or more are
    /// refused and filed as fault 769.
    virtual bool FileFullNameSet(const char* name);
    /// The base name, and a dot and the type when there is one.
    virtual const char* FileFullNameGet();
    /// Null sets the empty base name. 255 characters or more are refused and filed as fault 1025.
    virtual bool FileBaseNameSet(const char* name);
    virtual const char* FileBaseNameGet();  ///< the base name, never null
    /// Null and empty set the empty type; one leading dot is removed. 255 characters or more are refused and filed as
    /// fault 1057.
    virtual bool FileTypeSet(const char* type);
    virtual const char* FileTypeGet();  ///< the type without its dot, never null
    /// The path with the capitals of DirDisplayGet(), which the name gets too where it is letters a to z alone. Unlike
    /// there, what is stored does not change.
    virtual const char* FileDisplayGet(eFileDisplay display);
    /// Whether both whole paths are equal without regard to case; false for null.
    virtual bool FileCompare(FilePath* other);
    /// The directory part: this object.
    virtual DirPath& GetDir();
    /// Replaces the directory by @p dir, the null directory included; relative text is not applied to the old one.
    virtual bool SetDir(DirPath& dir);
    /// The same; false for null.
    virtual bool SetDir(DirPath* dir);
    /// DirStringSet().
    virtual bool SetDir(const char* dir);
    /// SetDir() and FileFullNameSet() in one; nothing has changed when either refuses.
    virtual bool FileSet(DirPath& dir, const char* name);
    /// Makes it the null path.
    virtual void FileNullSet();
    /// Whether it has neither directory nor name.
    virtual bool FileNullGet();
    /// Whether there is a file of that path; a directory is none.
    virtual bool FileExists();
    /// Whether the file is there and cannot be written.
    virtual bool FileReadOnly();
    virtual bool FileDelete();  ///< removes the file
    /// In bytes; -1 on failure.
    virtual std::int64_t GetSize();
    /// In seconds since 1970, UTC; -1 on failure.
    virtual std::int64_t GetCreationTime();
    /// In seconds since 1970, UTC; -1 on failure.
    virtual std::int64_t GetModificationTime();
    /// False where the file system keeps no such time.
    virtual bool SetCreationTime(std::int64_t time);
    /// Reads the whole file, every byte as it stands. @p text is untouched on failure.
    virtual bool FileReadString(CString& text);
    /// Writes @p text as the whole file. @p flag waits until it has reached the disk. Missing directories are made
    /// when the path lies in the document root or in the per-user or public data directory, and nowhere else.
    virtual bool FileWriteString(CString& text, bool flag);
    /// Starts the file as a program, or opens it with the program that belongs to it.
    /// @param arguments the command line behind the program's name; may be null.
    /// @param a         how the window shows, as a Windows show command: 0 hidden, 1 normal, 2 minimised, 3 maximised.
    /// @param b         not 0 waits until the program has ended.
    virtual bool Run(const char* arguments, int a, int b);
    /// Sets a path that exists nowhere yet: in the directory of the environment variable "TMP" where that exists, else
    /// in c:\temp where that exists, else in the system's directory for temporary files. The name begins with
    /// @p prefix ("qztemp_" when null or empty) and has the type @p type (with or without its dot; none when null or
    /// empty). No file is made.
    /// @return true, always; where there is no such name, the path is null then.
    virtual bool SetTempName(const char* prefix, const char* type);

    /// Lets the user choose a file that is there, beginning at this path.
    /// @param prompt the chooser's title; may be null.
    /// @param filter the types offered: pairs of description and type separated by ';', "Text Files;txt"; null or
    ///               empty offers all.
    /// @return true when one was chosen and set.
    virtual bool FileDialogOpen(const char* prompt, const char* filter);
    /// The same for a file to be written.
    virtual bool FileDialogSaveAs(const char* prompt, const char* filter);
    /// The code of the program that made the file, kept with the path; 0 at first.
    virtual short FileCreatorGet();
    virtual void FileCreatorSet(short creator);  ///< sets that code
    /// Why the last file operation that failed through this object did so; a later success does not clear it.
    /// FileExists() answering false for a file that is not there is no failure, and what the operations of DirPath meet
    /// is not kept.
    virtual eFileError FileGetErrorCause();
    /// The system's own number for FileGetErrorCause(); 0 when there is none.
    virtual unsigned long FileGetErrorCode();

private:
    bool failed(const kora::platform::Failure& failure);
    std::int64_t statusGet(std::int64_t kora::platform::FileStatus::*field);
    bool choose(const char* prompt, const char* filter, bool saving);
    void nameCopy(const FilePath& other);

    char fullName_[1020];  // also what whole paths are built in
    char baseName_[255];
    char type_[255];
    short creator_ = 0;
    eFileError cause_ = FileErrorNone;
    unsigned long code_ = 0;
};

/// The file name without directory and without type: what stands between the last `\` and the last dot behind it.
/// Null gives the empty text.
KORA_API CString FileMakeFriendlyName(const char* path);
/// @p path shortened with "..." to about @p limit characters, which the result may exceed by a few. The name is kept
/// whole where it fits: the middle of the directory goes first.
///
///     c:\some\where\deep\file.txt, 24    c:\som...e\deep\file.txt
///     c:\d\quite_a_long_name.txt, 20     ...\quite_...me.txt
KORA_API CString FileMakeLimitedName(const char* path, int limit);
/// @p path relative to the first of FileGetSearchDirs() that it lies in, which is where FileLocateFile() finds it
/// again, in the document root only while FileDocRootSearchGet() says so; unchanged when it lies in none.
KORA_API CString FileMakePathRelative(const char* path);
/// The same with @p dirs as the search directories.
KORA_API CString FileMakePathRelative(const char* path, CStringArray& dirs);

/// Appends the search directories, each once without regard to case: the document root, the per-user data directory
/// and the program's own directory.
KORA_API void FileGetSearchDirs(CStringArray& dirs);

/// Finds a file by name, over the fixed search order.
///
/// In every form of FileLocateFile() the name is expanded first. `%NAME%` is replaced by the environment variable of
/// that name, else by the named directory ("my documents", "app data", "public data", "program", "start in",
/// "windows", "temp", in any letter case), else, for `%ini:KEY%`, by entry KEY of section "Directories" of the main
/// profile; what nothing answers to stays as it is.
///
/// A full path (with `\\` or `:\` anywhere but at its beginning) is found where it stands and nowhere else. So a name
/// that begins with `\\` counts as relative, like all other names. These are looked for in:
///
/// 1. the document root, when FileDocRootSearchSet() has turned that on
/// 2. the per-user data directory
/// 3. the working directory of start-up
/// 4. the program's directory
/// 5. for the types exe, com, bat and cmd: the directories of "PATH"
///
/// Every directory is asked at every call. The bool changes nothing, in any form.
///
/// @return true when found, with @p result set to its full path; otherwise @p result is untouched.
KORA_API bool FileLocateFile(const char* name, FilePath& result, bool flag);
KORA_API bool FileLocateFile(const char* name, CString& result, bool flag);
/// Looks in each of @p dirs first, empty entries left out.
KORA_API bool FileLocateFile(CStringArray& dirs, const char* name, FilePath& result, bool flag);
/// Looks in @p dir before that, unless it is null or empty.
KORA_API bool FileLocateFile(const char* dir, CStringArray& dirs, const char* name, FilePath& result, bool flag);
/// Appends every match to @p results: in @p dir, in each of @p dirs, and in the whole fixed search order. Then every
/// path that @p results holds twice, without regard to case, is left only where it stands first.
KORA_API void FileLocateFile(const char* name, CStringArray& dirs, const char* dir, CStringArray& results, bool flag);

/// Puts a file at the head of the application's recent-files list, which is written out at once. Null does nothing.
KORA_API void FileAddToMRUList(const char* fullName);
KORA_API void FileAddToMRUList(FilePath& path);
/// Empties @p list and fills it with the recent files, newest first.
KORA_API void FileGetMRUList(CStringArray& list);
/// The directory of the running program.
KORA_API void FileGetProgramDir(CString& dir);
/// Whether FileLocateFile() looks in the document root; off until the host turns it on.
KORA_API void FileDocRootSearchSet(bool on);
KORA_API bool FileDocRootSearchGet();  ///< see FileDocRootSearchSet()

/// @name Why a file was found where it was, or was not
/// @{

/// A place of a search. A full path is looked for behind the directories given, everything else in this order.
enum eFilePlace : int {
    FilePlaceFullPath = 0,  ///< where the name itself says
    FilePlaceGiven = 1,     ///< the directory given
    FilePlaceList = 2,      ///< one of the directories given
    FilePlaceDocRoot = 3,   ///< the document root
    FilePlaceAppData = 4,   ///< the per-user data directory
    FilePlaceStartIn = 5,   ///< the working directory of start-up
    FilePlaceProgram = 6,   ///< the program's directory
    FilePlacePath = 7       ///< a directory of "PATH"
};

/// What came of a place.
enum eFileVerdict : int {
    FileVerdictFound = 0,
    FileVerdictNotThere = 1,
    FileVerdictNotAFile = 2,  ///< a directory of that name
    FileVerdictDenied = 3,    ///< the system does not let us look there
    FileVerdictFailed = 4,    ///< the system cannot look there for another reason; see cause and code
    FileVerdictNoPath = 5,    ///< no path that can be used: no directory, a name with a drive, 255 characters or more
    FileVerdictNotAsked = 6   ///< an earlier place had it
};

/// Who answered to a `%` reference.
enum eFileAnswer : int {
    FileAnswerNobody = 0,  ///< the reference stays as it is
    FileAnswerVariable = 1,
    FileAnswerDirectory = 2,  ///< a named directory
    FileAnswerProfile = 3     ///< section "Directories" of the main profile
};

/// One `%` reference of a name.
struct FileReference {
    CString name;        ///< without its percent signs
    eFileAnswer answer;  ///< who answered
    CString value;       ///< what came in its place
};

/// One place of a search, and what came of it.
struct FileTry {
    eFilePlace place;      ///< which one
    CString directory;     ///< as it was given; empty for a full path, and where the system names none
    CString path;          ///< what was asked for, or would have been; empty where no path can be made
    eFileVerdict verdict;  ///< what came of it
    eFileError cause;      ///< why the system found nothing; FileErrorNone where it was not asked, or found something
    unsigned long code;    ///< the system's own number for the cause; 0 when there is none
};

/// How a search went.
struct FileExplanation {
    CString name;                           ///< the name as it is looked for
    std::vector<FileReference> references;  ///< of the name, in their order
    std::vector<FileTry> tries;             ///< every place where it is looked for, in their order
    CString found;                          ///< what FileLocateFile() answers; empty when it finds nothing
};

/// Tells how FileLocateFile() finds a file: it looks in the same places by the same code, and the answer is the same.
/// Empty entries of @p dirs and places that the system names no directory for are listed, places that do not belong to
/// this search (the document root while that is off, "PATH" for other types) are not.
/// @param everywhere asks the places behind the first match too, to see what it hides, as the form of FileLocateFile()
///                   that appends every match does. Duplicates stay.
/// @return whether a file is found. What @p explanation held is replaced; it is empty for a null name and when memory
///         ran out.
KORA_API bool FileLocateExplain(const char* name, FileExplanation& explanation, bool everywhere = false);
/// Looks in @p dir first, unless it is null, then in each of @p dirs.
KORA_API bool FileLocateExplain(const char* dir, const CStringArray& dirs, const char* name,
                                FileExplanation& explanation, bool everywhere = false);
/// @}
