#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kora::tracelog {

struct ZipEntry {
    std::string name;
    std::string bytes;
};

/// An archive of stored entries, all of the local time @p now (seconds since 1970). Together they are below 4 GB.
std::string zipArchive(const std::vector<ZipEntry>& entries, std::int64_t now);

/// The checksum of the archive's entries: CRC-32.
std::uint32_t crc32(std::string_view bytes);

}  // namespace kora::tracelog
