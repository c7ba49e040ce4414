#pragma once

#include <kora/DoubleList.h>
#include <kora/Kora.h>

#include <new>
#include <type_traits>

/// @file
/// Kora modules and the application that is made of them: the object by which a module represents itself, its entry,
/// the registry and what may be asked of it, the application object, and the four operations that a host calls.
///
/// Everything here belongs to the user-interface thread, except TskQuitRequest(), which any thread may call once the
/// library has started.

class FilePath;
struct tagMSG;

namespace kora {
struct ModuleAccess;
}

/// How the making of a module object ended. Only TskKoraModuleFailed counts as a failure.
enum eTskKoraModule : int { TskKoraModuleOk = 0, TskKoraModuleFailed = 1 };

/// One string of a module's string table. Where modules have no resources of their own the table is exported under the
/// name TskKoraStrings and ended by an entry without text.
struct TskString {
    int id;            ///< from 1 to 65535
    const char* text;  ///< null behind the last one
};

/// By this object a module represents itself to the library and to other modules. A module derives from it, overrides
/// what it has to say, and makes one with `new` in its entry, TskKoraMain().
///
/// The constructor links the object into the registry, at the end; the destructor takes it out. The registry owns
/// its objects: TskExit() deletes them, and unloads the modules' libraries after that. So an object that was not made
/// with `new` has to be gone by then. An object may delete itself at any time, in the middle of a phase too.
///
/// Only modules that answer true to TskInitSuccessful() take part: they are found by name, initialised, asked and
/// ended. The loader sets that for a module whose entry succeeded; an object that a program makes for itself, without
/// a module file, overrides TskInitSuccessful() if it wants to take part.
///
/// The order of declaration is the order of slots, which modules count on: new operations go at the end.
class KORA_API TskKoraModule : public DoubleListElement {
public:
    /// Makes the registry when there is none yet.
    /// @param status set to TskKoraModuleOk; to TskKoraModuleFailed when memory ran out.
    /// @param name copied; null counts as the empty name.
    /// @param awaken what TskAwaken() answers.
    /// @param second has no meaning yet; pass false.
    TskKoraModule(eTskKoraModule& status, const char* name, bool awaken, bool second);
    ~TskKoraModule() override;
    TskKoraModule(const TskKoraModule&) = delete;
    TskKoraModule& operator=(const TskKoraModule&) = delete;

    /// The instance handle of the module's library, 0 for an object without one.
    virtual unsigned long TskHandleGet();
    /// Called by the loader once the entry has succeeded.
    virtual void TskHandleSet(unsigned long handle);

    /// The phases of initialisation, default true. Each phase goes over all modules before the next begins, so a
    /// module may count in each on what all have done in the ones before. A module that answers false takes part in
    /// nothing any more and is not found by name.
    virtual bool TskInit1();
    virtual bool TskInit2();  ///< see TskInit1()
    virtual bool TskInit3();  ///< see TskInit1()
    virtual bool TskInit4();  ///< see TskInit1()
    /// Called once, in a pass of its own, when everything else has started; the result changes nothing.
    virtual bool TskInitFinal();
    /// A file that the host opens is offered to the module: by the host, the library never calls this. Does nothing by
    /// default.
    virtual void TskInitFile(FilePath* file);

    /// The module stops being the active one; see TskActiveModuleSet().
    virtual void TskSuspend();
    /// The module becomes the active one.
    virtual void TskResume();
    /// The whole program is suspended; see TskSuspendSet().
    virtual void TskKoraSuspend();
    /// The whole program goes on.
    virtual void TskKoraResume();

    /// Whether the program may quit, default true. A module that answers false keeps it running.
    virtual bool TskExitRequest();
    /// The first pass of the exit: let go of other modules. Every module is still there in both passes.
    virtual void TskExit1();
    /// The second pass of the exit: let go of the rest.
    virtual void TskExit2();

    /// Asked when an error that this module set is to be shown: true means that the module has dealt with it.
    virtual bool TskErrHandler();

    virtual const char* TskKoraName();  ///< the name given to the constructor; never null
    virtual const char* TskFileName();  ///< the module file's name and type, without directory; empty without a file
    virtual bool TskInitSuccessful();   ///< whether the module takes part
    virtual bool TskAwaken();           ///< what was given to the constructor

