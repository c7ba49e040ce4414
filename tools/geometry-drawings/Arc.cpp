#include "Drawings.h"

namespace kora::drawings {
namespace {

struct ArcPoints {
    LPNT end, start;
};

ArcPoints arcPoints(LRCT r, int start, int extent) {
    ArcPoints points;
    UtlArcAnglesToPoints(r, static_cast<short>(start), static_cast<short>(extent), points.end, points.start);
    return points;
}

LPNT borderPoint(const LRCT& r, int angle) { return arcPoints(r, angle, 0).start; }

struct Side {
    const char *dot, *text;
};

// The side a point falls on; a corner is the beginning of a side.
Side sideOf(const LRCT& r, LPNT p) {
    if (p.v == r.top && p.h < r.right) return {"blueDot", "blueText"};
    if (p.h == r.right && p.v < r.bottom) return {"redDot", "redText"};
    if (p.v == r.bottom && p.h > r.left) return {"greenDot", "greenText"};
    return {"orangeDot", "orangeText"};
}

void everyFifteenDegrees(Svg& svg) {
    const LRCT r = {0, 0, 160, 240};
    const LPNT middle = anchorPoint(r, UtlAnchorCenter);
    svg.rect(r, "grey");
    svg.ellipse(r, "ink");
    for (int angle = 0; angle < 360; angle += 15) {
        const LPNT p = borderPoint(r, angle);
        const Side side = sideOf(r, p);
        svg.line(middle, p, "grey thin");
        svg.dot(p, side.dot);
        const bool left = p.h == r.left, right = p.h == r.right;
        const std::string style = std::string(left ? "end small " : right ? "small " : "mid small ") + side.text;
        svg.text(moved(p,
                       p.v == r.top      ? -8
                       : p.v == r.bottom ? 17
                                         : 4,
                       left    ? -8
                       : right ? 8
                               : 0),
                 std::to_string(angle), style.c_str());
    }
}

void example(Svg& svg) {
    const int start = 30, extent = 105;
    const LRCT r = {0, 0, 160, 160};
    const LPNT middle = anchorPoint(r, UtlAnchorCenter);
    std::vector<LPNT> wedge = {middle};
    for (int angle = start; angle <= start + extent; ++angle) wedge.push_back(borderPoint(r, angle));
    const ArcPoints points = arcPoints(r, start, extent);
    svg.rect(r, "grey");
    svg.ellipse(r, "grey");
    svg.ellipseWithin(r, wedge, "blue bold");
    svg.line(middle, points.start, "ink dashed");
    svg.line(middle, points.end, "ink dashed");
    svg.dot(points.start, "redDot");
    svg.dot(points.end, "redDot");
    svg.text(moved(points.start, -9, 0), "start point", "mid");
    svg.text(moved(points.end, 18, 0), "end point", "mid");
    svg.text({200, 80}, "start 30, extent 105", "mid note");
}

}  // namespace

std::string arc() {
    Svg svg(640, 250);
    svg.moveTo({45, 60});
    everyFifteenDegrees(svg);
    svg.moveTo({35, 420});
    example(svg);
    return svg.file();
}

}  // namespace kora::drawings
