#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace kora {

struct DigitPairs {
    constexpr DigitPairs() {
        for (int i = 0; i < 100; ++i) {
            text[2 * i] = static_cast<char>('0' + i / 10);
            text[2 * i + 1] = static_cast<char>('0' + i % 10);
        }
    }
    char text[200] = {};
};
inline constexpr DigitPairs kDigitPairs;

/// 10^0 to 10^19, all that 64 bits hold.
struct PowersOfTen {
    constexpr PowersOfTen() {
        for (std::uint64_t power = 1; std::uint64_t & slot : value) slot = power, power *= 10;
    }
    std::uint64_t value[20] = {};
};
inline constexpr PowersOfTen kPowersOfTen;

/// How many binary digits a number has, at least one.
inline unsigned bitWidth(std::uint64_t value) { return 64 - static_cast<unsigned>(std::countl_zero(value | 1)); }

/// How many decimal digits a number has, at least one.
inline unsigned countDecimal(std::uint64_t value) {
    const unsigned atLeast = bitWidth(value) * 1233 >> 12;  // log10(2), near enough for 64
    return atLeast + ((value | 1) >= kPowersOfTen.value[atLeast]);
}

/// Puts the two digits of a number below 100 before @p end; answers where they start.
inline char* putPair(char* end, std::uint32_t pair) {
    std::memcpy(end - 2, kDigitPairs.text + 2 * pair, 2);
    return end - 2;
}

/// Puts the decimal digits of @p value before @p end, at least one; answers where they start.
inline char* putDecimal(char* end, std::uint64_t value) {
    for (; value > UINT32_MAX; value /= 100) end = putPair(end, static_cast<std::uint32_t>(value % 100));
    auto low = static_cast<std::uint32_t>(value);
    for (; low >= 100; low /= 100) end = putPair(end, low % 100);
    if (low >= 10) return putPair(end, low);
    *--end = static_cast<char>('0' + low);
    return end;
}

}  // namespace kora
