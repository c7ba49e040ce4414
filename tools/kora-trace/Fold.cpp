#include "tools/kora-trace/Fold.h"

#include <algorithm>

namespace kora::tracelog {

namespace {

constexpr std::size_t kLongestSequence = 8;

bool equal(const Dump& dump, const Item& a, const Item& b) {
    if (a.kind != b.kind || a.size != b.size) return false;
    const auto words = dump.words.begin();
    return std::equal(words + static_cast<std::ptrdiff_t>(a.first),
                      words + static_cast<std::ptrdiff_t>(a.first + a.size),
                      words + static_cast<std::ptrdiff_t>(b.first));
}

}  // namespace

std::vector<Fold> fold(const Dump& dump, const std::vector<Item>& items) {
    std::vector<Fold> folds;
    std::size_t end = 0;  // of the items that follow each other without a gap
    for (std::size_t at = 0; at < items.size();) {
        if (at == end)
            while (++end < items.size() && !dump.gapBefore(items[end].first)) {
            }
        Fold best{at, 1, 1};
        // The shortest of the sequences that take in most. What was compared is taken in, or is short.
        for (std::size_t period = 1; period <= std::min(kLongestSequence, end - at); ++period) {
            std::size_t same = at;
            while (same + period < end && equal(dump, items[same], items[same + period])) ++same;
            const Fold found{at, period, 1 + (same - at) / period};
            const bool worthwhile = found.times > (period == 1 ? 1u : 2u);
            if (worthwhile && found.times * period > best.times * best.period) best = found;
        }
        folds.push_back(best);
        at += best.period * best.times;
    }
    return folds;
}

}  // namespace kora::tracelog
