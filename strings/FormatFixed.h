#pragma once

#include <bit>
#include <cstdint>
#include <optional>

#include "strings/FormatDigits.h"

namespace kora {

/// A number with so many places behind the point: whole + fraction / 10^places.
struct FixedDecimal {
    std::uint64_t whole;
    std::uint32_t fraction;
};

constexpr int kMaxFixedPlaces = 9;

/// Rounds mantissa × 2^exponent half to even at @p places behind the point, at most kMaxFixedPlaces. Exact, or nothing:
/// for a whole part beyond 64 bits, and where 64 bits behind the point are too few to tell.
inline std::optional<FixedDecimal> fixedDecimal(std::uint64_t mantissa, int exponent, int places) {
    if (exponent >= 0) {
        if (exponent > std::countl_zero(mantissa | 1)) return std::nullopt;
        return FixedDecimal{mantissa << exponent, 0};
    }
    const int bits = -exponent;
    std::uint64_t whole = 0;
    std::uint64_t behind = 0;  // the point, / 2^64
    bool more = false;         // and something smaller than that
    if (bits < 64) {
        whole = mantissa >> bits;
        behind = mantissa << (64 - bits);
    } else {
        if (bits < 128) behind = mantissa >> (bits - 64);
        more = bits >= 128 ? mantissa != 0 : behind << (bits - 64) != mantissa;
    }

    const std::uint64_t power = kPowersOfTen.value[places];
    const std::uint64_t low = (behind & UINT32_MAX) * power;
    const std::uint64_t high = (behind >> 32) * power + (low >> 32);
    auto fraction = static_cast<std::uint32_t>(high >> 32);
    const std::uint64_t rest = high << 32 | (low & UINT32_MAX);
    constexpr std::uint64_t kHalf = std::uint64_t{1} << 63;
    // Times power, what is smaller comes to less than power: it must not carry the rest over the half or the whole.
    if (more && rest % kHalf >= kHalf - power) return std::nullopt;
    const bool odd = ((places == 0 ? whole : fraction) & 1) != 0;
    if (rest > kHalf || (rest == kHalf && (more || odd))) ++fraction;
    if (fraction == power) fraction = 0, ++whole;
    return FixedDecimal{whole, fraction};
}

}  // namespace kora
