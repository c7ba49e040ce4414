#include "strings/FormatDecimal.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "strings/FormatDigits.h"

namespace kora {
namespace {

constexpr std::uint32_t kGroup = 1000000000;  // nine decimal digits, the most that a 32-bit word holds whole
constexpr int kGroupDigits = 9;
constexpr int kMaxWords = 516;  // 2^-16445 and 2^16384 in 32-bit words

void putGroup(char* at, std::uint32_t group) {
    char* end = at + kGroupDigits;
    for (int pair = 0; pair < kGroupDigits / 2; ++pair, group /= 100) end = putPair(end, group % 100);
    *at = static_cast<char>('0' + group);
}

/// Puts the digits of @p value, none for 0, and answers how many.
int putWhole(char* at, std::uint64_t value) {
    char digits[20];
    char* const end = digits + sizeof digits;
    const char* const first = value == 0 ? end : putDecimal(end, value);
    const auto length = end - first;
    std::memcpy(at, first, static_cast<std::size_t>(length));
    return static_cast<int>(length);
}

/// A fraction below 1 that hands out its decimal digits from the left.
class Fraction {
public:
    /// fraction / 2^bits, fraction < 2^bits.
    Fraction(std::uint64_t fraction, int bits) {
        if (bits == 0) return;
        last_ = (bits + 31) / 32;
        first_ = std::max(0, last_ - 3);
        const int shift = last_ * 32 - bits;
        const std::uint64_t low = fraction << shift;
        word_[last_ - 1] = static_cast<std::uint32_t>(low);
        if (last_ >= 2) word_[last_ - 2] = static_cast<std::uint32_t>(low >> 32);
        if (last_ >= 3) word_[last_ - 3] = shift ? static_cast<std::uint32_t>(fraction >> (64 - shift)) : 0;
        trim();
    }
    bool isZero() const { return first_ == last_; }
    /// The next nine digits.
    std::uint32_t next() {
        std::uint64_t carry = 0;
        for (int i = last_; i-- > first_;) {
            carry += static_cast<std::uint64_t>(word_[i]) * kGroup;
            word_[i] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        if (first_ > 0 && carry != 0) {
            word_[--first_] = static_cast<std::uint32_t>(carry);
            carry = 0;
        }
        trim();
        return static_cast<std::uint32_t>(carry);
    }

private:
    void trim() {
        while (last_ > first_ && word_[last_ - 1] == 0) --last_;
    }

    // Words behind the point, the first right behind it. Those outside [first_, last_) are zero.
    int first_ = 0;
    int last_ = 0;
    std::uint32_t word_[kMaxWords];
};

/// Digits of mantissa × 2^exponent, 2^64 and more.
int putLargeInteger(char* at, std::uint64_t mantissa, int exponent) {
    std::uint32_t word[kMaxWords];  // the last is the highest
    std::uint32_t group[kMaxWords * 32 / 29];
    const int skipped = exponent / 32;
    const int shift = exponent % 32;
    std::fill_n(word, skipped, 0U);
    const std::uint64_t low = mantissa << shift;
    word[skipped] = static_cast<std::uint32_t>(low);
    word[skipped + 1] = static_cast<std::uint32_t>(low >> 32);
    word[skipped + 2] = shift ? static_cast<std::uint32_t>(mantissa >> (64 - shift)) : 0;

    int groups = 0;
    for (int words = skipped + 3; words != 0;) {
        std::uint64_t rest = 0;
        for (int i = words; i-- > 0;) {
            rest = rest << 32 | word[i];
            word[i] = static_cast<std::uint32_t>(rest / kGroup);
            rest %= kGroup;
        }
        group[groups++] = static_cast<std::uint32_t>(rest);
        while (words != 0 && word[words - 1] == 0) --words;
    }
    char* end = at + putWhole(at, group[--groups]);
    for (; groups != 0; end += kGroupDigits) putGroup(end, group[--groups]);
    return static_cast<int>(end - at);
}

}  // namespace

int decimalRoom(std::uint64_t mantissa, int exponent, DecimalCut cut) {
    // One digit more for a carry, a group more to see what follows the cut.
    const int whole = exponent > 0 ? (64 + exponent) * 30103 / 100000 + 1 : 20;
    const int places = exponent < 0 ? -exponent - std::min(-exponent, std::countr_zero(mantissa)) : 0;
    const int wanted = std::min(cut.digits, places);
    return std::min(1 + whole + wanted + 2 * kGroupDigits, kDecimalRoom);
}

Decimal decimalDigits(std::uint64_t mantissa, int exponent, DecimalCut cut, char* room) {
    // Zeros at the end of the mantissa are worth nothing behind the point and cost words.
    const int zeros = exponent < 0 ? std::min(-exponent, mantissa ? std::countr_zero(mantissa) : 64) : 0;
    if (zeros != 0) mantissa = zeros < 64 ? mantissa >> zeros : 0, exponent += zeros;
    if (mantissa == 0) exponent = 0;

    char* const digits = room + 1;  // the place before is for a carry
    int count = 0;
    const int bits = std::max(0, -exponent);
    if (exponent > std::countl_zero(mantissa)) {
        count = putLargeInteger(digits, mantissa, exponent);
    } else {
        const std::uint64_t whole = exponent >= 0 ? mantissa << exponent : bits < 64 ? mantissa >> bits : 0;
        count = putWhole(digits, whole);
    }
    int point = count;
    Fraction fraction(bits < 64 ? mantissa & ((std::uint64_t{1} << bits) - 1) : mantissa, bits);

    const std::int64_t wanted = cut.significant ? cut.digits : static_cast<std::int64_t>(point) + cut.digits;
    while (count <= wanted && !fraction.isZero()) {
        const std::uint32_t group = fraction.next();
        if (cut.significant && count == 0) {
            count = putWhole(digits, group);
            point -= kGroupDigits - count;
        } else {
            putGroup(digits + count, group);
            count += kGroupDigits;
        }
    }
    if (count <= wanted) return {digits, count, point};

    const auto kept = static_cast<int>(wanted);
    const auto isZero = [](char c) { return c == '0'; };
    const bool more = !fraction.isZero() || !std::all_of(digits + kept + 1, digits + count, isZero);
    const bool odd = kept > 0 && (digits[kept - 1] - '0') % 2 != 0;
    const bool up = digits[kept] > '5' || (digits[kept] == '5' && (more || odd));
    count = kept;
    if (!up) return {digits, count, point};

    int last = count;
    while (last > 0 && digits[last - 1] == '9') digits[--last] = '0';
    if (last > 0) {
        ++digits[last - 1];
        return {digits, count, point};
    }
    room[0] = '1';
    return {room, cut.significant ? count : count + 1, point + 1};
}

}  // namespace kora
