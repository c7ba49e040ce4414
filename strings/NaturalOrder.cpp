#include <kora/Str.h>

#include <cstdint>
#include <string_view>

#include "strings/Bytes.h"
#include "strings/SizedText.h"

using namespace kora;

namespace {

// The number at `at`, which is left behind its last digit. Wraps at 32 bits.
std::uint32_t readNumber(std::string_view text, std::size_t& at) {
    std::uint32_t number = 0;
    for (; at < text.size() && isDigit(text[at]); ++at) {
        number = number * 10 + static_cast<std::uint32_t>(text[at] - '0');
    }
    return number;
}

int compareNames(std::string_view a, std::string_view b, bool caseSensitive) {
    if (a.empty() || b.empty()) return static_cast<int>(a.empty()) - static_cast<int>(b.empty());

    // An equal beginning decides nothing, except that a number has to be read from its first digit.
    std::size_t i = commonPrefix(a, b);
    if (i == a.size() && i == b.size()) return 0;
    while (i > 0 && isDigit(a[i - 1])) --i;

    std::size_t j = i;
    while (i < a.size() && j < b.size()) {
        if (isDigit(a[i]) && isDigit(b[j])) {
            const std::uint32_t x = readNumber(a, i);
            const std::uint32_t y = readNumber(b, j);
            if (x != y) return x < y ? -1 : 1;
            continue;
        }
        const int x = signedByte(caseSensitive ? a[i++] : foldCase(a[i++]));
        const int y = signedByte(caseSensitive ? b[j++] : foldCase(b[j++]));
        if (x != y) return x < y ? -1 : 1;
    }
    if (i < a.size()) return 1;
    if (j < b.size()) return -1;
    return compareTexts(a, b);
}

}  // namespace

int StrCompareName(const char* a, int aSize, const char* b, int bSize, bool caseSensitive) {
    return compareNames(measuredText(a, aSize), measuredText(b, bSize), caseSensitive);
}