    /// Wakes the module with an argument; true when it took it. False by default.
    virtual bool TskWakeUp(const char* argument);
    virtual void TskWakeUp();
    /// Whether the module shows something at the moment, default false.
    virtual bool TskVisible();
    /// Hides what the module shows.
    virtual void TskHide();

private:
    friend struct kora::ModuleAccess;

    char* name_ = nullptr;
    char* fileName_ = nullptr;
    unsigned long handle_ = 0;
    std::uint32_t serial_ = 0;
    bool initSuccessful_ = false;
    bool awaken_ = false;
};

/// What the host adds to start-up, idle passes and exit. The default is complete: it initialises, accepts, runs the
/// idle timers, passes messages on, asks the modules before it quits, keeps the recent-files list and has no windows.
/// A host that needs more derives from it, and calls the operation of this class where the documentation says so.
///
/// An exception that an operation throws is caught where the host called the library, and reported there.
///
/// The order of declaration is the order of slots: new operations go at the end.
class KORA_API TskApplication {
public:
    TskApplication();
    virtual ~TskApplication();
    TskApplication(const TskApplication&) = delete;
    TskApplication& operator=(const TskApplication&) = delete;

    // ---- start-up, in this order

    /// The one-time preparation that TskPrepareOnceRequest() asked for, before anything else.
    virtual void TskAppPrepareOnce();
    /// Preparation before the settings are read. An override calls this one too.
    virtual void TskAppPrepare();
    /// Instance initialisation, before the modules are loaded; the settings can be read. False ends the start-up.
    virtual bool TskAppInit();
    /// The second start-up stage: all modules have been through their phases. @p start is the host's start-up value,
    /// the first argument of Startup(), which answers what this answers.
    virtual bool TskAppStart(void* start);

    // ---- the loop

    /// One idle pass. @p count is how many came before it since the last message. Runs the idle timers; an override
    /// calls this one too.
    /// @return non-zero when the next pass should follow at once: while an idle timer of high priority runs.
    virtual int TskAppIdle(long count);
    /// Sees every window message before it is dispatched; non-zero means that it has been dealt with.
    virtual int TskAppPreTranslate(tagMSG* message);
    /// Sleeps until a message is posted, the next timed timer is due or idle timers want a pass: at once with an idle
    /// timer of high priority, after 10 milliseconds at most with one of normal priority. Without any of them it
    /// takes no processor time.
    virtual void TskAppWait();
    /// Whether something is left to do that needs no message: a timer runs, or somebody called TskAppStay(). A host
    /// that works in batches ends when there is nothing.
    virtual bool TskAppBusy();
    /// A module that waits for what only comes from outside (messages of other stations, a thread of its own) calls
    /// this with true, and with false when it has done; calls nest.
    virtual void TskAppStay(bool on);

    // ---- the end

    /// A request to quit has reached the application: from TskQuitRequest(), from Ctrl+C, or since nothing is left to
    /// do. Asks the modules (TskExitKoraQuery()).
    /// @return true when all agreed; the loop ends then.
    virtual bool TskAppQuit();
    /// Whether a request to quit was agreed to; the loop goes on until then.
    virtual bool TskAppEnding();
    /// The exit code, TskExitCodeGet() by default.
    virtual int TskAppExit();

    // ---- recent files

    /// Puts a file at the head of the recent-files list, which holds 16, each path once regardless of case. Null and
    /// the empty name change nothing.
    virtual void TskAppRecentAdd(const char* fullName);
    /// Appends the recent files to @p list, newest first. False when the application keeps no such list.
    virtual bool TskAppRecentGet(CStringArray& list);
    /// Writes the recent files as registry options "File1" to "File16" of section "Recent File List". An override
    /// writes what else the host keeps, and calls this one too.
    virtual void TskAppSettingsSave();

private:
    CStringArray& recentFiles();

    CStringArray recent_;
    bool recentRead_ = false;
};

/// Puts @p application in force, null the library's own. The caller keeps it, and sets another before it goes.
/// @return the one before, never null.
KORA_API TskApplication* TskApplicationSet(TskApplication* application);

