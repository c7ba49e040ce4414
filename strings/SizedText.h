#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "strings/Bytes.h"

/// How a pointer and a size become a text, and how a text is written to a pointer and a size.
namespace kora {

struct StringState {
    bool error;            ///< the string error flag
    unsigned initialised;  ///< calls of StrInit
};
extern constinit StringState stringState;

constexpr std::size_t kUnbounded = static_cast<std::size_t>(-1);

/// The text at @p s up to its NUL, at most @p limit bytes; empty for null. Nothing behind either is read.
inline std::string_view textUpTo(const char* s, std::size_t limit) {
    if (!s) return {};
    if (limit == kUnbounded) return s;
    const void* end = std::memchr(s, 0, limit);
    return {s, end ? static_cast<std::size_t>(static_cast<const char*>(end) - s) : limit};
}

/// The text of a sized string: a negative size is unbounded.
inline std::string_view sizedText(const char* s, int size) {
    return textUpTo(s, size < 0 ? kUnbounded : static_cast<std::size_t>(size));
}

/// sizedText() as the exported operations measure their arguments: clears the string error flag unless @p s is null.
inline std::string_view measuredText(const char* s, int size) {
    if (s) stringState.error = false;
    return sizedText(s, size);
}

/// How many bytes may be written to @p buffer; none to a null buffer.
inline std::size_t roomOf(const char* buffer, int size) {
    if (!buffer) return 0;
    return size < 0 ? kUnbounded : static_cast<std::size_t>(size);
}

/// Writes @p text at index @p at of a buffer with @p room bytes, cut to what fits, and a NUL behind it where there is
/// room. The text may stand in the same buffer. False when it was cut.
inline bool putText(char* buffer, std::size_t room, std::size_t at, std::string_view text) {
    if (at > room) return false;
    const std::size_t count = std::min(text.size(), room - at);
    moveText(buffer + at, text.data(), count);
    if (at + count < room) buffer[at + count] = '\0';
    return count == text.size();
}

}  // namespace kora
