#include <algorithm>

#include "Drawings.h"

namespace kora::drawings {
namespace {

constexpr LRCT kArea = {0, 0, 150, 210};
constexpr LRCT kTaken[] = {{22, 28, 66, 84}, {44, 124, 88, 182}, {98, 56, 130, 104}};

UtlRectRegion regionOfArea() {
    UtlRectRegion region;
    LRCT area = kArea;
    region.Add(area);
    for (LRCT taken : kTaken) region.Sub(taken);
    return region;
}

bool equal(LRCT a, LRCT b) { return UtlRectIsEqual(&a, &b); }

bool contains(LRCT outer, LRCT inner) {
    LRCT common;
    UtlRectIntersect(&common, &outer, &inner);
    return equal(common, inner);
}

// A box is free when the place found for it, with its own centre wanted, is where it is.
bool isFree(UtlRectRegion& region, LRCT box) {
    const LPNT centre = anchorPoint(box, UtlAnchorCenter);
    LRCT place;
    return region.GetClosest(place, box.right - box.left, box.bottom - box.top, centre.h, centre.v) &&
           equal(place, box);
}

// The free rectangles that no other free one contains. Their sides are sides of the area or of what was taken out.
std::vector<LRCT> largestFree(UtlRectRegion& region) {
    std::vector<std::int32_t> vs = {kArea.top, kArea.bottom}, hs = {kArea.left, kArea.right};
    for (const LRCT& taken : kTaken) {
        vs.insert(vs.end(), {taken.top, taken.bottom});
        hs.insert(hs.end(), {taken.left, taken.right});
    }
    std::sort(vs.begin(), vs.end());
    std::sort(hs.begin(), hs.end());
    std::vector<LRCT> free;
    for (const std::int32_t top : vs)
        for (const std::int32_t left : hs)
            for (const std::int32_t bottom : vs)
                for (const std::int32_t right : hs)
                    if (top < bottom && left < right && isFree(region, {top, left, bottom, right}))
                        free.push_back({top, left, bottom, right});
    std::vector<LRCT> largest;
    for (const LRCT& one : free)
        if (std::none_of(free.begin(), free.end(),
                         [&](const LRCT& other) { return !equal(one, other) && contains(other, one); }))
            largest.push_back(one);
    return largest;
}

void area(Svg& svg) {
    svg.rect(kArea, "pale");
    for (const LRCT& taken : kTaken) svg.rect(taken, "solid");
    svg.rect(kArea, "ink");
}

}  // namespace

std::string region() {
    UtlRectRegion region = regionOfArea();
    const std::vector<LRCT> free = largestFree(region);
    constexpr int kColumns = 6;
    Svg svg(650, 220 + 86 * static_cast<int>((free.size() + kColumns - 1) / kColumns));

    svg.moveTo({32, 70});
    svg.text({-12, 105}, "the largest free rectangle", "title mid");
    area(svg);
    LRCT found;
    if (region.GetLargest(found)) svg.rect(found, "glow");

    svg.moveTo({32, 370});
    svg.text({-12, 105}, "the place for a box, nearest to the cross", "title mid");
    area(svg);
    const LPNT wanted = {52, 140};
    if (region.GetClosest(found, 40, 30, wanted.h, wanted.v)) {
        svg.rect(found, "tint");
        svg.rect(found, "blue");
    }
    svg.cross(wanted, "red");

    svg.moveTo({0, 0});
    svg.text({208, 325}, "every free rectangle that lies in no other one", "title mid");
    int panel = 0;
    for (const LRCT& one : free) {
        svg.moveTo({220 + panel / kColumns * 86, 20 + panel % kColumns * 104}, 45);
        area(svg);
        svg.rect(one, "glow");
        ++panel;
    }
    return svg.file();
}

}  // namespace kora::drawings
