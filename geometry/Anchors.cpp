#include <kora/Utl.h>

#include "core/FiledFaults.h"
#include "geometry/Coordinates.h"

using namespace kora;

namespace {

constexpr int kAnchors = 9;
constexpr int kOrientations = 12;

using AnchorTable = std::uint8_t[kAnchors][kOrientations];

// By anchor and orientation; 4 to 7 are no orientations of a picture.
constexpr AnchorTable turned = {
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},  // centre
    {4, 2, 3, 1, 0, 0, 0, 0, 4, 2, 3, 1},  // left
    {1, 3, 4, 2, 0, 0, 0, 0, 3, 1, 2, 4},  // top
    {2, 4, 1, 3, 0, 0, 0, 0, 2, 4, 1, 3},  // right
    {3, 1, 2, 4, 0, 0, 0, 0, 1, 3, 4, 2},  // bottom
    {8, 6, 7, 5, 0, 0, 0, 0, 7, 5, 6, 8},  // top left
    {5, 7, 8, 6, 0, 0, 0, 0, 6, 8, 5, 7},  // top right
    {6, 8, 5, 7, 0, 0, 0, 0, 5, 7, 8, 6},  // bottom right
    {7, 5, 6, 8, 0, 0, 0, 0, 8, 6, 7, 5},  // bottom left
};

// The same, where an anchor only ever stays or becomes the opposite one.
constexpr AnchorTable keptOrOpposite = {
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},  // centre
    {1, 3, 3, 1, 0, 0, 0, 0, 1, 3, 3, 1},  // left
    {2, 4, 4, 2, 0, 0, 0, 0, 4, 2, 2, 4},  // top
    {3, 1, 1, 3, 0, 0, 0, 0, 3, 1, 1, 3},  // right
    {4, 2, 2, 4, 0, 0, 0, 0, 2, 4, 4, 2},  // bottom
    {5, 7, 7, 5, 0, 0, 0, 0, 8, 6, 6, 8},  // top left
    {6, 8, 8, 6, 0, 0, 0, 0, 7, 5, 5, 7},  // top right
    {7, 5, 5, 7, 0, 0, 0, 0, 6, 8, 8, 6},  // bottom right
    {8, 6, 6, 8, 0, 0, 0, 0, 5, 7, 7, 5},  // bottom left
};

// Sides are 1 to 4 and corners 5 to 8, each with the clock: a quarter turn against it is one step back.
eUtlAnchor turnedBack(eUtlAnchor anchor, int quarterTurns) {
    if (anchor < UtlAnchorLeft || anchor > UtlAnchorBottomLeft) return anchor;
    const int first = anchor < UtlAnchorTopLeft ? UtlAnchorLeft : UtlAnchorTopLeft;
    return static_cast<eUtlAnchor>(first + (anchor - first + 4 - quarterTurns) % 4);
}

LPNT anchorPoint(const LRCT& r, eUtlAnchor anchor) {
    const std::int32_t v = middle(r.top, r.bottom), h = middle(r.left, r.right);
    switch (anchor) {
        case UtlAnchorLeft:
            return {v, r.left};
        case UtlAnchorTop:
            return {r.top, h};
        case UtlAnchorRight:
            return {v, r.right};
        case UtlAnchorBottom:
            return {r.bottom, h};
        case UtlAnchorTopLeft:
            return {r.top, r.left};
        case UtlAnchorTopRight:
            return {r.top, r.right};
        case UtlAnchorBottomRight:
            return {r.bottom, r.right};
        case UtlAnchorBottomLeft:
            return {r.bottom, r.left};
        default:
            return {v, h};
    }
}

}  // namespace

void UtlRectAnchorToPnt(LPNT* out, LRCT* r, eUtlAnchor anchor) { *out = anchorPoint(*r, anchor); }

LRCT* UtlRectAnchorChange(LRCT* out, LRCT* r, eUtlAnchor from, eUtlAnchor to) {
    const LPNT target = anchorPoint(*r, from), moved = anchorPoint(*r, to);
    const std::int64_t dv = std::int64_t{target.v} - moved.v, dh = std::int64_t{target.h} - moved.h;
    *out = {wrapped(r->top + dv), wrapped(r->left + dh), wrapped(r->bottom + dv), wrapped(r->right + dh)};
    return out;
}

eUtlAnchor UtlAnchorRotate(eUtlAnchor anchor, short angle) {
    const bool turns = angle == 90 || angle == 180 || angle == 270;
    return turns ? turnedBack(anchor, angle / 90) : anchor;
}

void UtlAnchorRotate(eUtlAnchor* out, eUtlAnchor anchor, short angle) { *out = UtlAnchorRotate(anchor, angle); }

eUtlAnchor UtlAnchorRotate(eUtlAnchor anchor, eUtlOrientation orientation, bool opposite) {
    if (orientation < 0 || orientation >= kOrientations) {
        fileFault(trace::kBadOrientation);
        return UtlAnchorCenter;
    }
    if (anchor < 0 || anchor >= kAnchors) return UtlAnchorCenter;
    return static_cast<eUtlAnchor>((opposite ? keptOrOpposite : turned)[anchor][orientation]);
}
