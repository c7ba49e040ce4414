#include "strings/NumberedNames.h"

#include <kora/Str.h>

#include <cstdint>

#include "strings/Bytes.h"
#include "strings/Guarded.h"
#include "strings/SizedText.h"

using namespace kora;

namespace {

// The index behind the last digit, 0 when there is none.
std::size_t endOfDigits(std::string_view name) {
    std::size_t end = name.size();
    while (end > 0 && !isDigit(name[end - 1])) --end;
    return end;
}

void reportNumber(const NameParts& parts, int* number, int* digits) {
    if (number) *number = parts.number;
    if (digits) *digits = static_cast<int>(parts.digits.size());
}

}  // namespace

NameParts kora::splitName(std::string_view name) {
    constexpr std::size_t kMostDigits = 9;
    const std::size_t end = endOfDigits(name);
    std::size_t start = end;
    int number = 0;
    // The weight stops growing at 10000, so long numbers come out smaller than they read: 123456 is 33456. Name lists
    // are ordered by it.
    for (int weight = 1; start > 0 && isDigit(name[start - 1]) && end - start < kMostDigits; --start) {
        number += (name[start - 1] - '0') * weight;
        if (weight < 10000) weight *= 10;
    }
    return {name.substr(0, start), name.substr(start, end - start), name.substr(end), number};
}

void StrSplitName(const char* name, int size, char* prefix, int prefixSize, char* suffix, int suffixSize, int* number,
                  int* digits) {
    const NameParts parts = splitName(sizedText(name, size));
    const bool suffixFits = putText(suffix, roomOf(suffix, suffixSize), 0, parts.suffix);
    const bool prefixFits = putText(prefix, roomOf(prefix, prefixSize), 0, parts.prefix);
    stringState.error = !suffixFits || !prefixFits;
    reportNumber(parts, number, digits);
}

void StrSplitName(const CString& name, CString& prefix, CString& suffix, int* number, int* digits) {
    const NameParts parts = splitName(name);
    reportNumber(parts, number, digits);
    CString newPrefix, newSuffix;
    const bool made = guarded([&] {
        newPrefix = parts.prefix;
        newSuffix = parts.suffix;
    });
    stringState.error = !made;
    if (!made) newPrefix.clear();
    prefix.swap(newPrefix);
    suffix.swap(newSuffix);
}

void StrIncName(char* name, int size, int delta, bool keepWidth) {
    const std::size_t end = endOfDigits(measuredText(name, size));
    if (end == 0) {
        StrAppend("1", 1, name, size);
        return;
    }
    std::size_t start = end;
    auto carry = static_cast<std::uint32_t>(delta);
    for (; start > 0 && isDigit(name[start - 1]); --start) {
        // One carry per digit: a step beyond 9 leaves a byte that is no digit. The sum wraps.
        auto digit = static_cast<std::int32_t>(static_cast<std::uint32_t>(name[start - 1] - '0') + carry);
        carry = 0;
        if (digit > 9) {
            digit -= 10;
            carry = 1;
        } else if (digit < 0) {
            digit += 10;
            carry = static_cast<std::uint32_t>(-1);
        }
        name[start - 1] = static_cast<char>(static_cast<unsigned char>('0' + (digit & 0xFF)));
    }
    if (carry == 1) {
        StrInsert("1", 1, name, size, static_cast<int>(start));
    } else if (!keepWidth && name[start] == '0' && end - start > 1) {
        StrDelete(name, size, static_cast<int>(start), 1);
    }
}

void StrIncName(CString& name, int delta, bool keepWidth) {
    constexpr std::size_t kGrowth = 6;
    if (!guarded([&] { name.resize(name.size() + kGrowth); })) {
        stringState.error = true;
        return;
    }
    StrIncName(name.data(), static_cast<int>(name.size()), delta, keepWidth);
    name.resize(textUpTo(name.data(), name.size()).size());
}
