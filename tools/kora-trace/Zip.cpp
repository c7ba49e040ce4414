#include "tools/kora-trace/Zip.h"

#include <array>
#include <ctime>

namespace kora::tracelog {

namespace {

constexpr std::array<std::uint32_t, 256> kCrcTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit) value = value >> 1 ^ (value & 1 ? 0xEDB88320u : 0u);
        table[i] = value;
    }
    return table;
}();

constexpr std::uint32_t kLocalHeader = 0x04034B50, kDirectoryHeader = 0x02014B50, kDirectoryEnd = 0x06054B50;
constexpr std::uint32_t kVersion = 20, kNamesAreUtf8 = 1u << 11, kStored = 0;

void put(std::string& out, std::uint32_t value, int bytes) {
    for (; bytes > 0; --bytes, value >>= 8) out += static_cast<char>(value & 0xFF);
}

// Date and time as the format packs them: years from 1980 and two seconds at a time.
std::uint32_t packedTime(std::int64_t now) {
    const auto seconds = static_cast<std::time_t>(now);
    const std::tm* local = std::localtime(&seconds);
    if (local == nullptr || local->tm_year < 80 || local->tm_year > 207) return 1u << 21 | 1u << 16;
    const auto field = [](int value, int shift) { return static_cast<std::uint32_t>(value) << shift; };
    return field(local->tm_year - 80, 25) | field(local->tm_mon + 1, 21) | field(local->tm_mday, 16) |
           field(local->tm_hour, 11) | field(local->tm_min, 5) | field(local->tm_sec / 2, 0);
}

// What the entry's own header and the directory both say of it.
std::string description(const ZipEntry& entry, std::uint32_t time) {
    const auto size = static_cast<std::uint32_t>(entry.bytes.size());
    std::string out;
    put(out, kVersion, 2);
    put(out, kNamesAreUtf8, 2);
    put(out, kStored, 2);
    put(out, time, 4);
    put(out, crc32(entry.bytes), 4);
    put(out, size, 4);
    put(out, size, 4);
    put(out, static_cast<std::uint32_t>(entry.name.size()), 2);
    put(out, 0, 2);  // no extra field
    return out;
}

}  // namespace

std::uint32_t crc32(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char c : bytes) crc = crc >> 8 ^ kCrcTable[(crc ^ static_cast<unsigned char>(c)) & 0xFF];
    return ~crc;
}

std::string zipArchive(const std::vector<ZipEntry>& entries, std::int64_t now) {
    const std::uint32_t time = packedTime(now);
    std::string out, directory;
    for (const ZipEntry& entry : entries) {
        const std::string about = description(entry, time);
        put(directory, kDirectoryHeader, 4);
        put(directory, kVersion, 2);
        directory += about;
        put(directory, 0, 2);  // no comment
        put(directory, 0, 2);  // the first disk
        put(directory, 0, 2);  // no attributes
        put(directory, 0, 4);
        put(directory, static_cast<std::uint32_t>(out.size()), 4);
        directory += entry.name;
        put(out, kLocalHeader, 4);
        out += about + entry.name;
        out += entry.bytes;
    }
    const auto count = static_cast<std::uint32_t>(entries.size());
    const auto start = static_cast<std::uint32_t>(out.size());
    out += directory;
    put(out, kDirectoryEnd, 4);
    put(out, 0, 4);  // one disk
    put(out, count, 2);
    put(out, count, 2);
    put(out, static_cast<std::uint32_t>(directory.size()), 4);
    put(out, start, 4);
    put(out, 0, 2);  // no comment
    return out;
}

}  // namespace kora::tracelog
