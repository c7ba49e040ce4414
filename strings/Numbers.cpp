#include <kora/Str.h>

#include <cstdint>
#include <string_view>

#include "strings/Bytes.h"
#include "strings/SizedText.h"

using namespace kora;

namespace {

// What a digit stands for in any radix; a value that no radix has for everything else.
unsigned digitValue(char c) {
    if (isDigit(c)) return static_cast<unsigned>(c - '0');
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
    return 16;
}

// Reads "  -7", "1010B", "1FH". Lower-case letters are neither digits nor radix marks: "1fh" is 1.
std::uint64_t parseNumber(std::string_view text) {
    const std::size_t start = text.find_first_not_of(' ');
    if (start == std::string_view::npos) return 0;
    std::string_view word = text.substr(start, text.find(' ', start) - start);
    unsigned radix = 10;
    if (word.back() == 'H') radix = 16;
    if (word.back() == 'B') radix = 2;
    if (radix != 10) word.remove_suffix(1);

    const bool negative = !word.empty() && word.front() == '-';
    if (negative) word.remove_prefix(1);
    std::uint64_t value = 0;
    for (const char c : word) {
        const unsigned digit = digitValue(c);
        if (digit >= radix) break;
        value = value * radix + digit;
    }
    return negative ? 0 - value : value;
}

}  // namespace

void StrInt2Dec(long value, bool zeroPadded, char* dst, int size) {
    char text[32];
    Strsprintf(text, zeroPadded ? "%05i" : "%i", static_cast<int>(value));
    StrAssign(text, sizeof text, dst, size);
}

int StrDec2Int(const char* text, int size) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(parseNumber(measuredText(text, size))));
}

std::int64_t StrDec2Int64(const char* text, int size) {
    return static_cast<std::int64_t>(parseNumber(measuredText(text, size)));
}
