#pragma once

#include <cstdint>

/// Trace codes: module number from bit 18, file number from bit 12, location in bits 0 to 11. This library is module
/// 1. Every source that marks steps or files faults has its number here, and every place its name, and nowhere else.
///
/// The build makes kora-trace's table of names out of this file (tools/kora-trace/MakeTraceTable.cmake): one line for each
/// file and place, with what is to be read in a dump behind it. "fault:" is a place that is filed with ERR(); each "|"
/// is a data word that follows the code, and what it says.
namespace kora::trace {

inline constexpr std::uint32_t kModule = 1;

enum File : std::uint32_t {
    kStartup = 1,       // core/Startup.cpp
    kModules = 2,       // tasks/ModuleLoading.cpp, ModuleStart.cpp, ModuleExit.cpp
    kTimers = 3,        // tasks/Timers.cpp
    kSettings = 4,      // settings/MainProfile.cpp, ProfileFile.cpp
    kNotify = 5,        // tasks/Notify.cpp
    kFileLocation = 8,  // paths/FileLocation.cpp, FileSearch.cpp, NameExpansion.cpp
    kFilePath = 9,      // paths/FilePath.cpp, FileAccess.cpp
    kDirPath = 10,      // paths/DirPath.cpp
    kDoubleList = 15,   // containers/DoubleList.cpp
    kRamArray = 27,     // containers/RamArray.cpp
    kCommandLine = 37,  // tasks/CommandLine.cpp
    kGeometry = 38,     // geometry/Anchors.cpp, Rotation.cpp
    kNetwork = 50,      // net/Completion.cpp
};

constexpr std::uint32_t code(File file, std::uint32_t location) {
    return kModule << 18 | static_cast<std::uint32_t>(file) << 12 | location;
}

enum Place : std::uint32_t {
    kStartBegins = code(kStartup, 0x010),       // start-up begins
    kStartPrepares = code(kStartup, 0x020),     // the application prepares itself
    kStartInitialises = code(kStartup, 0x030),  // the application initialises
    kStartModules = code(kStartup, 0x040),      // the modules' start-up begins
    kStartSecondStage = code(kStartup, 0x050),  // the application's second stage
    kStartDone = code(kStartup, 0x05F),         // start-up is done
    kIdlePass = code(kStartup, 0x100),          // an idle pass
    kPreTranslate = code(kStartup, 0x110),      // a message is offered for translation
    kExitBegins = code(kStartup, 0x200),        // exit begins
    kExitDone = code(kStartup, 0x20F),          // exit is done

    kToolsFolder = code(kModules, 0x010),      // the tools folder is read
    kPhase1 = code(kModules, 0x020),           // a module's phase 1
    kPhase2 = code(kModules, 0x021),           // a module's phase 2
    kPhase3 = code(kModules, 0x022),           // a module's phase 3
    kPhase4 = code(kModules, 0x023),           // a module's phase 4
    kFinalPhase = code(kModules, 0x030),       // a module's final phase
    kModuleLoad = code(kModules, 0x100),       // a module file is loaded
    kModuleEntry = code(kModules, 0x110),      // its entry is called
    kModuleEntryDone = code(kModules, 0x11F),  // its entry has returned
    kModuleLoaded = code(kModules, 0x1FF),     // the module is loaded
    kExitQuery = code(kModules, 0x200),        // a module is asked whether it may end
    kExitPass1 = code(kModules, 0x210),        // a module's first exit pass
    kExitPass2 = code(kModules, 0x220),        // a module's second exit pass
    kServicesEnd = code(kModules, 0x230),      // modules and services are taken down
    kServicesEnded = code(kModules, 0x23F),    // modules and services are gone

    kTimerExpiry = code(kTimers, 0x010),  // a timer expires | its number

    kProfileLoad = code(kSettings, 0x010),        // a profile is read
    kProfileInclude = code(kSettings, 0x020),     // the folder that it includes is read
    kProfileWrite = code(kSettings, 0x100),       // a profile is written
    kProfileSwap = code(kSettings, 0x110),        // the new profile takes the old one's place
    kProfileSwapFailed = code(kSettings, 0x11F),  // that failed, the old one stands | system's error number
    kProfileTakeBack = code(kSettings, 0x120),    // a profile is taken back from its backup

    kBroadcast = code(kNotify, 0x010),  // listeners are notified | the number of their NotNotify

    kExpansionBegins = code(kFileLocation, 0x960),  // a name is expanded
    kExpansionDone = code(kFileLocation, 0x97F),    // it is expanded
    kFileSearch = code(kFileLocation, 0xA00),       // a file is looked for
    kSearchCount = code(kFileLocation, 0xA44),      // fault: one file looked for, another number found

    kFullNameTooLong = code(kFilePath, 0x301),  // fault: a full file name is too long
    kBaseNameTooLong = code(kFilePath, 0x401),  // fault: a base name is too long
    kTypeTooLong = code(kFilePath, 0x421),      // fault: a file type is too long
    kFileDelete = code(kFilePath, 0x500),       // a file is deleted
    kFileRead = code(kFilePath, 0x510),         // a file is read
    kFileWrite = code(kFilePath, 0x520),        // a file is written
    kFileRun = code(kFilePath, 0x530),          // a program is started

    kDirDelete = code(kDirPath, 0x100),  // a directory is deleted
    kDirCreate = code(kDirPath, 0x110),  // a directory is made

    kListDestroyAll = code(kDoubleList, 0x010),     // a list deletes its elements
    kElementDelete = code(kDoubleList, 0x011),      // an element is deleted
    kElementDeleted = code(kDoubleList, 0x012),     // it is gone
    kListDestroyedAll = code(kDoubleList, 0x01F),   // all elements are gone
    kListDestructor = code(kDoubleList, 0x300),     // a list is destroyed
    kListDestructorEnd = code(kDoubleList, 0x30F),  // the list is gone

    kRamConstructed = code(kRamArray, 0x100),  // a memory array is made
    kRamIndex = code(kRamArray, 0x700),        // fault: an index lies beyond the memory array

    kBadOption = code(kCommandLine, 0x208),        // fault: no option of one to four characters
    kSubscribeFailed = code(kCommandLine, 0x210),  // fault: an option could not be subscribed to
    kOptionDispatch = code(kCommandLine, 0x300),   // modules are told of an option | its characters, the first lowest

    kBadOrientation = code(kGeometry, 0x740),  // fault: no orientation
    kBadAngle = code(kGeometry, 0x780),        // fault: no multiple of a right angle

    kNameAdded = code(kNetwork, 0x010),         // the registration of a group name has ended
    kDatagramSent = code(kNetwork, 0x020),      // sending a datagram has ended
    kDatagramReceived = code(kNetwork, 0x030),  // receiving a datagram has ended
};

}  // namespace kora::trace
