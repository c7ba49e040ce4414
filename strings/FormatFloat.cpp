#include "strings/FormatFloat.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cstring>

#include "strings/FormatDecimal.h"
#include "strings/FormatDigits.h"
#include "strings/FormatFixed.h"

namespace kora {

static_assert(DBL_MANT_DIG == 53 && DBL_MAX_EXP == 1024, "double has 64 bits");
static_assert(LDBL_MANT_DIG == 64 && LDBL_MAX_EXP == 16384, "long double has 80 bits");

namespace {

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

BinaryFloat::BinaryFloat(double value) : fractionBits(52) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const auto biased = static_cast<int>(bits >> 52 & 0x7FF);
    const std::uint64_t fraction = bits & 0xFFFFFFFFFFFFF;
    negative = bits >> 63 != 0;
    kind = biased != 0x7FF ? finite : fraction == 0 ? infinite : notANumber;
    mantissa = biased == 0 ? fraction : fraction | std::uint64_t{1} << 52;
    exponent = std::max(biased, 1) - 1023 - 52;
}

BinaryFloat::BinaryFloat(long double value) : fractionBits(60) {
    std::uint16_t top;
    std::memcpy(&mantissa, &value, sizeof mantissa);
    std::memcpy(&top, reinterpret_cast<const char*>(&value) + sizeof mantissa, sizeof top);
    const int biased = top & 0x7FFF;
    negative = top >> 15 != 0;
    kind = biased != 0x7FFF ? finite : mantissa << 1 == 0 ? infinite : notANumber;
    exponent = std::max(biased, 1) - 16383 - 63;
}

constexpr int kSmallRoom = 128;
constexpr int kDefaultPrecision = 6;

bool isUpper(const FormatRequest& request) { return request.conversion < 'a'; }
char lower(const FormatRequest& request) { return static_cast<char>(request.conversion | ' '); }

/// A letter, the sign and at least @p width digits, 1 or 2.
struct Exponent {
    Exponent(char letter, int exponent, int width) {
        char digits[8];
        char* const end = digits + sizeof digits;
        const auto magnitude = static_cast<std::uint32_t>(exponent < 0 ? -exponent : exponent);
        const char* const first = width == 2 && magnitude < 10 ? putPair(end, magnitude) : putDecimal(end, magnitude);
        text[0] = letter;
        text[1] = exponent < 0 ? '-' : '+';
        std::memcpy(text + 2, first, static_cast<std::size_t>(end - first));
        length = static_cast<int>(end - first) + 2;
    }

