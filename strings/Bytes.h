#pragma once

#include <cstddef>
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

/// How many bytes @p a and @p b have in common from their beginning.
std::size_t commonPrefix(std::string_view a, std::string_view b);

/// -1, 0 or 1: by the first differing byte, then the shorter text first.
int compareTexts(std::string_view a, std::string_view b);

bool equalIgnoringCase(std::string_view a, std::string_view b);

}  // namespace kora
