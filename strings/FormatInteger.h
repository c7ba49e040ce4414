#pragma once

#include <cstdint>

#include "strings/FormatField.h"

namespace kora {

struct FormatRadix {
    int bits;  // in one digit; 0 for decimal
    const char* digits;
    char prefix;  // behind a 0 with flag #; NUL for none
};

inline constexpr FormatRadix kDecimal{0, "0123456789", '\0'};
inline constexpr FormatRadix kOctal{3, "01234567", '\0'};
inline constexpr FormatRadix kHexadecimal{4, "0123456789abcdef", 'x'};
inline constexpr FormatRadix kHexadecimalUpper{4, "0123456789ABCDEF", 'X'};
inline constexpr FormatRadix kBinary{1, "01", 'b'};
inline constexpr FormatRadix kBinaryUpper{1, "01", 'B'};

/// Prints a magnitude behind @p sign, if that is not NUL.
bool formatInteger(FormatSink& sink, const FormatRequest& request, char sign, std::uint64_t value,
                   const FormatRadix& radix);

}  // namespace kora