    char text[8];
    int length;
};

template <typename Out>
void write(Out& out, const char* text, int length) {
    if (length > 0) out.write(text, static_cast<std::size_t>(length));
}

template <typename Out>
void zeros(Out& out, int length) {
    if (length > 0) out.fill('0', static_cast<std::size_t>(length));
}

bool emitFixed(FormatSink& sink, const FormatRequest& request, char sign, Decimal decimal, int places) {
    const int whole = std::clamp(decimal.point, 0, decimal.count);
    const int leading = std::min(places, std::max(0, -decimal.point));
    const int digits = std::min(places - leading, decimal.count - whole);
    const bool point = places > 0 || request.has('#');
    const auto length = static_cast<std::uint64_t>(std::max(decimal.point, 1)) + point + static_cast<unsigned>(places);
    return emitField(sink, request, true, {sign}, 0, length, [=](auto& out) {
        if (decimal.point <= 0) out.put('0');
        write(out, decimal.digits, whole);
        zeros(out, decimal.point - whole);
        if (point) out.put('.');
        zeros(out, leading);
        write(out, decimal.digits + whole, digits);
        zeros(out, places - leading - digits);
    });
}

bool emitFixed(FormatSink& sink, const FormatRequest& request, char sign, FixedDecimal decimal, int places) {
    const bool point = places > 0 || request.has('#');
    const unsigned length = countDecimal(decimal.whole) + point + static_cast<unsigned>(places);
    const auto put = [=](char* end) {
        if (point) {
            // Zeros behind the point need a digit before them: it stands where the point belongs.
            end = putDecimal(end, kPowersOfTen.value[places] + decimal.fraction);
            *end = '.';
        }
        putDecimal(end, decimal.whole);
    };
    return emitField(sink, request, true, {sign}, 0, length, [=](auto& out) { out.made(length, put); });
}

bool emitScientific(FormatSink& sink, const FormatRequest& request, char sign, Decimal decimal, int places) {
    const bool zero = decimal.count == 0;
    const int digits = zero ? 0 : std::min(places, decimal.count - 1);
    const bool point = places > 0 || request.has('#');
    const Exponent exponent(isUpper(request) ? 'E' : 'e', zero ? 0 : decimal.point - 1, 2);
    const std::uint64_t length =
        std::uint64_t{1} + point + static_cast<unsigned>(places) + static_cast<unsigned>(exponent.length);
    return emitField(sink, request, true, {sign}, 0, length, [=, &exponent](auto& out) {
        out.put(zero ? '0' : decimal.digits[0]);
        if (point) out.put('.');
        write(out, decimal.digits + 1, digits);
        zeros(out, places - digits);
        write(out, exponent.text, exponent.length);
    });
}

/// The shorter of the two: fixed for exponents from -4 up to the precision, without zeros at the end.
bool emitGeneral(FormatSink& sink, const FormatRequest& request, char sign, Decimal decimal, int precision) {
    const int exponent = decimal.count == 0 ? 0 : decimal.point - 1;
    if (!request.has('#'))
        while (decimal.count > 0 && decimal.digits[decimal.count - 1] == '0') --decimal.count;
    if (exponent < -4 || exponent >= precision) {
        const int places = request.has('#') ? precision - 1 : decimal.count - 1;
        return emitScientific(sink, request, sign, decimal, places);
    }
    const int places = request.has('#') ? precision - 1 - exponent : std::max(0, decimal.count - decimal.point);
    return emitFixed(sink, request, sign, decimal, decimal.count == 0 && !request.has('#') ? 0 : places);
}

bool emitDecimal(FormatSink& sink, const FormatRequest& request, char sign, const BinaryFloat& number, DecimalCut cut,
                 char* room) {
    const Decimal decimal = decimalDigits(number.mantissa, number.exponent, cut, room);
    switch (lower(request)) {
        case 'f':
            return emitFixed(sink, request, sign, decimal, cut.digits);
        case 'e':
            return emitScientific(sink, request, sign, decimal, cut.digits - 1);
        default:
            return emitGeneral(sink, request, sign, decimal, cut.digits);
    }
}

/// Apart, so that only numbers of many digits pay for the room.
[[gnu::noinline]] bool emitLongDecimal(FormatSink& sink, const FormatRequest& request, char sign,
                                       const BinaryFloat& number, DecimalCut cut) {
    char room[kDecimalRoom];
    return emitDecimal(sink, request, sign, number, cut, room);
}

/// The first digit is 0 or 1 for a double and all four top bits for a long double; a number too small for a full
/// mantissa is not shifted up.
bool emitHexadecimal(FormatSink& sink, const FormatRequest& request, char sign, const BinaryFloat& number) {
    const char* const digit = isUpper(request) ? "0123456789ABCDEF" : "0123456789abcdef";
    std::uint64_t mantissa = number.mantissa;
    int exponent = mantissa == 0 ? 0 : number.exponent + number.fractionBits;
    int places = number.fractionBits / 4;
    unsigned lead = static_cast<unsigned>(mantissa >> number.fractionBits);
    mantissa &= (std::uint64_t{1} << number.fractionBits) - 1;

    if (request.precision >= 0 && request.precision < places) {
        const int dropped = 4 * (places - request.precision);
        const std::uint64_t rest = mantissa & ((std::uint64_t{1} << dropped) - 1);
        const std::uint64_t half = std::uint64_t{1} << (dropped - 1);
        places = request.precision;
        mantissa >>= dropped;
        const bool odd = ((places == 0 ? lead : mantissa) & 1) != 0;
        if (rest > half || (rest == half && odd)) ++mantissa;
        lead += static_cast<unsigned>(mantissa >> (4 * places));
        mantissa &= (std::uint64_t{1} << (4 * places)) - 1;
        if (lead == 16) lead = 1, exponent += 4;
    } else if (request.precision < 0) {
        for (; places > 0 && (mantissa & 15) == 0; mantissa >>= 4) --places;
    }

    char digits[16];
    for (int i = places; i-- > 0; mantissa >>= 4) digits[i] = digit[mantissa & 15];
    const bool point = places > 0 || request.precision > 0 || request.has('#');
    const int more = std::max(0, request.precision - places);
    const Exponent tail(isUpper(request) ? 'P' : 'p', exponent, 1);
    const FormatPrefix prefix{sign, isUpper(request) ? 'X' : 'x'};
    const std::uint64_t length = std::uint64_t{1} + point + static_cast<unsigned>(places) +
                                 static_cast<unsigned>(more) + static_cast<unsigned>(tail.length);
    return emitField(sink, request, true, prefix, 0, length, [=, &digits, &tail](auto& out) {
        out.put(digit[lead]);
        if (point) out.put('.');
        write(out, digits, places);
        zeros(out, more);
        write(out, tail.text, tail.length);
    });
}

/// Apart, so that it costs nothing where formatBinary() can do without.
[[gnu::noinline]] bool formatAny(FormatSink& sink, const FormatRequest& request, char sign, const BinaryFloat& number) {
    if (number.kind != BinaryFloat::finite) {
        const bool infinite = number.kind == BinaryFloat::infinite;
        const char* const name = isUpper(request) ? (infinite ? "INF" : "NAN") : (infinite ? "inf" : "nan");
        return emitField(sink, request, false, {sign}, 0, 3, [=](auto& out) { out.write(name, 3); });
    }
    const char conversion = lower(request);
    if (conversion == 'a') return emitHexadecimal(sink, request, sign, number);

    const int precision = request.precision < 0 ? kDefaultPrecision : request.precision;
    DecimalCut cut{conversion != 'f', precision};
    // The first digit of %e is one more; a precision that has no room for it has none for the number either.
    if (conversion == 'e' && precision == 0x7FFFFFFF) return false;
    if (conversion == 'e') ++cut.digits;
    if (conversion == 'g') cut.digits = std::max(precision, 1);
    if (decimalRoom(number.mantissa, number.exponent, cut) > kSmallRoom)
        return emitLongDecimal(sink, request, sign, number, cut);
    char room[kSmallRoom];
    return emitDecimal(sink, request, sign, number, cut, room);
}

bool formatBinary(FormatSink& sink, const FormatRequest& request, const BinaryFloat& number) {
    const char sign = request.sign(number.negative);
    if (lower(request) == 'f' && number.kind == BinaryFloat::finite && request.precision <= kMaxFixedPlaces) {
        const int places = request.precision < 0 ? kDefaultPrecision : request.precision;
        if (const auto decimal = fixedDecimal(number.mantissa, number.exponent, places))
            return emitFixed(sink, request, sign, *decimal, places);
    }
    return formatAny(sink, request, sign, number);
}

}  // namespace

bool formatFloat(FormatSink& sink, const FormatRequest& request, double value) {
    return formatBinary(sink, request, BinaryFloat(value));
}

bool formatFloat(FormatSink& sink, const FormatRequest& request, long double value) {
    return formatBinary(sink, request, BinaryFloat(value));
}

}  // namespace kora
