#pragma once

#include <cstdint>

/// Trace codes: module number from bit 18, file number from bit 12, location in bits 0 to 11. This library is module
/// 1; every source that marks steps or files faults has its number here and nowhere else.
namespace kora::trace {

inline constexpr std::uint32_t kModule = 1;

enum File : std::uint32_t {
    kFileLocation = 8,  // paths/FileLocation.cpp; its codes are 0x48960 and on
    kDoubleList = 15,   // containers/DoubleList.cpp; 0x4F...
    kRamArray = 27,     // containers/RamArray.cpp; 0x5B...
    kCommandLine = 37,  // tasks/CommandLine.cpp
    kGeometry = 38,     // geometry/
    kFilePath = 9,      // paths/FilePath.cpp, paths/FileAccess.cpp
    kDirPath = 10,      // paths/DirPath.cpp
    kStartup = 1,
    kModules = 2,
    kTimers = 3,
    kSettings = 4,
    kNotify = 5,
    kErrors = 6,
};

constexpr std::uint32_t code(File file, std::uint32_t location) {
    return kModule << 18 | static_cast<std::uint32_t>(file) << 12 | location;
}

}  // namespace kora::trace
