#include "Drawings.h"

namespace kora::drawings {
namespace {

constexpr const char* kNames[] = {"Center",  "Left",     "Top",         "Right",     "Bottom",
                                  "TopLeft", "TopRight", "BottomRight", "BottomLeft"};

constexpr eUtlAnchor anchorOf(int number) { return static_cast<eUtlAnchor>(number); }

std::string named(int anchor) { return std::to_string(anchor) + ' ' + kNames[anchor]; }

// Text beside a point of a rectangle, on the side away from the middle.
void textOutside(Svg& svg, LPNT p, LPNT middle, const std::string& text) {
    const bool above = p.v<middle.v, below = p.v> middle.v;
    const char* style = p.h < middle.h ? "end" : p.h > middle.h ? "" : "mid";
    const std::int32_t right = p.h < middle.h ? -9 : p.h > middle.h ? 9 : 0;
    svg.text(moved(p, above ? -9 : below ? 18 : right == 0 ? -9 : 4, right), text, style);
}

void axes(Svg& svg) {
    svg.arrow({0, 0}, {0, 46});
    svg.arrow({0, 0}, {46, 0});
    svg.text({4, 52}, "h", "");
    svg.text({60, 0}, "v", "mid");
}

}  // namespace

LPNT anchorPoint(LRCT r, eUtlAnchor anchor) {
    LPNT p;
    UtlRectAnchorToPnt(&p, &r, anchor);
    return p;
}

std::string anchors() {
    Svg svg(600, 210);
    svg.moveTo({24, 24});
    axes(svg);
    svg.moveTo({34, 190});
    const LRCT r = {0, 0, 140, 260};
    const LPNT middle = anchorPoint(r, UtlAnchorCenter);
    svg.rect(r, "pale");
    svg.rect(r, "ink");
    for (int i = 0; i <= 8; ++i) {
        const LPNT p = anchorPoint(r, anchorOf(i));
        svg.dot(p, "blueDot");
        textOutside(svg, p, middle, named(i));
    }
    return svg.file();
}

std::string orientations() {
    struct Picture {
        eUtlOrientation orientation;
        const char* title;
    };
    constexpr Picture pictures[] = {
        {UtlOrientationRotate90, "0: 90 degrees"},
        {UtlOrientationRotate270, "1: 270 degrees"},
        {UtlOrientationRotate180, "2: 180 degrees"},
        {UtlOrientationUnchanged, "3: as it is"},
        {UtlOrientationMirrorRising, "8: rising diagonal"},
        {UtlOrientationMirrorFalling, "9: falling diagonal"},
        {UtlOrientationMirrorLeftRight, "10: left and right"},
        {UtlOrientationMirrorTopBottom, "11: top and bottom"},
    };
    constexpr std::int32_t kHalf = 36;
    constexpr LRCT kFrame = {-kHalf, -kHalf, kHalf, kHalf};
    constexpr LPNT kLetter[] = {{-28, -20}, {-28, 22}, {-16, 22}, {-16, -6}, {-4, -6},
                                {-4, 12},   {8, 12},   {8, -6},   {28, -6},  {28, -20}};

    Svg svg(640, 330);
    int place = 0;
    for (const Picture& picture : pictures) {
        svg.moveTo({place / 4 * 165 + 80, place % 4 * 160 + 80});
        ++place;
        const auto taken = [&](eUtlAnchor anchor, bool opposite) {
            return UtlAnchorRotate(anchor, picture.orientation, opposite);
        };
        // The whole picture goes where the right and the bottom anchor go.
        const LPNT right = anchorPoint(kFrame, taken(UtlAnchorRight, false));
        const LPNT bottom = anchorPoint(kFrame, taken(UtlAnchorBottom, false));
        std::vector<LPNT> letter;
        for (const LPNT& p : kLetter)
            letter.push_back({(p.v * bottom.v + p.h * right.v) / kHalf, (p.v * bottom.h + p.h * right.h) / kHalf});

        svg.text({-52, 0}, picture.title, "title mid");
        svg.rect(kFrame, "pale");
        svg.rect(kFrame, "grey");
        svg.polygon(letter, "tint");
        svg.polygon(letter, "blue");
        const eUtlAnchor corner = taken(UtlAnchorTopLeft, false);
        svg.dot(anchorPoint(kFrame, corner), "redDot");
        svg.text({54, 0}, "5 &#8594; " + named(corner), "mid redText");
        svg.text({69, 0}, "with true: " + named(taken(UtlAnchorTopLeft, true)), "mid note small");
    }
    return svg.file();
}

}  // namespace kora::drawings
