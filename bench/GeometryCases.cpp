#include <kora/Utl.h>

#include <algorithm>

#include "bench/Cases.h"

namespace kora::bench {

namespace {

constexpr int kSide = 100000;

std::vector<UtlPlatformRect> parts(long count) {
    Random random;
    std::vector<UtlPlatformRect> all;
    for (long i = 0; i < count; ++i) {
        const int width = 1 + static_cast<int>(random.below(1400)), height = 1 + static_cast<int>(random.below(1400));
        const int left = static_cast<int>(random.below(static_cast<unsigned>(kSide - width)));
        const int top = static_cast<int>(random.below(static_cast<unsigned>(kSide - height)));
        all.push_back({left, top, left + width, top + height});
    }
    return all;
}

bool overlap(const UtlPlatformRect& a, const UtlPlatformRect& b) {
    return a.left < b.right && a.right > b.left && a.top < b.bottom && a.bottom > b.top;
}

bool inside(const UtlPlatformRect& a, const UtlPlatformRect& b) {
    return a.left >= b.left && a.top >= b.top && a.right <= b.right && a.bottom <= b.bottom;
}

/// The free rectangles that no other holds: what most would write first.
class MaximalRects {
public:
    MaximalRects() : free_{{0, 0, kSide, kSide}} {}

    void sub(const UtlPlatformRect& r) {
        std::vector<UtlPlatformRect> pieces;
        const auto kept = std::remove_if(free_.begin(), free_.end(), [&](const UtlPlatformRect& n) {
            if (!overlap(r, n)) return false;
            if (n.top < r.top) pieces.push_back({n.left, n.top, n.right, r.top});
            if (n.left < r.left) pieces.push_back({n.left, n.top, r.left, n.bottom});
            if (n.bottom > r.bottom) pieces.push_back({n.left, r.bottom, n.right, n.bottom});
            if (n.right > r.right) pieces.push_back({r.right, n.top, n.right, n.bottom});
            return true;
        });
        free_.erase(kept, free_.end());
        for (const UtlPlatformRect& piece : pieces) {
            if (std::any_of(free_.begin(), free_.end(), [&](const auto& other) { return inside(piece, other); }))
                continue;
            std::erase_if(free_, [&](const auto& other) { return inside(other, piece); });
            free_.push_back(piece);
        }
    }
    std::size_t count() const { return free_.size(); }

private:
    std::vector<UtlPlatformRect> free_;
};

}  // namespace

void addGeometryCases() {
    const Sizes kCounts = {500, 1000, 2000};
    measure("region_subtract_2k", "kora", kCounts, [](benchmark::State& state, long count) {
        const std::vector<UtlPlatformRect> all = parts(count);
        for (auto _ : state) {
            UtlRectRegion region;
            region.Add(0, 0, kSide, kSide);
            for (const UtlPlatformRect& r : all) region.Sub(r.left, r.top, r.right, r.bottom);
            UtlPlatformRect largest;
            benchmark::DoNotOptimize(region.GetLargest(largest));
        }
    });
    measure("region_subtract_2k", "naive_maximal_vector", kCounts, [](benchmark::State& state, long count) {
        const std::vector<UtlPlatformRect> all = parts(count);
        for (auto _ : state) {
            MaximalRects region;
            for (const UtlPlatformRect& r : all) region.sub(r);
            benchmark::DoNotOptimize(region.count());
        }
    });
}

}  // namespace kora::bench
