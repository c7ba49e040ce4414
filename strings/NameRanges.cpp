#include <kora/Str.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

#include "strings/Bytes.h"
#include "strings/Guarded.h"
#include "strings/NumberedNames.h"
#include "strings/SizedText.h"

using namespace kora;

namespace {

constexpr std::string_view kDots = "..";
constexpr std::uint64_t kCharactersEach = 256;
// By how many digits the two names of a range may differ: beyond that it could not be written out anyway.
constexpr std::size_t kMostLonger = 64;

/// The names from one to another that has the same prefix and suffix.
struct Range {
    std::string_view first, last;
    std::string_view prefix;  // with the digits that all names begin with
    std::string_view suffix;
    std::uint64_t from, to;
    std::size_t width;  // digits behind the prefix at least
    bool countable;     // false for numbers beyond 64 bits

    std::uint64_t distance() const { return from < to ? to - from : from - to; }
};

/// A name split at its last run of digits, which is taken whole.
NameParts splitAtRun(std::string_view name) {
    NameParts parts = splitName(name);
    std::size_t start = parts.prefix.size();
    if (parts.digits.empty()) return parts;
    while (start > 0 && isDigit(name[start - 1])) --start;
    parts.digits = name.substr(start, parts.prefix.size() - start + parts.digits.size());
    parts.prefix = name.substr(0, start);
    return parts;
}

bool numberIn(std::string_view digits, std::uint64_t& number) {
    return std::from_chars(digits.data(), digits.data() + digits.size(), number).ec == std::errc();
}

std::optional<Range> rangeOf(std::string_view first, std::string_view last) {
    constexpr std::string_view kBrackets = "[]";
    NameParts a = splitAtRun(first), b = splitAtRun(last);
    if (a.digits.empty() || b.digits.empty() || a.digits == b.digits) return std::nullopt;
    if (a.prefix != b.prefix || a.suffix != b.suffix) return std::nullopt;
    if (a.prefix.find_first_of(kBrackets) != a.prefix.npos || a.suffix.find_first_of(kBrackets) != a.suffix.npos)
        return std::nullopt;
    const std::size_t common = a.digits.size() == b.digits.size() ? commonPrefix(a.digits, b.digits) : 0;
    Range range{first, last, first.substr(0, a.prefix.size() + common), a.suffix, 0, 0, 0, true};
    a.digits.remove_prefix(common);
    b.digits.remove_prefix(common);
    range.width = std::min(a.digits.size(), b.digits.size());
    range.countable = numberIn(a.digits, range.from) && numberIn(b.digits, range.to);
    if (range.countable && range.from == range.to) return std::nullopt;
    return range;
}

/// The range that @p item is. Its dots stand about in the middle, since only the numbers can be of different length.
std::optional<Range> rangeIn(std::string_view item) {
    if (item.size() < kDots.size() + 2) return std::nullopt;
    const std::size_t names = item.size() - kDots.size();
    const std::size_t end = std::min((names + kMostLonger) / 2, names);
    for (std::size_t at = names > kMostLonger ? (names - kMostLonger) / 2 : 0; at <= end; ++at) {
        if (item.substr(at, kDots.size()) != kDots) continue;
        if (auto range = rangeOf(item.substr(0, at), item.substr(at + kDots.size()))) return range;
    }
    return std::nullopt;
}

/// Writes out what a list stands for, as long as the caller allows.
class NameWriter {
public:
    explicit NameWriter(unsigned int most) : most_(most), room_(most * kCharactersEach) {}

    bool add(std::string_view item) {
        if (names.size() >= most_) return false;
        const auto range = rangeIn(item);
        if (range) return addRange(*range);
        names.emplace_back(item);
        return true;
    }

    CStringArray names;

private:
    bool addRange(const Range& range) {
        const std::uint64_t distance = range.distance();
        if (!range.countable || distance >= most_ - names.size()) return false;
        const std::uint64_t characters = (distance + 1) * std::max(range.first.size(), range.last.size());
        if (characters > room_) return false;
        room_ -= characters;
        names.emplace_back(range.first);
        for (std::uint64_t i = 1; i < distance; ++i)
            addNumber(range, range.from < range.to ? range.from + i : range.from - i);
        names.emplace_back(range.last);
        return true;
    }

    void addNumber(const Range& range, std::uint64_t number) {
        char digits[20];
        const auto length = static_cast<std::size_t>(std::to_chars(digits, std::end(digits), number).ptr - digits);
        CString& name = names.emplace_back(range.prefix);
        if (length < range.width) name.append(range.width - length, '0');
        name.append(digits, length).append(range.suffix);
    }

    std::size_t most_;
    std::uint64_t room_;  // for characters of ranges
};

}  // namespace

bool StrExpandNameList(const CString& list, CStringArray& names, unsigned int most) {
    bool fits = true;
    stringState.error = !guarded([&] {
        NameWriter writer(most);
        const auto end = list.end();
        for (auto at = list.begin(); fits;) {
            at = std::find_if_not(at, end, isBlankOrControl);
            if (at == end) break;
            const auto begin = at;
            at = std::find_if(at, end, isBlankOrControl);
            fits = writer.add({begin, at});
        }
        // The list may be one of the names.
        if (fits) names.swap(writer.names);
    });
    return fits && !stringState.error;
}