/// The entry of a module file: makes the module's object with `new` and hands it over through @p module. The library
/// presets @p status to TskKoraModuleFailed and @p module to null, and passes 0 for the double, which has no meaning.
/// A status other than TskKoraModuleFailed together with an object is success; otherwise every object that the entry
/// made is deleted and the library unloaded. An exception counts as failure.
///
/// The library finds it under the name that the compiler gives to exactly this signature. See KORA_MODULE.
KORA_MODULE_EXPORT void TskKoraMain(eTskKoraModule& status, TskKoraModule** module, double);

/// Looks up a function in a loaded module library, under the name as it is exported there. A null @p handle and a
/// missing function are shown to the user and answered with null. @p module is the name to show.
KORA_API void* TskKoraConnect(unsigned long handle, const char* module, const char* function);
/// The first module in registry order that takes part and has exactly this name, case included; null when none has.
KORA_API TskKoraModule* TskKoraModuleGet(const char* name);
/// TskHandleGet() of the module of this name, 0 when there is none.
KORA_API unsigned long TskKoraHandleGet(const char* name);
KORA_API bool TskModuleExists(const char* name);  ///< whether TskKoraModuleGet() finds one
/// Whether there is a module of this name and it shows something.
KORA_API bool TskModuleIsVisible(const char* name);
/// Wakes the module of this name, with @p argument unless that is null; an empty argument is one. With @p toggle a
/// module that is visible is hidden instead.
/// @return false when there is no such module; otherwise what TskWakeUp(argument) answers, true without an argument
/// and after hiding.
KORA_API bool TskKoraWakeUpByName(const char* name, const char* argument, bool toggle);
/// Whether the registry exists: from start-up, or the first module object, until TskExit().
KORA_API bool TskModulesInitialized();
/// Asks the modules in registry order whether the program may quit, up to the first that answers false.
/// @return true when all agreed; TskExit() may follow then. An exception counts as false, and is reported.
KORA_API bool TskExitKoraQuery();
/// Ends the modules: TskExit1() over all that take part, TskExit2() over them, then the timers and the other
/// services, then deletes the registry with all modules and unloads their libraries. Does nothing unless the last
/// TskExitKoraQuery() found everybody agreeing, and then only once.
///
/// An exception of a module ends the passes, is reported as "Exception in TskExit", and the rest follows.
KORA_API void TskExit();
/// Asks the application to quit, as soon as messages are handled: see TskApplication::TskAppQuit().
KORA_API void TskQuitRequest();
/// Whether the program is suspended; see TskSuspendSet().
KORA_API bool TskIsSuspended();
/// The instance handle of this library itself.
KORA_API unsigned long TskGetOurInstance();
/// The application object in force, never null.
KORA_API TskApplication* TskGetApp();
/// Subscribes to a command-line option (@p on), or takes the subscription back. @p option is the option's name of one
/// to four characters, without the "-" before it, case included.
///
/// When the host passes the option on, @p callback receives 0, the option's code, @p data, 1, and the address of the
/// CStringArray of arguments as its fifth value. It takes itself off by answering false.
///
/// The option code is 32 bits wide, the first character in the lowest byte.
///
/// @return false when the name is null, empty or longer than four characters, or when the subscription could not be
/// made, which are internal faults 520 and 528 of file 37. Taking back always answers true, and follows
/// NotNotify::Detach(): @p data of 0 takes back all of @p callback.
KORA_API bool TskRequestCmdLineNotify(const char* option, bool (*callback)(long, long, long, long, long), long data,
                                      bool on);

