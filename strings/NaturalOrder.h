#pragma once

#include <concepts>
#include <limits>
#include <string_view>

#include "strings/Bytes.h"

namespace kora {

/// The number at @p at, which is left behind its last digit. Wraps.
template <std::unsigned_integral Number>
Number readNumber(std::string_view text, std::size_t& at) {
    Number number = 0;
    for (; at < text.size() && isDigit(text[at]); ++at) {
        number = static_cast<Number>(number * 10U + static_cast<Number>(text[at] - '0'));
    }
    return number;
}

/// Runs of digits compare as numbers, which wrap; other characters as what @p order makes of them. A text that is used
/// up comes first, but an empty one last. Answers -1, 0 or 1.
template <std::unsigned_integral Number, typename Order>
int compareNatural(std::string_view a, std::string_view b, Order order) {
    if (a.empty() || b.empty()) return static_cast<int>(a.empty()) - static_cast<int>(b.empty());

    // An equal beginning decides nothing, except that a number has to be read from its first digit.
    const std::size_t common = commonPrefix(a, b);
    if (common == a.size() && common == b.size()) return 0;
    std::size_t i = common;
    while (i > 0 && isDigit(a[i - 1])) --i;

    // Of numbers with equally many digits, too few to wrap, the first digit that differs decides.
    const auto digitAt = [](std::string_view text, std::size_t at) { return at < text.size() && isDigit(text[at]); };
    std::size_t end = common;
    while (digitAt(a, end) && digitAt(b, end)) ++end;
    const bool decided = end > common && end - i <= std::numeric_limits<Number>::digits10;
    if (decided && !digitAt(a, end) && !digitAt(b, end)) return a[common] < b[common] ? -1 : 1;

    std::size_t j = i;
    while (i < a.size() && j < b.size()) {
        if (isDigit(a[i]) && isDigit(b[j])) {
            const Number x = readNumber<Number>(a, i);
            const Number y = readNumber<Number>(b, j);
            if (x != y) return x < y ? -1 : 1;
            continue;
        }
        const int x = order(a[i++]);
        const int y = order(b[j++]);
        if (x != y) return x < y ? -1 : 1;
    }
    if (i < a.size()) return 1;
    return j < b.size() ? -1 : 0;
}

}  // namespace kora
