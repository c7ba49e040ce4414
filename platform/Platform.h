#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct NetNcb;
struct tagMSG;

/// Everything that the library takes from the system. The backends in platform/posix and platform/win32 answer it
/// file by file; nothing outside platform/ includes a system header.
///
/// The seam reports, the library decides: no texts for people, no defaults, no retries and no filed errors below it.
/// Paths are in library form (`\` between parts, a drive or `\\server\share` in front) in both directions.
/// Interfaces with virtual operations can be replaced, so that tests can break one operation at a time.
namespace kora::platform {

// ---- failures --------------------------------------------------------------------------------------------------

enum class Cause : std::uint8_t {
    none,
    notFound,     ///< the file, or a directory on the way to it, is not there
    denied,       ///< no permission, or read-only
    exists,       ///< there is something of that name already
    wrongKind,    ///< a directory where a file is needed, or the other way round
    notEmpty,     ///< the directory still holds something
    busy,         ///< another program holds the file for the moment
    full,         ///< no room on the disk
    unsupported,  ///< this file system or platform has no such thing
    other
};

/// Why an operation failed: the cause in the words of both systems, and the system's own number for it.
struct Failure {
    Cause cause = Cause::none;
    std::uint32_t code = 0;
};

// ---- files -----------------------------------------------------------------------------------------------------

enum class FileKind : std::uint8_t { none, file, directory };

struct FileStatus {
    FileKind kind = FileKind::none;
    std::int64_t size = 0;
    std::int64_t created = 0;   ///< seconds since 1970, UTC
    std::int64_t modified = 0;  ///< seconds since 1970, UTC
    bool readOnly = false;      ///< this process may not write it, or nobody may
};

struct DirectoryEntry {
    std::string name;  ///< without the directory, in the system's letter case
    FileKind kind = FileKind::none;
};

enum class WriteMode : std::uint8_t {
    replace,   ///< make the file or empty it first
    append,    ///< make the file or write behind what it holds
    createNew  ///< fail with Cause::exists when the file is there
};

/// Files and directories. Every operation answers true on success; otherwise @p failure says why, and out-parameters
/// are untouched.
///
/// On POSIX an exact name wins; otherwise a name that differs in letter case alone is found, part by part.
class FileSystem {
public:
    virtual ~FileSystem() = default;
    /// Describes @p path. A path where nothing is fails with Cause::notFound.
    virtual bool status(const std::string& path, FileStatus& status, Failure& failure);
    /// Whether a file or a directory stands at @p path, and nothing more: what looking for files costs. Fails as
    /// status() does.
    virtual bool kind(const std::string& path, FileKind& kind, Failure& failure);
    /// Reads a whole file. A directory fails with Cause::wrongKind.
    virtual bool read(const std::string& path, std::string& bytes, Failure& failure);
    /// Writes @p bytes and closes the file; @p flush waits until they are on the disk. After a failure the file may
    /// hold a part of them.
    virtual bool write(const std::string& path, std::string_view bytes, WriteMode mode, bool flush, Failure& failure);
    /// Makes @p path a new file with @p bytes in it, down to the disk, whatever file stood there before. Where a file
    /// stands at @p model, the new one gets its permissions and, as far as this process may give it, its owner, before
    /// the first byte is written.
    virtual bool writeLike(const std::string& path, const std::string& model, std::string_view bytes, Failure& failure);
    /// Where a chain of symbolic links that begins at @p path ends: the name of the file itself; @p path when that is
    /// no link, or nothing is there. A link that leads nowhere fails with Cause::notFound, or gives the name of what is
    /// missing.
    virtual bool resolveLinks(const std::string& path, std::string& target, Failure& failure);
    virtual bool remove(const std::string& path, Failure& failure);
    /// Gives the file @p from a second name @p to, which must not exist: a hard link, or a copy of the bytes where the
    /// file system has no links.
    virtual bool link(const std::string& from, const std::string& to, Failure& failure);
    /// Renames a file in one step, on the same disk; a file at @p to is replaced, and at every moment one of the two
    /// is there under that name.
    virtual bool rename(const std::string& from, const std::string& to, Failure& failure);
    virtual bool createDirectory(const std::string& path, Failure& failure);  ///< one level
    virtual bool removeDirectory(const std::string& path, Failure& failure);  ///< must be empty
    /// What the directory holds, without "." and "..", in no particular order.
    virtual bool list(const std::string& path, std::vector<DirectoryEntry>& entries, Failure& failure);
    /// Sets the time at which the file was made, in seconds since 1970, UTC.
    virtual bool setCreationTime(const std::string& path, std::int64_t time, Failure& failure);
};

FileSystem& fileSystem();
/// For tests: puts @p replacement in place of the file system and answers the one before; null restores the system's.
FileSystem* fileSystemSet(FileSystem* replacement);

// ---- paths and places ------------------------------------------------------------------------------------------

/// Native text into library form: on POSIX a text with a leading `/` becomes `Z:\...`; everything else, and
/// everything on Windows, is answered as it is.
std::string libraryPath(std::string_view text);
/// Library form into what a person would type into this system's shell: `Z:\a\b` is `/a/b` on POSIX.
std::string nativePath(std::string_view path);
/// The entries of a directory list such as PATH, in library form and in order, empty ones left out: split at `;`,
/// on POSIX at `:` where the value holds no `;`.
std::vector<std::string> splitDirectoryList(std::string_view value);

/// The environment and the special directories. Directories are in library form, without a `\` at the end unless
/// they are a root, and empty when the system names none. None of them is made here.
class Environment {
public:
    virtual ~Environment() = default;
    /// An environment variable as it stands; nothing when it is not set.
    virtual std::optional<std::string> variable(const std::string& name);
    virtual std::string documents();        ///< the user's documents: CSIDL_PERSONAL; XDG documents, else HOME
    virtual std::string userData();         ///< CSIDL_APPDATA; XDG_CONFIG_HOME, else HOME/.config
    virtual std::string sharedData();       ///< CSIDL_COMMON_APPDATA; /usr/local/share
    virtual std::string systemDirectory();  ///< the Windows directory; /etc
    virtual std::string temporary();        ///< where the system itself makes temporary files
    virtual std::string workingDirectory();
    virtual std::string programDirectory();  ///< where the running executable stands
    /// Where registry options are kept as files; empty where the system has a registry for them.
    virtual std::string registryFolder();
};

Environment& environment();
/// For tests, as fileSystemSet().
Environment* environmentSet(Environment* replacement);

// ---- registry options ------------------------------------------------------------------------------------------

enum class RegistryType : std::uint32_t { text = 1, binary = 3, number32 = 4, number64 = 11 };

struct RegistryValue {
    RegistryType type = RegistryType::binary;
    std::string bytes;  ///< as stored: a text includes its terminator, numbers are little-endian
};

/// Values under "Software\Veltrane\Tessera5\<section>" of the current user's registry; on POSIX one file per value
/// under the per-user data directory, replaced in one step. False when the key or value cannot be read or written.
bool registryRead(const std::string& section, const std::string& name, RegistryValue& value);
bool registryWrite(const std::string& section, const std::string& name, const RegistryValue& value);
/// The same for values that are files below @p folder; an empty one has none.
bool registryFileRead(const std::string& folder, const std::string& section, const std::string& name,
                      RegistryValue& value);
bool registryFileWrite(const std::string& folder, const std::string& section, const std::string& name,
                       const RegistryValue& value);

// ---- modules ---------------------------------------------------------------------------------------------------

/// A loaded library: HMODULE on Windows, the handle of the dynamic loader on POSIX; 0 is none.
using ModuleHandle = unsigned long;

struct LoadFailure {
    std::uint32_t code = 0;  ///< in Windows numbers on both systems: 2 file not found, 3 path not found, 5 access
                             ///< denied, 8 out of memory, 126 something it needs is missing, 127 a function it needs
                             ///< is missing, 193 not a library of this platform
    std::string detail;      ///< the loader's own sentence where it has one; for the trace only
};

ModuleHandle loadModule(const std::string& path, LoadFailure& failure);
void unloadModule(ModuleHandle module);
/// Null when the module exports no such name. @p name is as the compiler decorates it.
void* moduleFunction(ModuleHandle module, const char* name);
/// Copies string @p id of the module's string table, at most size - 1 bytes and the terminator; answers how many
/// bytes were copied, 0 when there is no such string.
int moduleString(ModuleHandle module, int id, char* buffer, int size);
/// The handle of the library itself, whose string table moduleString() reads too.
ModuleHandle ownModule();
/// Where a call of @p code ends up: on Windows a module has stubs of its own for what it takes from a library.
const void* calledCode(const void* code);

// ---- memory and the process; for the clock see Ticks.h ---------------------------------------------------------

/// Bytes of memory that are free, as the system reports them.
std::uint64_t freeMemory();
/// Memory straight from the system, for what will be filled: on pages as large as it has. @p size is a power of two,
/// 64 KB at least. Null when there is none.
void* mapMemory(std::size_t size);
void unmapMemory(void* memory, std::size_t size);
std::uint32_t processId();
/// Lets other programs run for a moment; for bounded retries on a file that is held.
void pause(std::uint32_t milliseconds);

// ---- people ----------------------------------------------------------------------------------------------------

/// The message box with a Windows style, answering a Windows button id (IDOK 1, IDCANCEL 2, IDABORT 3, IDRETRY 4,
/// IDIGNORE 5, IDYES 6, IDNO 7). On POSIX the text goes to standard error and the default button is the answer.
int showAlert(const char* text, unsigned style);
/// The continue alert: answers 1219 or 1220. On POSIX 1219.
int showContinueAlert(const char* text);
/// Dialog 1612. @p suppress is whether the box "do not show again" was left ticked; @p traceToFile is what dialog
/// 1616 behind it shows and changes.
void showErrorDialog(const char* text, bool& suppress, bool& traceToFile);
/// One line on how far something has come.
void showProgress(const char* text);
/// What a file chooser is asked. @p filter holds pairs "description;type", @p path is where to start and the answer.
bool chooseFile(const std::string& prompt, const std::string& filter, bool saving, std::string& path);
bool chooseDirectory(const std::string& prompt, std::string& path);
/// Lets go of a mouse that a view has captured.
void releaseMouse();

// ---- surface: clipboard, cursor, beep --------------------------------------------------------------------------

/// Takes the clipboard for this process; false when another one has it. The other operations but
/// clipboardHasText() need it taken. On POSIX there is one clipboard for each process.
bool clipboardOpen();
void clipboardClose();
bool clipboardEmpty();
/// Puts a text, which holds no NUL, in the place of the one there. False, with nothing changed, when memory ran out.
bool clipboardPut(std::string_view text);
bool clipboardHasText();
/// The text that is there, up to its first NUL. False, with @p text untouched, when there is none.
bool clipboardText(std::string& text);
/// Shows a cursor by the number of its resource, from 32512 on one of the system's. False, with nothing done, when
/// there is no such cursor, and on POSIX.
bool showCursor(short number);
void beep();

// ---- programs --------------------------------------------------------------------------------------------------

/// Starts a program, or opens a file with the program that belongs to it. @p show is a Windows show command
/// (ignored on POSIX); @p wait waits for its end.
bool runProgram(const std::string& path, const std::string& arguments, int show, bool wait, Failure& failure);

// ---- messages to the user-interface thread ---------------------------------------------------------------------

/// Called on the user-interface thread for each posted message.
using MessageSink = void (*)(std::uint32_t receiver, std::uintptr_t value);

/// Makes the calling thread the user-interface thread and @p sink what receives posted messages.
bool messagesStart(MessageSink sink);
/// Drops what still waits.
void messagesStop();
/// Posts a message; safe on every thread, and wakes messagesWait(). False when messages are not started.
bool messagesPost(std::uint32_t receiver, std::uintptr_t value);
/// Handles every message that waits and answers how many. On Windows that is the thread's whole queue; each window
/// message is offered to @p translate first (non-zero: handled), which may be null. A message that a handler posts
/// waits for the next call; an exception of a handler passes through, and the messages behind it wait as well.
int messagesPump(int (*translate)(tagMSG*));
/// Sleeps until a message waits or @p milliseconds have passed; 0xFFFFFFFF waits without end.
void messagesWait(std::uint32_t milliseconds);
/// The value posted to receiver 0 for each Ctrl+C (or its like) once this was called with true; false gives the
/// system's own behaviour back.
bool interruptsToMessages(bool on);

// ---- network control blocks ------------------------------------------------------------------------------------

/// Memory that a driver may reach from anywhere in the system: zero-filled and locked. Null is none.
struct SharedBlock {
    void* memory = nullptr;
    std::uintptr_t handle = 0;
};

/// Where a driver of the library's own finds its network; the system's has settings of its own.
struct NetworkSettings {
    std::string device;     ///< the interface's name; empty is the first one that can broadcast
    std::string broadcast;  ///< the address that broadcasts go to, in dotted form; empty is the interface's own
    std::uint16_t namePort = 0;
    std::uint16_t datagramPort = 0;
    std::string scope;
    bool operator==(const NetworkSettings&) const = default;
};

class Network {
public:
    virtual ~Network() = default;
    virtual SharedBlock allocate(std::size_t size);
    virtual void release(const SharedBlock& block);
    /// Executes a block (NetDriver of Net.h says how): Netbios() of the system, each adapter reset once before its
    /// first command; on POSIX a broadcast node of NetBIOS over UDP, adapter 0. @p settings is asked on the calling
    /// thread whenever nothing is registered or under way.
    ///
    /// Where the driver cannot begin, every command is answered with why: 251 without the system's function; 33 when
    /// another program holds a port, 9 when the system has no socket, thread or memory left, 53 when it refuses one,
    /// 67 when there is no such interface.
    virtual unsigned char execute(NetNcb& block, NetworkSettings (*settings)());
};

Network& network();
/// For tests, as fileSystemSet().
Network* networkSet(Network* replacement);
/// Ends the driver: names are released, commands that are under way complete with 11 through their post routines
/// before it returns. The next command begins anew. On Windows the system does that when the process ends.
void networkStop();

/// A line of text in a window: pixels from its left edge, and half lines below the first one.
struct StatusLine {
    int x;
    int halfLine;
    std::string text;
};

/// A hidden window in the name of a NetBIOS object; 0 is none. On POSIX there are no windows, and it is its receiver.
using StatusWindow = std::uintptr_t;

/// Opens one on the user-interface thread. What statusWindowPost() posts is handed to the sink of messagesStart() for
/// @p receiver; @p page is asked for the lines with @p context when the window paints itself. On Windows
/// @p instance has the window's class, and posting is message 7490 with the value as its second parameter.
StatusWindow statusWindowOpen(unsigned long instance, std::uint32_t receiver, std::vector<StatusLine> (*page)(void*),
                              void* context);
/// Safe on every thread while the window is open. False when nothing can be posted.
bool statusWindowPost(StatusWindow window, std::uintptr_t value);
/// Shows the window with its lines as they are now. False where nobody could see it.
bool statusWindowShow(StatusWindow window);
/// What was posted and not yet handled goes to the sink at once.
void statusWindowClose(StatusWindow window);

/// The computer's name as the machine's registry has it; nothing on POSIX.
std::optional<std::string> registeredComputerName();

}  // namespace kora::platform
