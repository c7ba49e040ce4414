#include "strings/TextSearch.h"

#include <algorithm>
#include <cstring>

#include "strings/Bytes.h"

namespace kora {
namespace {

struct Suffix {
    std::size_t start;
    std::size_t period;
};

// The greatest suffix of `text` in byte order, or in the reverse of it, and that suffix's period.
Suffix greatestSuffix(std::string_view text, bool reversed) {
    Suffix best{0, 1};
    std::size_t candidate = 1;
    std::size_t same = 0;
    while (candidate + same < text.size()) {
        const char a = text[candidate + same];
        const char b = text[best.start + same];
        if (a == b) {
            if (++same == best.period) {
                candidate += same;
                same = 0;
            }
        } else if ((signedByte(a) < signedByte(b)) != reversed) {
            candidate += same + 1;
            same = 0;
            best.period = candidate - best.start;
        } else {
            best = {candidate++, 1};
            same = 0;
        }
    }
    return best;
}

// Crochemore and Perrin's two-way search: the right part of `sought` is compared forwards, then the left part
// backwards, split where no shift can miss a match. A text that repeats itself remembers what is known to match.
std::size_t twoWaySearch(std::string_view text, std::string_view sought) {
    const Suffix up = greatestSuffix(sought, /*reversed=*/false);
    const Suffix down = greatestSuffix(sought, /*reversed=*/true);
    const auto [split, period] = up.start > down.start ? up : down;
    const std::size_t length = sought.size();
    const bool repeats = sought.substr(0, split) == sought.substr(period).substr(0, split);
    const std::size_t shift = repeats ? period : std::max(split, length - split) + 1;

    std::size_t known = 0;
    for (std::size_t at = 0; at + length <= text.size();) {
        const char* window = text.data() + at;
        std::size_t right = std::max(split, known);
        while (right < length && sought[right] == window[right]) ++right;
        if (right < length) {
            at += right - split + 1;
            known = 0;
            continue;
        }
        std::size_t left = split;
        while (left > known && sought[left - 1] == window[left - 1]) --left;
        if (left <= known) return at;
        at += shift;
        known = repeats ? length - period : 0;
    }
    return std::string_view::npos;
}

constexpr std::size_t kBlock = 32;
constexpr std::size_t kShort = 64;

// Whether one of kBlock places has byte `x` in `atX` and byte `y` in `atY`. Compilers make a few vector operations of
// it.
bool blockHolds(const char* atX, char x, const char* atY, char y) {
    unsigned char found = 0;
    for (std::size_t i = 0; i < kBlock; ++i) found |= static_cast<unsigned char>((atX[i] == x) & (atY[i] == y));
    return found != 0;
}

// For a text with a NUL behind it: the C library's search is written for the processor. It need not be linear, which a
// sought text of at most kShort bytes cannot show.
const char* findShort(const char* text, std::string_view sought) {
    char ended[kShort + 1];
    moveText(ended, sought.data(), sought.size());
    ended[sought.size()] = '\0';
    return std::strstr(text, ended);
}

}  // namespace

std::size_t findText(std::string_view text, bool ended, std::string_view sought) {
    if (sought.size() <= 1) return sought.empty() ? 0 : text.find(sought.front());
    if (text.size() < sought.size()) return std::string_view::npos;
    // Two bytes of the sought text, different ones where it has any, rule most places out.
    const char first = sought.front();
    const std::size_t different = sought.find_last_not_of(first);
    const std::size_t offset = different == std::string_view::npos ? sought.size() - 1 : different;
    const char second = sought[offset];

    // No match begins before the place where the second of them is next, and a rare byte leads straight to it.
    const char* const places = text.data();
    const std::size_t count = text.size() - sought.size() + 1;
    const void* const hit = std::memchr(places + offset, second, count);
    if (!hit) return std::string_view::npos;
    auto at = static_cast<std::size_t>(static_cast<const char*>(hit) - places) - offset;
    if (commonPrefix(text.substr(at), sought) == sought.size()) return at;
    if (ended && sought.size() <= kShort) {
        const char* const found = findShort(places + at + 1, sought);
        return found ? static_cast<std::size_t>(found - places) : std::string_view::npos;
    }

    std::size_t wasted = 0;
    while (at < count) {
        if (count - at >= kBlock && !blockHolds(places + at, first, places + at + offset, second)) {
            at += kBlock;
            continue;
        }
        for (const std::size_t end = std::min(at + kBlock, count); at < end; ++at) {
            if ((places[at] != first) | (places[at + offset] != second)) continue;
            const std::size_t common = commonPrefix(text.substr(at), sought);
            if (common == sought.size()) return at;
            wasted += common + 4;
        }
        // Where the two bytes deceive too often, the search that never looks back takes over.
        if (wasted > at + 64) {
            const std::size_t found = twoWaySearch(text.substr(at), sought);
            return found == std::string_view::npos ? found : at + found;
        }
    }
    return std::string_view::npos;
}

}  // namespace kora
