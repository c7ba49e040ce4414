#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/Image.h"

namespace kora::host {

/// What the tables of a library file say, of either kind. Texts point into the file's bytes.
struct BinaryFile {
    enum class Format : std::uint8_t { unknown, elf, pe };
    enum class Kind : std::uint8_t { library, program, other };

    struct Import {
        std::string_view name;
        std::string_view library;  ///< PE alone: an ELF file does not say where a name comes from
    };
    /// ELF alone: a version of a library's names, which the library has to define.
    struct Version {
        std::string_view library, name;
    };

    Format format = Format::unknown;
    Kind kind = Kind::other;
    unsigned bits = 0;
    bool bigEndian = false;
    unsigned machine = 0;  ///< the format's own number
    /// What keeps a loader from following the tables; what was read before it stands. Empty for a file that is whole.
    std::string damage;

    std::string_view ownName;              ///< by which an ELF library is asked for, where it has one
    std::vector<std::string_view> needed;  ///< libraries
    std::string_view rpath, runpath;       ///< ELF: where to look for them
    std::vector<Import> imports;           ///< without those that may be missing
    std::vector<Version> versionsNeeded;
    std::vector<std::string_view> versionsDefined;
    std::vector<std::string_view> exports;
    std::optional<unsigned> strings;  ///< how many the module's string table has, where that can be told
    std::string_view koraVersion;     ///< TskKoraVersion; empty where the module has none

    /// "ELF 64-bit x86-64"
    std::string machineText() const;
    bool sameMachine(const BinaryFile& other) const {
        return format == other.format && bits == other.bits && bigEndian == other.bigEndian && machine == other.machine;
    }
};

/// Reads the tables of a file that begins as the format does; otherwise @p file stays as it is. What is wrong with
/// them throws.
void readElf(Image& image, BinaryFile& file);
void readPe(Image& image, BinaryFile& file);

/// Reads the tables of either format. Never throws but for want of memory.
BinaryFile readBinary(std::span<const unsigned char> bytes);

}  // namespace kora::host
