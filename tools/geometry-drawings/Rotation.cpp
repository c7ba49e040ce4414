#include "Drawings.h"

namespace kora::drawings {
namespace {

constexpr short kAngles[] = {0, 90, 180, 270};

std::string degrees(int angle) { return std::to_string(angle) + "&#176;"; }

LRCT turnedRect(LRCT r, LPNT centre, short angle) {
    UtlRectRotate(&r, &r, centre, angle);
    return r;
}

// A point and a rectangle, turned about a centre.
void about(Svg& svg) {
    const LPNT centre = {0, 0}, point = {0, 100};
    const LRCT rect = {-46, 32, -16, 78};
    svg.ellipse({-100, -100, 100, 100}, "grey dashed");
    for (const short angle : kAngles) {
        const LPNT p = turned(point, centre, angle);
        svg.line(centre, p, "grey");
        svg.dot(p, "redDot");
        const bool sideways = p.v == centre.v;
        svg.text(moved(p,
                       sideways  ? 4
                       : p.v < 0 ? -10
                                 : 20,
                       sideways ? (p.h < 0 ? -10 : 10) : 0),
                 degrees(angle), sideways ? (p.h < 0 ? "end redText" : "redText") : "mid redText");

        const LRCT r = turnedRect(rect, centre, angle);
        svg.rect(r, "tint");
        svg.rect(r, "blue");
        svg.text(moved(anchorPoint(r, UtlAnchorCenter), 4, 0), degrees(angle), "mid blueText");
    }
    svg.turnArrow({-27, 115}, {-115, 27}, 118);
    svg.cross(centre, "ink");
}

// Each anchor of a rectangle, and the same numbers where they are after a quarter turn.
void anchorsTurned(Svg& svg) {
    const LRCT before = {-32, -55, 32, 55};
    const LPNT away = {0, 190};
    const LRCT turned90 = turnedRect(before, {0, 0}, 90);
    const LRCT after = {turned90.top + away.v, turned90.left + away.h, turned90.bottom + away.v,
                        turned90.right + away.h};
    for (const LRCT& r : {before, after}) {
        svg.rect(r, "pale");
        svg.rect(r, "ink");
    }
    for (int i = 0; i <= 8; ++i) {
        const auto anchor = static_cast<eUtlAnchor>(i);
        const LPNT from = anchorPoint(before, anchor), to = anchorPoint(after, UtlAnchorRotate(anchor, 90));
        const char* style = i == UtlAnchorLeft || i == UtlAnchorTopLeft ? "redDot" : "inkDot";
        for (const LPNT& p : {from, to}) {
            const LPNT middle = anchorPoint(p.h == from.h && p.v == from.v ? before : after, UtlAnchorCenter);
            svg.dot(p, style);
            svg.text(moved(p,
                           p.v < middle.v   ? -8
                           : p.v > middle.v ? 17
                                            : 4,
                           p.h < middle.h ? -12 : 12),
                     std::to_string(i), "mid");
        }
    }
    svg.arrow({0, 78}, {0, 128});
    svg.text({-10, 103}, "90&#176;", "mid");
}

}  // namespace

LPNT turned(LPNT p, LPNT centre, short angle) {
    UtlPntRotate(&p, p, centre, angle);
    return p;
}

std::string rotation() {
    Svg svg(640, 280);
    svg.moveTo({140, 160});
    about(svg);
    svg.moveTo({140, 395});
    anchorsTurned(svg);
    return svg.file();
}

}  // namespace kora::drawings
