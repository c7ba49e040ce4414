#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// What a character means to every folder: plain bytes, ordered as signed 8-bit values, with the letters a-z alone
/// having another case. The C library's classes depend on the locale and are not used.
namespace kora {

/// The byte as it is ordered: 0x80 to 0xFF are negative, before all of ASCII, whatever the compiler's char is.
constexpr int signedByte(char c) { return static_cast<signed char>(c); }

/// a-z to upper case; every other byte as it is.
constexpr char foldCase(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c; }

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Blanks and control characters, codes 0 to 32. Bytes from 0x80 up are ordinary characters.
constexpr bool isBlankOrControl(char c) { return static_cast<unsigned char>(c) <= ' '; }

/// Moves between one and two words' length as two words, which may overlap.
template <typename Word>
inline void moveEnds(char* to, const char* from, std::size_t length) {
    Word first, last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + length - sizeof last, sizeof last);
    std::memcpy(to, &first, sizeof first);
    std::memcpy(to + length - sizeof last, &last, sizeof last);
}

/// std::memmove for at most 16 bytes, without a call, which would take longer than the move.
inline void moveShort(char* to, const char* from, std::size_t length) {
    if (length >= 8) {
        moveEnds<std::uint64_t>(to, from, length);
    } else if (length >= 4) {
        moveEnds<std::uint32_t>(to, from, length);
    } else if (length >= 2) {
        moveEnds<std::uint16_t>(to, from, length);
    } else if (length == 1) {
        *to = *from;
    }
}

/// std::memmove for names and the like: a call only beyond 32 bytes.
inline void moveText(char* to, const char* from, std::size_t length) {
    struct Block {
        std::uint64_t words[2];
    };
    if (length <= sizeof(Block)) return moveShort(to, from, length);
    if (length <= 2 * sizeof(Block)) return moveEnds<Block>(to, from, length);
    std::memmove(to, from, length);
}

/// One byte in every byte of a word.
constexpr std::uint64_t eachByte(unsigned char c) { return std::uint64_t{0x0101010101010101} * c; }

/// The high bit of every byte of @p word that is below @p bound, which is at most 0x80, and perhaps of some above the
/// lowest of them.
constexpr std::uint64_t bytesBelow(std::uint64_t word, unsigned char bound) {
    return (word - eachByte(bound)) & ~word & eachByte(0x80);
}

/// The same for the bytes that are zero.
constexpr std::uint64_t zeroBytes(std::uint64_t word) { return bytesBelow(word, 1); }

/// The same for the bytes that are @p c.
constexpr std::uint64_t bytesEqual(std::uint64_t word, char c) {
    return zeroBytes(word ^ eachByte(static_cast<unsigned char>(c)));
}

/// Whether there is a NUL among at most 16 bytes, without a call.
inline bool holdsNul(const char* text, std::size_t length) {
    if (length < sizeof(std::uint64_t)) {
        while (length > 0)
            if (text[--length] == '\0') return true;
        return false;
    }
    std::uint64_t first, last;
    std::memcpy(&first, text, sizeof first);
    std::memcpy(&last, text + length - sizeof last, sizeof last);
    return (zeroBytes(first) | zeroBytes(last)) != 0;
}

/// Whether two texts are the same, without a call, which names are too short for.
inline bool equalTexts(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    const auto word = [](std::string_view text, std::size_t at) {
        std::uint64_t loaded;
        std::memcpy(&loaded, text.data() + at, sizeof loaded);
        return loaded;
    };
    std::size_t at = 0;
    for (; at + sizeof(std::uint64_t) <= a.size(); at += sizeof(std::uint64_t))
        if (word(a, at) != word(b, at)) return false;
    if (at == a.size()) return true;
    // The last word overlaps the one before.
    if (at > 0) return word(a, a.size() - sizeof(std::uint64_t)) == word(b, a.size() - sizeof(std::uint64_t));
    while (at < a.size() && a[at] == b[at]) ++at;
    return at == a.size();
}

/// How many bytes @p a and @p b have in common from their beginning.
std::size_t commonPrefix(std::string_view a, std::string_view b);

/// -1, 0 or 1: by the first differing byte, then the shorter text first.
int compareTexts(std::string_view a, std::string_view b);

bool equalIgnoringCase(std::string_view a, std::string_view b);

}  // namespace kora
