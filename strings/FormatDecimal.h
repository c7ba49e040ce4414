#pragma once

#include <cstdint>

namespace kora {

/// The decimal digits of a number: 0.ddd × 10^point. Digits that are not there are zeros.
struct Decimal {
    const char* digits;
    int count;
    int point;
};

/// Where decimal digits are cut: behind so many places after the point, or behind so many significant digits.
struct DecimalCut {
    bool significant;
    int digits;  // at least 1 when significant, at least 0 otherwise
};

/// Room for the digits of every number there is: the smallest one has 16445 places.
constexpr int kDecimalRoom = 16512;

/// How much room decimalDigits() needs, at most kDecimalRoom.
int decimalRoom(std::uint64_t mantissa, int exponent, DecimalCut cut);

/// Works out mantissa × 2^exponent exactly and rounds it half to even at the cut. @p room has decimalRoom() characters.
/// The exponent is one of a number with 64 bits of mantissa and 15 of exponent.
///
/// Significant digits begin with the first that is not 0; places after the point include zeros behind it.
Decimal decimalDigits(std::uint64_t mantissa, int exponent, DecimalCut cut, char* room);

}  // namespace kora
