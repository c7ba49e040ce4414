#include <kora/Utl.h>

#include "core/FiledFaults.h"
#include "geometry/Coordinates.h"

using namespace kora;

void UtlPntRotate(LPNT* out, LPNT p, LPNT centre, short angle) {
    const std::int64_t v = centre.v, h = centre.h, dv = p.v - v, dh = p.h - h;
    switch (angle) {
        case 0:
            *out = p;
            break;
        case 90:
            *out = {wrapped(v - dh), wrapped(h + dv)};
            break;
        case 180:
            *out = {wrapped(v - dv), wrapped(h - dh)};
            break;
        case 270:
            *out = {wrapped(v + dh), wrapped(h - dv)};
            break;
        default:
            fileFault(trace::kBadAngle);
            *out = p;
    }
}

void UtlRectRotate(LRCT* out, LRCT* r, LPNT centre, short angle) {
    LPNT a, b;
    UtlPntRotate(&a, {r->top, r->left}, centre, angle);
    UtlPntRotate(&b, {r->bottom, r->right}, centre, angle);
    *out = spanned(a, b);
}
