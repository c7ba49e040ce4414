#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "strings/Bytes.h"
#include "strings/WhiteSpace.h"

/// Numbers at the beginning of texts that people wrote: what stands behind the number is the caller's.
namespace kora {

struct ScannedNumber {
    std::uint32_t value = 0;  ///< wraps at 32 bits; a minus negates it
    bool wrapped = false;     ///< the digits were worth more than 32 bits
};

/// Takes white space, a sign and the digits of @p base (10 or 16, there with an optional "0x") from @p text. Nothing,
/// and @p text as it was, when no digit is there.
///
///     "12abc" 12     " -7" -7     "0x1f" in base 16: 31; in base 10: 0     "abc", "-", "0x" in base 16: nothing
constexpr std::optional<ScannedNumber> scanNumber(std::string_view& text, unsigned base) {
    std::string_view rest = trimStart(text);
    const bool negative = rest.starts_with('-');
    if (negative || rest.starts_with('+')) rest.remove_prefix(1);
    if (base == 16 && (rest.starts_with("0x") || rest.starts_with("0X"))) rest.remove_prefix(2);

    const auto digitOf = [](char c) -> unsigned {
        if (isDigit(c)) return static_cast<unsigned>(c - '0');
        const char folded = foldCase(c);
        return folded >= 'A' && folded <= 'F' ? static_cast<unsigned>(folded - 'A') + 10 : 16;
    };
    if (rest.empty() || digitOf(rest.front()) >= base) return std::nullopt;
    ScannedNumber number;
    for (; !rest.empty() && digitOf(rest.front()) < base; rest.remove_prefix(1)) {
        const std::uint64_t wide = std::uint64_t{number.value} * base + digitOf(rest.front());
        number.wrapped = number.wrapped || wide > UINT32_MAX;
        number.value = static_cast<std::uint32_t>(wide);
    }
    if (negative) number.value = 0 - number.value;
    text = rest;
    return number;
}

}  // namespace kora
