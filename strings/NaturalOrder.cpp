#include <kora/Str.h>

#include <cstdint>
#include <string_view>

#include "strings/Bytes.h"
#include "strings/NaturalOrder.h"
#include "strings/SizedText.h"

using namespace kora;

namespace {

int compareNames(std::string_view a, std::string_view b, bool caseSensitive) {
    const int order = compareNatural<std::uint32_t>(
        a, b, [caseSensitive](char c) { return signedByte(caseSensitive ? c : foldCase(c)); });
    return order != 0 ? order : compareTexts(a, b);
}

}  // namespace

int StrCompareName(const char* a, int aSize, const char* b, int bSize, bool caseSensitive) {
    return compareNames(measuredText(a, aSize), measuredText(b, bSize), caseSensitive);
}