/// Starts the library: the settings, the application object, the modules of the tools folder with all their phases.
/// Calls between the first and ExitInstance() change nothing and answer 1.
/// @param start kept for TskApplication::TskAppStart().
/// @param second has no meaning.
/// @return non-zero on success. An exception that a module throws in a phase is reported as "Exception in TskInit"
/// and ends the modules' start-up, but not the library's.
KORA_API int Startup(void* start, void* second);
/// One idle pass: TskApplication::TskAppIdle(). An exception is reported as "Exception in theApp.OnIdle", with
/// result 0.
KORA_API int Idle(long count);
/// Offers a window message to the application; non-zero means that it must not be dispatched.
KORA_API int PreTranslateMessage(tagMSG* message);
/// Ends the library: TskExit(), the dump "Exit Trace" and the note "Goodbye!" in the log when tracing to file is on.
/// The modules end only if TskExitKoraQuery() was called and all agreed.
/// @return TskApplication::TskAppExit().
KORA_API int ExitInstance();
/// Handles every message that waits, on Windows those of windows too, and answers how many there were. The host's
/// loop calls it before each idle pass.
KORA_API int TskMessagePump();
/// Passes the arguments on to the modules that subscribed to them: each argument that begins with "-" or "/" is an
/// option.
/// @return whether any module took one.
KORA_API bool TskCmdLine(const CStringArray& arguments);
/// Makes a module the active one, or none: TskSuspend() of the one before, then TskResume() of this one. The module
/// that is active already is left alone.
KORA_API void TskActiveModuleSet(TskKoraModule* module);
KORA_API TskKoraModule* TskActiveModuleGet();  ///< the active module; null for none

/// Suspends the whole program, or lets it go on: TskKoraSuspend() or TskKoraResume() of every module when it changes.
KORA_API void TskSuspendSet(bool on);
/// Loads modules from this folder, whatever the settings say; null goes back to them. It is taken as the setting is.
///
/// The setting is "toolfolder" in section "System" of the main profile. Percent references are expanded, and a
/// relative folder is taken from the program's own. Without a setting, or with an empty one, it is "tools".
KORA_API void TskToolsFolderSet(const char* folder);
/// For tests: keeps everything that belongs to the user out of reach. The special directories are then those of these
/// names below @p folder, which are made where they are missing: "documents" (with the trace log), "userdata" (with
/// the state file in "Veltrane\Tessera5"), "shareddata", "system", "temporary" and "work"; and registry options are
/// files in "registry", on Windows too. The program's own directory and the environment's variables stay, except TEMP
/// and TMP. Null gives the system's places back. Nothing is removed.
/// @return false, with nothing changed, between Startup() and ExitInstance(), and when the directories cannot be made.
KORA_API bool TskScratchPlacesSet(const char* folder);
/// Makes the next Startup() run TskApplication::TskAppPrepareOnce().
KORA_API void TskPrepareOnceRequest();
/// Sets the exit code of the program unless it is set already: the first failure counts. The library sets 1 for a
/// module that could not be loaded, whose phase failed or that threw; a module may call it for a failure of its own.
KORA_API void TskExitCodeSet(int code);
/// The exit code; 0 as long as nothing has failed since start-up.
KORA_API int TskExitCodeGet();
/// Turns Ctrl+C (and its like) into a request to quit, or gives it back its usual effect. False when that failed.
KORA_API bool TskInterruptsAsQuit(bool on);
/// The setting "NugPinNameDisplayUp" of section "System", as it was read at start-up, behind the modules' four phases;
/// 0 in these and when it is missing.
KORA_API short TskNugPinNameDisplayUp();
/// The version of the library in use, as "0.1.0". The KORA_VERSION_ macros are that of the headers.
KORA_API const char* TskVersionGet();
/// The folder that modules are loaded from, in library form, and the names of the module files in it, in the order in
/// which they are loaded. Nothing is loaded; before Startup() the settings are read for it.
/// @return false when memory ran out; both are empty then.
KORA_API bool TskModuleFilesGet(CString& folder, CStringArray& files);

/// A step that a module is taken through.
enum eTskStep : int {
    TskStepLoad = 0,         ///< its file is loaded and its entry called
    TskStepInit1 = 1,        ///< its TskInit1()
    TskStepInit2 = 2,        ///< its TskInit2()
    TskStepInit3 = 3,        ///< its TskInit3()
    TskStepInit4 = 4,        ///< its TskInit4()
    TskStepInitFinal = 5,    ///< its TskInitFinal()
    TskStepExitRequest = 6,  ///< its TskExitRequest()
    TskStepExit1 = 7,        ///< its TskExit1()
    TskStepExit2 = 8         ///< its TskExit2()
};

