#include <kora/Str.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "strings/Bytes.h"
#include "strings/Guarded.h"
#include "strings/SizedText.h"

using namespace kora;

namespace {

constexpr std::size_t kMostSummedBits = 64;

bool isBit(char c) { return c == '0' || c == '1'; }

// What stands for bits that are not all known: 'z' when every unknown one is high impedance, 'x' otherwise, 0 when all
// are known.
char unknownDigit(std::string_view bits) {
    char digit = 0;
    for (const char c : bits) {
        if (isBit(c)) continue;
        if (c != 'Z') return 'x';
        digit = 'z';
    }
    return digit;
}

// The number that the bits make; unknown ones count as 0.
std::uint64_t sumOf(std::string_view bits) {
    std::uint64_t sum = 0;
    for (const char c : bits) sum = sum << 1 | (c == '1' ? 1U : 0U);
    return sum;
}

char digitOf(std::uint64_t value) { return "0123456789abcdefghijklmnopqrstuvwxyz"[value]; }

// How many bits make one digit when they are converted group by group, 0 when they are summed instead. Long values are
// grouped, and come out in hexadecimal unless the radix has groups of its own.
std::size_t groupBits(std::size_t bits, int radix) {
    switch (radix) {
        case 4:
            return 2;
        case 8:
            return 3;
        case 16:
            return 4;
        case 32:
            return 5;
        default:
            return bits > kMostSummedBits ? 4 : 0;
    }
}

// How many characters the destination must hold before a sum is written to it.
std::size_t roomForSum(std::size_t bits, int radix) {
    if (radix == 3) return bits + 1;
    if (radix <= 7) return bits / 2 + 1;
    if (radix <= 15) return bits / 3 + 1;
    if (radix <= 31) return bits / 4 + 1;
    return bits / 5 + 1;
}

// Source and destination may be the same: a digit is written when its bits have been read.
void writeGroups(std::string_view bits, std::size_t groupSize, char* dst, std::size_t room, bool upperCase) {
    std::size_t written = 0;
    while (!bits.empty() && written < room) {
        const std::size_t odd = bits.size() % groupSize;
        const std::string_view group = bits.substr(0, odd == 0 ? groupSize : odd);
        const char unknown = unknownDigit(group);
        const char digit = unknown ? unknown : digitOf(sumOf(group));
        dst[written++] = upperCase ? foldCase(digit) : digit;
        bits.remove_prefix(group.size());
    }
    if (written < room) dst[written] = '\0';
}

void writeSum(std::string_view bits, unsigned radix, char* dst, std::size_t room, bool upperCase) {
    char text[kMostSummedBits];
    char* const end = text + sizeof text;
    char* begin = end;
    const char unknown = unknownDigit(bits);
    std::uint64_t rest = sumOf(bits);
    do {
        const char digit = unknown ? unknown : digitOf(rest % radix);
        *--begin = upperCase ? foldCase(digit) : digit;
        rest /= radix;
    } while (rest > 0);
    putText(dst, room, 0, {begin, end});
}

void convert(std::string_view bits, char* dst, std::size_t room, int radix, bool upperCase) {
    if (radix < 2 || radix > 36) return;
    if (const std::size_t groupSize = groupBits(bits.size(), radix); groupSize > 0) {
        writeGroups(bits, groupSize, dst, room, upperCase);
    } else if (radix == 2) {
        if (bits.data() != dst) stringState.error = !putText(dst, room, 0, bits);
    } else if (room >= roomForSum(bits.size(), radix)) {
        writeSum(bits, static_cast<unsigned>(radix), dst, room, upperCase);
    }
}

}  // namespace

void StrBinaryStrToRadix(const char* src, int srcSize, char* dst, int size, int radix, bool upperCase) {
    if (!src || !dst || srcSize == 0 || size == 0) return;
    convert(measuredText(src, srcSize), dst, roomOf(dst, size), radix, upperCase);
}

CString StrBinaryStrToRadix(const CString& src, int radix, bool upperCase) {
    CString result;
    if (src.empty()) return result;
    stringState.error = !guarded([&] {
        result.resize(src.size() + 1);
        convert(src, result.data(), result.size(), radix, upperCase);
        result.resize(textUpTo(result.data(), result.size()).size());
    });
    return result;
}
