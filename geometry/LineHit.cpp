#include <kora/Utl.h>

#include <cmath>
#include <cstdlib>

#include "geometry/Coordinates.h"

using namespace kora;

namespace {

// Differences of coordinates take 33 bits and their product 66, so size and sign go separate ways.
std::uint64_t sizeOf(std::int64_t difference) { return static_cast<std::uint64_t>(std::abs(difference)); }

// a * b / divisor, truncated. |a * b| is below 2^64, and |b| is at most |divisor|.
std::int64_t scaled(std::int64_t a, std::int64_t b, std::int64_t divisor) {
    const auto size = static_cast<std::int64_t>(sizeOf(a) * sizeOf(b) / sizeOf(divisor));
    return ((a < 0) != (b < 0)) != (divisor < 0) ? -size : size;
}

bool between(std::int64_t low, std::int64_t value, std::int64_t high) { return low <= value && value <= high; }

bool betweenEnds(std::int32_t a, std::int32_t value, std::int32_t b) {
    return between(std::min(a, b), value, std::max(a, b));
}

}  // namespace

bool UtlLineHitTest(LPNT a, LPNT b, LPNT p, long tolerance, bool centred) {
    const std::int64_t reach = static_cast<std::int32_t>(tolerance);
    const std::int64_t dv = std::int64_t{b.v} - a.v, dh = std::int64_t{b.h} - a.h;
    // A line of no length is hit on both sides, centred or not.
    if (dv == 0 && dh == 0) return a.h - reach <= p.h && p.h < a.h + reach && a.v - reach <= p.v && p.v < a.v + reach;

    const std::int64_t lower = centred ? reach : 0, upper = centred ? reach : 2 * reach;
    const auto inBand = [&](std::int64_t line, std::int64_t value) {
        return between(line - lower, value, line + upper);
    };
    if (dv == 0) return inBand(a.v, p.v) && betweenEnds(a.h, p.h, b.h);
    if (dh == 0) return inBand(a.h, p.h) && betweenEnds(a.v, p.v, b.v);
    // Oblique lines have no ends here: callers rely on hits beyond them.
    if (std::abs(dv) > std::abs(dh)) return inBand(a.h + scaled(std::int64_t{p.v} - a.v, dh, dv), p.h);
    return inBand(a.v + scaled(std::int64_t{p.h} - a.h, dv, dh), p.v);
}

short UtlSqrtFloor(short n) { return n < 1 ? short{0} : static_cast<short>(std::sqrt(static_cast<double>(n))); }
