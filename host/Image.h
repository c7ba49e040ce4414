#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kora::host {

/// Thrown where a file's tables cannot be followed; the text continues "the file is damaged: ".
struct Damage {
    std::string what;
};

/// The bytes of a file that nobody vouches for, read by offset. Every access is checked, and all reading together has
/// a limit in proportion to the file's size, which tables that overlap or lead in circles run into.
class Image {
public:
    explicit Image(std::span<const unsigned char> bytes) : bytes_(bytes), budget_(4 * bytes.size() + 0x10000) {}

    void bigEndianSet(bool on) { bigEndian_ = on; }
    std::uint64_t size() const { return bytes_.size(); }
    bool holds(std::uint64_t offset, std::uint64_t length) const {
        return offset <= bytes_.size() && length <= bytes_.size() - offset;
    }
    /// Throws with @p what unless the file holds so many bytes there.
    void require(std::uint64_t offset, std::uint64_t length, const char* what) const;

    std::uint8_t u8(std::uint64_t offset) const { return static_cast<std::uint8_t>(number(offset, 1)); }
    std::uint16_t u16(std::uint64_t offset) const { return static_cast<std::uint16_t>(number(offset, 2)); }
    std::uint32_t u32(std::uint64_t offset) const { return static_cast<std::uint32_t>(number(offset, 4)); }
    std::uint64_t u64(std::uint64_t offset) const { return number(offset, 8); }
    /// 64 bits in a file of 64 bits, else 32.
    std::uint64_t word(std::uint64_t offset, unsigned bits) const { return number(offset, bits / 8); }
    /// The text at @p offset up to its NUL, which has to come before @p end. Stays as long as the bytes.
    std::string_view text(std::uint64_t offset, std::uint64_t end);

    /// One entry of a table was read; throws when there are too many.
    void entry() { spend(16); }

private:
    std::uint64_t number(std::uint64_t offset, unsigned size) const;
    void spend(std::uint64_t amount);

    std::span<const unsigned char> bytes_;
    std::uint64_t budget_;
    bool bigEndian_ = false;
};

}  // namespace kora::host
