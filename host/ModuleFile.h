#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/BinaryFile.h"

namespace kora::host {

/// The name of a module's entry as the compiler decorates it, the same on both platforms.
inline constexpr std::string_view kEntryName = "_Z11TskKoraMainR14eTskKoraModulePP13TskKoraModuled";

/// A library file, read without running it. Its path is as the system's own programs write it.
struct ModuleFile {
    std::string path;
    /// Why nothing could be read: "is not there", "is a directory"; empty when there was something to read.
    std::string trouble;
    std::vector<unsigned char> bytes;  ///< the texts of @p tables point here
    BinaryFile tables;

    ModuleFile() = default;
    ModuleFile(ModuleFile&&) = default;
    ModuleFile& operator=(ModuleFile&&) = default;

    /// Every exported name that could be meant as the entry, the right one first.
    std::vector<std::string_view> entries() const;
    bool hasEntry() const;
};

/// Never throws but for want of memory, whatever the file is or holds.
ModuleFile readModuleFile(const std::string& path);

/// @p text with a "?" for each byte that a terminal would act on.
std::string printable(std::string_view text);

/// The parts of a path: all before the last separator ("." without one), and all behind it.
std::string folderOf(const std::string& path);
std::string nameOf(const std::string& path);

}  // namespace kora::host
