#pragma once

#include <cstddef>
#include <string_view>

#include "strings/Bytes.h"

namespace kora {

/// Copies at most size - 1 characters and a NUL, which profile texts always get; all of them into a buffer of negative
/// size, nothing into a null one. The text may stand in the buffer itself.
inline void copyText(std::string_view text, char* buffer, int size) {
    if (!buffer || size == 0) return;
    if (size > 0) text = text.substr(0, static_cast<std::size_t>(size) - 1);
    moveText(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
}

}  // namespace kora
