#pragma once

#include <cstdint>

#include "strings/FormatDigits.h"
#include "strings/FormatField.h"

namespace kora {

struct FormatRadix {
    unsigned bits;  // in one digit; 0 for decimal
    const char* digits;
    char prefix;  // behind a 0 with flag #; NUL for none
};

inline constexpr FormatRadix kDecimal{0, "0123456789", '\0'};
inline constexpr FormatRadix kOctal{3, "01234567", '\0'};
inline constexpr FormatRadix kHexadecimal{4, "0123456789abcdef", 'x'};
inline constexpr FormatRadix kHexadecimalUpper{4, "0123456789ABCDEF", 'X'};
inline constexpr FormatRadix kBinary{1, "01", 'b'};
inline constexpr FormatRadix kBinaryUpper{1, "01", 'B'};

template <const FormatRadix& kRadix>
unsigned countDigits(std::uint64_t value) {
    if constexpr (kRadix.bits == 0) {
        return countDecimal(value);
    } else {
        return (bitWidth(value) + kRadix.bits - 1) / kRadix.bits;
    }
}

/// Puts the digits before @p end.
template <const FormatRadix& kRadix>
void putDigits(char* end, std::uint64_t value) {
    if constexpr (kRadix.bits == 0) {
        putDecimal(end, value);
    } else {
        do *--end = kRadix.digits[value & ((1U << kRadix.bits) - 1)];
        while ((value >>= kRadix.bits) != 0);
    }
}

/// Prints a magnitude behind @p sign, if that is not NUL.
template <const FormatRadix& kRadix, typename Request>
bool formatInteger(FormatSink& sink, const Request& request, char sign, std::uint64_t value) {
    unsigned count = countDigits<kRadix>(value);
    unsigned zeros = 0;
    char letter = '\0';
    if (request.precision >= 0) {
        if (value == 0 && request.precision == 0) count = 0;
        const auto wanted = static_cast<unsigned>(request.precision);
        if (wanted > count) zeros = wanted - count;
    }
    if (request.has('#')) {
        if (kRadix.bits == 3 && zeros == 0 && (count == 0 || value != 0)) zeros = 1;
        if (value != 0) letter = kRadix.prefix;
    }
    return emitField(sink, request, request.precision < 0, {sign, letter}, zeros, count, [=](auto& out) {
        if (count != 0) out.made(count, [=](char* end) { putDigits<kRadix>(end, value); });
    });
}

}  // namespace kora
