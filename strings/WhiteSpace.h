#pragma once

#include <string_view>

namespace kora {

/// Blank, tab, line feed, vertical tab, form feed, carriage return.
constexpr bool isWhiteSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

constexpr std::string_view trimStart(std::string_view text) {
    while (!text.empty() && isWhiteSpace(text.front())) text.remove_prefix(1);
    return text;
}

constexpr std::string_view trimEnd(std::string_view text) {
    while (!text.empty() && isWhiteSpace(text.back())) text.remove_suffix(1);
    return text;
}

constexpr std::string_view trim(std::string_view text) { return trimEnd(trimStart(text)); }

}  // namespace kora
