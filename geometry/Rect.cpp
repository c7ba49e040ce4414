#include <kora/Utl.h>

#include "geometry/Coordinates.h"

using namespace kora;

namespace {

bool fieldsEqual(const LRCT& a, const LRCT& b) {
    return a.top == b.top && a.left == b.left && a.bottom == b.bottom && a.right == b.right;
}

LRCT united(const LRCT& a, const LRCT& b) {
    if (isEmpty(a)) return isEmpty(b) ? LRCT{} : b;
    return isEmpty(b) ? a : boxAround(a, b);
}

// Side strips take the full height, top and bottom strips the full width: they overlap at the corners.
LRCT* writePiecesOutside(LRCT* out, const LRCT& r, const LRCT& s) {
    if (r.left < s.left && s.left < r.right) *out++ = {r.top, r.left, r.bottom, s.left};
    if (r.left < s.right && s.right < r.right) *out++ = {r.top, s.right, r.bottom, r.right};
    if (r.top < s.top && s.top < r.bottom) *out++ = {r.top, r.left, s.top, r.right};
    if (r.top < s.bottom && s.bottom < r.bottom) *out++ = {s.bottom, r.left, r.bottom, r.right};
    return out;
}

}  // namespace

UtlRect::UtlRect() : LRCT{}, valid(false) {}

UtlRect::UtlRect(const UtlRect&) = default;

UtlRect& UtlRect::operator=(const UtlRect&) = default;

UtlRect& UtlRect::operator=(LRCT& rect) {
    LRCT::operator=(rect);
    valid = true;
    return *this;
}

void UtlRect::Inset(long dh, long dv) {
    if (!valid) return;
    const std::int64_t across = static_cast<std::int32_t>(dh), down = static_cast<std::int32_t>(dv);
    LRCT::operator=({wrapped(top + down), wrapped(left + across), wrapped(bottom - down), wrapped(right - across)});
}

void UtlRect::PntToRect(LPNT a, LPNT b) {
    LRCT::operator=(spanned(a, b));
    valid = true;
}

void UtlRect::SetEmpty() {
    LRCT::operator=({});
    valid = true;
}

void UtlRect::SetValid(bool wanted) {
    if (!wanted) LRCT::operator=({});
    valid = wanted;
}

void UtlRect::Union(LRCT& rect) {
    if (isEmpty(rect)) return;
    LRCT::operator=(valid ? boxAround(*this, rect) : rect);
    valid = true;
}

void UtlRect::Union(UtlRect& rect) {
    if (!rect.valid) return;
    LRCT::operator=(valid ? boxAround(*this, rect) : rect);
    valid = true;
}

bool UtlRectIsEqual(LRCT* a, LRCT* b) { return (isEmpty(*a) && isEmpty(*b)) || fieldsEqual(*a, *b); }

bool UtlRectIntersect(LRCT* out, LRCT* a, LRCT* b) {
    *out = {std::max(a->top, b->top), std::max(a->left, b->left), std::min(a->bottom, b->bottom),
            std::min(a->right, b->right)};
    return !isEmpty(*out);
}

short UtlRectIntersectInvert(LRCT out[8], LRCT* a, LRCT* b) {
    const LRCT before = *a, after = *b;
    LRCT common;
    if (!UtlRectIntersect(&common, a, b)) {
        out[0] = before;
        out[1] = after;
        return 2;
    }
    LRCT* end = writePiecesOutside(out, before, after);
    end = writePiecesOutside(end, after, before);
    return static_cast<short>(end - out);
}

void UtlRectUnion(LRCT* out, LRCT* a, LRCT* b) { *out = united(*a, *b); }

void UtlRectUnion(LRCT& out, LRCT a, LRCT b) { out = united(a, b); }

void UtlRectUnionEmpties(LRCT* out, LRCT* a, LRCT* b) { *out = boxAround(*a, *b); }
