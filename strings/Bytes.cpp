#include "strings/Bytes.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace kora {

std::size_t commonPrefix(std::string_view a, std::string_view b) {
    const std::size_t shorter = std::min(a.size(), b.size());
    std::size_t at = 0;
    if constexpr (std::endian::native == std::endian::little) {
        for (; at + sizeof(std::uint64_t) <= shorter; at += sizeof(std::uint64_t)) {
            std::uint64_t fromA, fromB;
            std::memcpy(&fromA, a.data() + at, sizeof fromA);
            std::memcpy(&fromB, b.data() + at, sizeof fromB);
            if (fromA != fromB) return at + static_cast<std::size_t>(std::countr_zero(fromA ^ fromB)) / 8;
        }
    }
    while (at < shorter && a[at] == b[at]) ++at;
    return at;
}

int compareTexts(std::string_view a, std::string_view b) {
    const std::size_t at = commonPrefix(a, b);
    if (at == a.size()) return at == b.size() ? 0 : -1;
    if (at == b.size()) return 1;
    return signedByte(a[at]) < signedByte(b[at]) ? -1 : 1;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return foldCase(x) == foldCase(y); });
}

}  // namespace kora
