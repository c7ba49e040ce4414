#include "strings/SizedText.h"

#include <algorithm>
#include <cstring>

namespace kora {

constinit StringState stringState{};

std::string_view textUpTo(const char* s, std::size_t limit) {
    if (!s) return {};
    if (limit == kUnbounded) return s;
    const void* end = std::memchr(s, 0, limit);
    return {s, end ? static_cast<std::size_t>(static_cast<const char*>(end) - s) : limit};
}

std::string_view sizedText(const char* s, int size) {
    return textUpTo(s, size < 0 ? kUnbounded : static_cast<std::size_t>(size));
}

std::string_view measuredText(const char* s, int size) {
    if (s) stringState.error = false;
    return sizedText(s, size);
}

std::size_t roomOf(const char* buffer, int size) {
    if (!buffer) return 0;
    return size < 0 ? kUnbounded : static_cast<std::size_t>(size);
}

bool putText(char* buffer, std::size_t room, std::size_t at, std::string_view text) {
    if (at > room) return false;
    const std::size_t count = std::min(text.size(), room - at);
    if (count > 0) std::memmove(buffer + at, text.data(), count);
    if (at + count < room) buffer[at + count] = '\0';
    return count == text.size();
}

}  // namespace kora
