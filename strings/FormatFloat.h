#pragma once

#include <cstdint>

#include "strings/FormatField.h"

namespace kora {

/// A floating-point number taken apart: mantissa × 2^exponent, the same for both widths.
struct BinaryFloat {
    enum Kind : std::uint8_t { finite, infinite, notANumber };

    explicit BinaryFloat(double value);
    explicit BinaryFloat(long double value);

    std::uint64_t mantissa;
    int exponent;
    int fractionBits;  // of the mantissa, behind what %a prints as the first digit
    Kind kind;
    bool negative;
};

/// Prints a number with one of the conversions f, e, g and a, in either letter case: exact, and rounded to the nearest
/// number of the precision asked for, to the even one of two that are equally near.
bool formatFloat(FormatSink& sink, const FormatRequest& request, const BinaryFloat& number);

}  // namespace kora
