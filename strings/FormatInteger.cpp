#include "strings/FormatInteger.h"

#include <bit>

#include "strings/FormatDigits.h"

namespace kora {
namespace {

struct PowersOfTen {
    constexpr PowersOfTen() {
        for (std::uint64_t power = 1; std::uint64_t & slot : value) slot = power, power *= 10;
    }
    std::uint64_t value[20] = {};
};
constexpr PowersOfTen kPowers;

constexpr int kMaxDigits = 64;  // in binary

int countDigits(std::uint64_t value, const FormatRadix& radix) {
    const int width = 64 - std::countl_zero(value | 1);
    if (radix.bits != 0) return (width + radix.bits - 1) / radix.bits;
    const int atLeast = width * 1233 >> 12;  // log10(2), near enough for 64
    return atLeast + ((value | 1) >= kPowers.value[atLeast]);
}

/// Puts the digits before @p end; answers where they start.
char* putDigits(char* end, std::uint64_t value, const FormatRadix& radix) {
    if (radix.bits != 0) {
        do *--end = radix.digits[value & ((1U << radix.bits) - 1)];
        while ((value >>= radix.bits) != 0);
        return end;
    }
    return putDecimal(end, value);
}

}  // namespace

bool formatInteger(FormatSink& sink, const FormatRequest& request, char sign, std::uint64_t value,
                   const FormatRadix& radix) {
    char room[kMaxDigits + 1];
    char* end = room + sizeof room;
    if (request.width == 0 && request.precision < 0 && !request.alternate) {
        // Just the number: written where it belongs if there is room.
        const int length = countDigits(value, radix) + (sign != '\0');
        if (!sink.claim(length)) return false;
        char* const place = sink.reserve(static_cast<std::size_t>(length));
        char* first = putDigits(place ? place + length : end, value, radix);
        if (sign != '\0') *--first = sign;
        if (!place) sink.write(first, static_cast<std::size_t>(length));
        return true;
    }

    char* const first = putDigits(end, value, radix);
    const int count = value == 0 && request.precision == 0 ? 0 : static_cast<int>(end - first);
    int zeros = request.precision > count ? request.precision - count : 0;
    FormatField field;
    field.prefix(sign);
    if (request.alternate && radix.prefix != '\0' && value != 0) {
        field.prefix('0');
        field.prefix(radix.prefix);
    }
    if (request.alternate && radix.bits == 3 && zeros == 0 && (count == 0 || value != 0)) zeros = 1;
    field.zeros(zeros);
    field.text(first, count);
    return field.emit(sink, request, request.precision < 0);
}

}  // namespace kora