/// How a step ended.
enum eTskStepResult : int {
    TskStepDone = 0,    ///< it succeeded, or agreed
    TskStepFailed = 1,  ///< it answered false; the file could not be loaded, or its entry did not connect
    TskStepThrew = 2    ///< an exception ended it
};

/// Is told of each step that modules are taken through, for hosts that measure, log or test modules. A host derives
/// from it and installs the object with TskObserverSet() before Startup(). Nothing else changes by it.
///
/// Steps nest where a module takes another step in the middle of its own (it calls TskExitKoraQuery() in a phase, say):
/// an end belongs to the last begin that has none yet. What an operation throws is treated as the module's exception.
class KORA_API TskObserver {
public:
    virtual ~TskObserver() {}
    /// A step begins. @p module is null for TskStepLoad, where there is none yet, and may be gone when the step ends.
    /// @p file is the module file's name and type, without directory; empty for a module without a file.
    virtual void TskStepBegin(eTskStep step, TskKoraModule* module, const char* file);
    /// The step has ended. @p reason is what the user was told of a file that could not be loaded, followed by a line
    /// with the words of the system's loader where it has some; empty for all else.
    virtual void TskStepEnd(eTskStepResult result, const char* reason);
};

/// Puts @p observer in place of the one before, which is answered; null is none. The caller keeps both objects.
KORA_API TskObserver* TskObserverSet(TskObserver* observer);

#if !defined(_WIN32)
/// Where the loader finds a module's strings; on Windows they are in the module's resources.
extern "C" KORA_MODULE_EXPORT const TskString TskKoraStrings[];
#endif

namespace kora {
/// False, for whoever defines TskKoraMain() with the one signature that the library looks up.
template <class Signature>
constexpr bool entryThrowsNothing() {
    static_assert(std::is_same_v<Signature, decltype(TskKoraMain)>,
                  "TskKoraMain takes (eTskKoraModule& status, TskKoraModule** module, double)");
    return false;
}
}  // namespace kora

/// Under any other signature the entry would be one more overload, which nobody finds. Written out behind the
/// parameters, the check sees every definition; a call has to be written (TskKoraMain)(...).
#define TskKoraMain(...) TskKoraMain(__VA_ARGS__) noexcept(kora::entryThrowsNothing<void(__VA_ARGS__)>())

/// Exports the headers' version, for whoever has a module's file and wants to know what it was built against.
#define KORA_MODULE_VERSION extern "C" KORA_MODULE_EXPORT const char TskKoraVersion[] = KORA_VERSION;

/// One row of a module's string table.
#define KORA_TSK_STRING(id, text) {id, text},
#if defined(_WIN32)
#define KORA_MODULE_STRINGS(STRINGS)
#else
/// Defines a module's string table from a list of its strings; where they are resources, the resource compiler reads
/// the same list.
#define KORA_MODULE_STRINGS(STRINGS) const TskString TskKoraStrings[] = {STRINGS(KORA_TSK_STRING){0, nullptr}};
#endif

/// Everything that a module file needs besides its class: the entry, the module object, the string table, and the
/// version that it is built against, exported as the text TskKoraVersion. The class takes over the constructor of
/// TskKoraModule; the strings, with ids from 1 to 65535, are a list in a header of their own, which the module's build
/// names too (kora_add_module(... STRINGS Strings.h SIM_STRINGS)):
///
///     // Strings.h
///     #define SIM_STRINGS(S) S(1, "Ready") S(2, "Cannot read the netlist")
///
///     // Sim.cpp
///     class Sim : public TskKoraModule {
///         using TskKoraModule::TskKoraModule;
///         bool TskInit1() override;
///     };
///     KORA_MODULE(Sim, "sim", SIM_STRINGS)
///
/// A module without strings names KORA_NO_STRINGS.
#define KORA_MODULE(Class, NAME, STRINGS)                                                         \
    KORA_MODULE_STRINGS(STRINGS)                                                                  \
    KORA_MODULE_VERSION                                                                           \
    KORA_MODULE_EXPORT void TskKoraMain(eTskKoraModule& status, TskKoraModule** module, double) { \
        *module = new (std::nothrow) Class(status, NAME, false, false);                           \
    }
#define KORA_NO_STRINGS(S)  ///< the empty list of strings
