#pragma once

#include <cstddef>
#include <string_view>

/// How a pointer and a size become a text, and how a text is written to a pointer and a size.
namespace kora {

struct StringState {
    bool error;            ///< the string error flag
    unsigned initialised;  ///< calls of StrInit
};
extern StringState stringState;

constexpr std::size_t kUnbounded = static_cast<std::size_t>(-1);

/// The text at @p s up to its NUL, at most @p limit bytes; empty for null. Nothing behind either is read.
std::string_view textUpTo(const char* s, std::size_t limit);

/// The text of a sized string: a negative size is unbounded.
std::string_view sizedText(const char* s, int size);

/// sizedText() as the exported operations measure their arguments: clears the string error flag unless @p s is null.
std::string_view measuredText(const char* s, int size);

/// How many bytes may be written to @p buffer; none to a null buffer.
std::size_t roomOf(const char* buffer, int size);

/// Writes @p text at index @p at of a buffer with @p room bytes, cut to what fits, and a NUL behind it where there is
/// room. The text may stand in the same buffer. False when it was cut.
bool putText(char* buffer, std::size_t room, std::size_t at, std::string_view text);

}  // namespace kora
