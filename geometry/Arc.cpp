#include <kora/Utl.h>

#include "geometry/Coordinates.h"

using namespace kora;

namespace {

// Where the ray at each degree from a corner meets the side, in ten-thousandths of the side. Not symmetric about the
// middle (4870 and 5132): kept drawings have these points.
constexpr std::int64_t sideFractions[90] = {
    0,    124,  290,  451,  607,  759,  905,  1048, 1187, 1322,  //
    1454, 1583, 1708, 1831, 1952, 2069, 2184, 2297, 2408, 2517,  //
    2625, 2730, 2834, 2936, 3037, 3137, 3235, 3332, 3428, 3523,  //
    3617, 3710, 3802, 3894, 3985, 4075, 4165, 4255, 4343, 4432,  //
    4520, 4607, 4695, 4783, 4870, 5000, 5132, 5219, 5306, 5394,  //
    5482, 5570, 5658, 5747, 5836, 5926, 6016, 6107, 6199, 6291,  //
    6384, 6478, 6573, 6669, 6766, 6865, 6964, 7065, 7168, 7271,  //
    7377, 7484, 7593, 7704, 7817, 7932, 8050, 8170, 8293, 8419,  //
    8547, 8679, 8815, 8954, 9096, 9243, 9394, 9550, 9711, 9878,
};

// The ray's distance from the side's beginning. Half a unit is added whatever the sign, and the division truncates.
std::int64_t along(int degreesFromCorner, std::int64_t length) {
    return (sideFractions[degreesFromCorner] * length + 5000) / 10000;
}

LPNT cornerOrMiddle(const LRCT& r, int eighth) {
    const std::int32_t v = wrapped(r.top + (height(r) + 1) / 2), h = wrapped(r.left + (width(r) + 1) / 2);
    switch (eighth) {
        case 0:
            return {r.top, h};
        case 1:
            return {r.top, r.right};
        case 2:
            return {v, r.right};
        case 3:
            return {r.bottom, r.right};
        case 4:
            return {r.bottom, h};
        case 5:
            return {r.bottom, r.left};
        case 6:
            return {v, r.left};
        default:
            return {r.top, r.left};
    }
}

LPNT borderPoint(const LRCT& r, short angle) {
    // As far as a start and an extent within one turn lead; elsewhere the table answers for these points too.
    if (angle >= 0 && angle <= 675 && angle % 45 == 0) return cornerOrMiddle(r, angle / 45 % 8);

    int fromCorner = static_cast<short>(angle + 45) % 360;
    if (fromCorner < 0) fromCorner += 360;
    const int degrees = fromCorner % 90;
    switch (fromCorner / 90) {
        case 0:
            return {r.top, wrapped(r.left + along(degrees, width(r)))};
        case 1:
            return {wrapped(r.top + along(degrees, height(r))), r.right};
        case 2:
            return {r.bottom, wrapped(r.right - along(degrees, width(r)))};
        default:
            return {wrapped(r.bottom - along(degrees, height(r))), r.left};
    }
}

}  // namespace

void UtlArcAnglesToPoints(LRCT& r, short start, short extent, LPNT& endPoint, LPNT& startPoint) {
    if (extent >= 360 || extent < -359) extent = 360;
    const LRCT rect = r;
    endPoint = borderPoint(rect, static_cast<short>(start + extent));
    startPoint = borderPoint(rect, start);
}
