#pragma once

#include <cstdint>

/// Trace codes: module number from bit 18, file number from bit 12, location in bits 0 to 11. This library is module
/// 1; every source that marks steps or files faults has its number here and nowhere else.
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

}  // namespace kora::trace
