#include "geometry/FreeArea.h"

#include <compare>

#include "containers/HashIndex.h"
#include "strings/HashMix.h"

namespace kora {
namespace {

/// One of the places in which a node that is taken out stood.
struct Place {
    std::uint64_t number;
    UtlPlatformRect rect;
};

bool isSame(const UtlPlatformRect& a, const UtlPlatformRect& b) {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

std::uint32_t hashOf(const UtlPlatformRect& rect) {
    const auto pair = [](std::int32_t a, std::int32_t b) {
        return std::uint64_t{static_cast<std::uint32_t>(a)} << 32 | static_cast<std::uint32_t>(b);
    };
    return hashFinished(hashMixed(pair(rect.left, rect.top)) ^ pair(rect.right, rect.bottom));
}

std::uint64_t areaOf(const UtlPlatformRect& rect) {
    if (rect.left >= rect.right || rect.top >= rect.bottom) return 0;
    return static_cast<std::uint64_t>(std::int64_t{rect.right} - rect.left) *
           static_cast<std::uint64_t>(std::int64_t{rect.bottom} - rect.top);
}

/// A stretch of one coordinate, wider than any that is stored.
struct Stretch {
    std::int64_t begin, end;
};

/// Where a stretch of `length` lies in [low, high] when it is to be around `centre`. It is not longer than that.
Stretch placed(std::int32_t length, std::int64_t low, std::int64_t high, std::int64_t centre) {
    const std::int64_t half = (std::int64_t{length} + 1) / 2;
    std::int64_t begin = centre - half;
    if (begin < low)
        begin = low;
    else if (centre + half > high)
        begin = high - length;
    return {begin, begin + length};
}

/// A squared distance. Each offset has 32 bits and a sign, so the sum of their squares has 65 bits.
struct SquaredDistance {
    bool carry;
    std::uint64_t low;
    auto operator<=>(const SquaredDistance&) const = default;
};

SquaredDistance distance(const Stretch& across, const Stretch& down, std::int32_t h, std::int32_t v) {
    const auto square = [](const Stretch& stretch, std::int32_t to) {
        const std::int64_t offset = (stretch.begin + stretch.end) / 2 - to;
        return static_cast<std::uint64_t>(offset) * static_cast<std::uint64_t>(offset);
    };
    const std::uint64_t first = square(across, h), sum = first + square(down, v);
    return {sum < first, sum};
}

}  // namespace

void FreeArea::add(const UtlPlatformRect& rect) {
    nodes_.loose().push_back({rect, pushes_ + 1, pushes_ + 1});
    ++pushes_;
}

// The parts come to stand in the reverse order of the nodes they are cut from. So where a part stands first depends on
// where nodes stood last, and the other way round; the places between never matter, and the number of nodes stays
// small.
void FreeArea::subtract(const UtlPlatformRect& area) {
    nodes_.file();
    std::vector<Place> places;
    nodes_.takeOverlapping(area, [&](const RegionNode& node) {
        guarded([&] {
            places.push_back({node.newest, node.rect});
            if (node.oldest != node.newest) places.push_back({node.oldest, node.rect});
        });
    });
    if (places.empty()) return;

    // A part touches the area, so a node that equals one does.
    nodes_.loosenTouching(area);
    std::vector<RegionNode>& loose = nodes_.loose();
    HashIndex index;
    const auto findOrAdd = [&](const UtlPlatformRect& rect, std::size_t at) {
        return index.findOrAdd(
            hashOf(rect), [&](std::uint32_t other) { return isSame(loose[other].rect, rect); },
            static_cast<std::uint32_t>(at));
    };
    for (std::size_t at = 0; at < loose.size(); ++at)
        if (touches(area, loose[at].rect)) findOrAdd(loose[at].rect, at);

    const auto push = [&](const UtlPlatformRect& part) {
        ++pushes_;
        const std::uint32_t found = findOrAdd(part, loose.size());
        if (found == HashIndex::kNone)
            loose.push_back({part, pushes_, pushes_});
        else
            loose[found].newest = pushes_;
    };
    // From the head of the list; each part goes in front of everything.
    std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) { return a.number > b.number; });
    for (const auto& [number, node] : places) {
        if (node.top < area.top) push({node.left, node.top, node.right, area.top});
        if (node.left < area.left) push({node.left, node.top, area.left, node.bottom});
        if (node.bottom > area.bottom) push({node.left, area.bottom, node.right, node.bottom});
        if (node.right > area.right) push({area.right, node.top, node.right, node.bottom});
    }
}

std::optional<UtlPlatformRect> FreeArea::closest(std::int32_t width, std::int32_t height, std::int32_t h,
                                                 std::int32_t v) const {
    std::optional<UtlPlatformRect> best;
    SquaredDistance bestDistance{};
    std::uint64_t bestPlace = 0;
    nodes_.forEach([&](const RegionNode& node) {
        const std::int64_t left = node.rect.left, top = node.rect.top, right = node.rect.right,
                           bottom = node.rect.bottom;
        if (width > right - left || height > bottom - top) return;
        const Stretch across = placed(width, left, right, h), down = placed(height, top, bottom, v);
        const SquaredDistance here = distance(across, down, h, v);
        // Of equally good nodes the first in the list.
        if (best && (here > bestDistance || (here == bestDistance && node.newest < bestPlace))) return;
        best = {static_cast<std::int32_t>(across.begin), static_cast<std::int32_t>(down.begin),
                static_cast<std::int32_t>(across.end), static_cast<std::int32_t>(down.end)};
        bestDistance = here;
        bestPlace = node.newest;
    });
    return best ? best : largest();
}

std::optional<UtlPlatformRect> FreeArea::largest() const {
    const RegionNode* best = nullptr;
    std::uint64_t bestArea = 0;
    nodes_.forEach([&](const RegionNode& node) {
        const std::uint64_t here = areaOf(node.rect);
        if (here == 0 || here < bestArea || (here == bestArea && node.newest < best->newest)) return;
        best = &node;
        bestArea = here;
    });
    return best != nullptr ? std::optional(best->rect) : std::nullopt;
}

}  // namespace kora
