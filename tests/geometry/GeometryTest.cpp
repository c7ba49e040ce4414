#include <kora/Utl.h>

#include <gtest/gtest.h>

#include <bitset>
#include <cmath>
#include <cstring>
#include <random>

#include "core/TraceRing.h"

inline bool operator==(const LPNT& a, const LPNT& b) { return a.v == b.v && a.h == b.h; }
inline bool operator==(const LRCT& a, const LRCT& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

namespace {

using std::max, std::min;
using Wide = std::int64_t;  // what models reckon in, before they wrap
constexpr std::int32_t narrow(Wide value) { return static_cast<std::int32_t>(value); }
constexpr LPNT at(Wide v, Wide h) { return {narrow(v), narrow(h)}; }
constexpr LRCT box(Wide t, Wide l, Wide b, Wide r) { return {narrow(t), narrow(l), narrow(b), narrow(r)}; }

struct Geometry : testing::Test {
    std::mt19937 engine{20260731};
    std::int32_t below(std::int32_t end) { return narrow(engine() % static_cast<std::uint32_t>(end)); }
    std::int32_t any() {  // of every size, the outermost ones above all
        constexpr std::int32_t extremes[] = {INT32_MIN, INT32_MIN + 1, -1, 0, 1, INT32_MAX - 1, INT32_MAX};
        return below(2) ? extremes[below(7)] : below(2) ? below(41) - 20 : narrow(Wide(engine()));
    }
    LPNT point() { return {any(), any()}; }
    LRCT rect(std::int32_t end) { return {below(end), below(end), below(end), below(end)}; }
};

auto cellsOf(const LRCT& r) {
    std::bitset<144> cells;
    for (int i = 0; i < 144; ++i)
        cells[std::size_t(i)] = i / 12 >= r.top && i / 12 < r.bottom && i % 12 >= r.left && i % 12 < r.right;
    return cells;
}

TEST_F(Geometry, RectanglesAreSetsOfCells) {
    for (int run = 0; run < 20000; ++run) {
        LRCT r = rect(12), s = run % 9 ? rect(12) : r, out[8] = {s, r};
        const auto a = cellsOf(r), b = cellsOf(s);
        ASSERT_EQ(UtlRectIsEqual(&r, &s), a == b) << run;
        const int count = UtlRectIntersectInvert(out, &out[1], &out[0]);
        auto changed = a & ~a;
        for (int i = 0; i < count; ++i) changed |= cellsOf(out[i]);
        ASSERT_TRUE((a & b).any() ? changed == (a ^ b) : count == 2 && out[0] == r && out[1] == s) << run;
        const LRCT both = box(min(r.top, s.top), min(r.left, s.left), max(r.bottom, s.bottom), max(r.right, s.right));
        const LRCT joined = a.any() && b.any() ? both : a.any() ? r : b.any() ? s : LRCT{};
        UtlRectUnionEmpties(&(out[1] = r), &out[1], &s), UtlRectUnion(&(out[2] = s), &r, &out[2]);
        UtlRectUnion(out[3], r, s);
        ASSERT_TRUE(out[1] == both && out[2] == joined && out[3] == joined) << run;
        ASSERT_EQ(UtlRectIntersect(&(out[1] = r), &out[1], &s), (a & b).any()) << run;
        ASSERT_EQ(out[1], box(max(r.top, s.top), max(r.left, s.left), min(r.bottom, s.bottom), min(r.right, s.right)));
    }
    LRCT whole = {0, 0, 9, 9}, hole = {3, 2, 5, 7}, out[8];
    const LRCT pieces[] = {{0, 0, 9, 2}, {0, 7, 9, 9}, {0, 0, 3, 9}, {5, 0, 9, 9}};
    EXPECT_TRUE(UtlRectIntersectInvert(out, &whole, &hole) == 4 && std::equal(pieces, pieces + 4, out));
}

TEST_F(Geometry, AUtlRectGathersRectangles) {
    UtlRect rect, other;
    LRCT empty = {5, 5, 5, 9}, some = {1, 2, 3, 4}, all = {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX};
    rect.Inset(1, 1), rect.Union(empty), rect.Union(other);
    EXPECT_TRUE(!rect.valid && rect == LRCT{});
    rect.Union(some), rect.Inset(-1, -2), rect.Union(empty), other = empty, other.Union(some);
    EXPECT_TRUE(rect.valid && rect == (LRCT{-1, 1, 5, 5}) && other.valid && other == (LRCT{1, 2, 5, 9}));
    other.SetEmpty(), other.SetValid(true), rect.Union(other), other = rect, other.SetValid(false);
    EXPECT_TRUE(!other.valid && other == LRCT{} && rect == (LRCT{-1, 0, 5, 5}));
    other.PntToRect({7, -3}, {-2, 8}), rect = all, rect.Inset(-1, INT32_MIN);
    EXPECT_TRUE(other.valid && other == (LRCT{-2, -3, 7, 8}) && rect == (LRCT{0, INT32_MAX, -1, INT32_MIN}));
}

TEST_F(Geometry, CellsAreCountedColumnByColumn) {
    const auto cells = [](Wide length, Wide cell) { return static_cast<short>((length + cell - 1) / cell); };
    for (int run = 0; run < 20000; ++run) {
        LRCT outer = rect(40), cell = run % 4 ? rect(9) : outer;
        if (run % 2) outer = {any(), any(), any(), any()};
        const Wide height = Wide{cell.bottom} - cell.top, width = Wide{cell.right} - cell.left;
        const bool full = outer.bottom > outer.top && outer.right > outer.left && height > 0 && width > 0;
        const int rows = full ? cells(Wide{outer.bottom} - outer.top, height) : 0;
        const int columns = full ? cells(Wide{outer.right} - outer.left, width) : 0;
        short across, down, index = static_cast<short>(run % 3 ? below(50) - 5 : any());
        UtlRectSubRectCount(&outer, &cell, &across, &down);
        const bool hit = rows * columns != 0 && index < rows * columns;
        const Wide v = outer.top + (hit ? index % rows * height : 0), h = outer.left + (hit ? index / rows * width : 0);
        ASSERT_TRUE(across == columns && down == rows && UtlRectSubRectGet(&outer, &cell, index) == hit) << run;
        ASSERT_EQ(cell, box(v, h, v + height, h + width)) << run;
    }
}

// a * b / divisor bit by bit, in which nothing grows beyond 64 bits.
Wide scaled(Wide a, Wide b, Wide divisor) {
    Wide quotient = 0, rest = 0;
    for (int bit = 33; bit >= 0; rest %= std::abs(divisor), --bit) {
        rest = 2 * rest + (std::abs(a) >> bit & 1) * std::abs(b);
        quotient = 2 * quotient + rest / std::abs(divisor);
    }
    return ((a < 0) ^ (b < 0) ^ (divisor < 0)) ? -quotient : quotient;
}

TEST_F(Geometry, LinesAreHitWithinTheirBand) {
    for (int run = 0; run < 200000; ++run) {
        LPNT a = point(), b = run % 9 ? point() : a, p = point();
        const Wide tolerance = run % 7 ? below(5) : any(), dv = Wide{b.v} - a.v, dh = Wide{b.h} - a.h;
        const bool centred = run % 3 == 0, steep = std::abs(dv) > std::abs(dh), dot = dv == 0 && dh == 0;
        Wide line = a.v;
        if (!dot) line = steep ? a.h + scaled(Wide{p.v} - a.v, dh, dv) : a.v + scaled(Wide{p.h} - a.h, dv, dh);
        std::int32_t& across = steep ? p.h : p.v;  // to the border of the band, and one off
        across = narrow(line + tolerance * (below(4) - 1) + below(3) - 1);
        const Wide lower = centred || dot ? tolerance : 0, upper = dot ? tolerance - 1 : 2 * tolerance - lower;
        bool hit = line - lower <= across && across <= line + upper;
        if (dot) hit = hit && p.h >= a.h - lower && p.h <= a.h + upper;
        if (!dot && dv == 0) hit = hit && p.h >= min(a.h, b.h) && p.h <= max(a.h, b.h);
        if (!dot && dh == 0) hit = hit && p.v >= min(a.v, b.v) && p.v <= max(a.v, b.v);
        ASSERT_EQ(UtlLineHitTest(a, b, p, static_cast<long>(tolerance), centred), hit) << run;
    }
    for (short n = 0, root = 0; n < INT16_MAX; root = UtlSqrtFloor(++n))
        ASSERT_TRUE(root * root <= n && n < (root + 1) * (root + 1) && UtlSqrtFloor(static_cast<short>(-n)) == 0) << n;
}

LPNT anchorOf(LRCT r, int anchor, LPNT out = {}) { return UtlRectAnchorToPnt(&out, &r, eUtlAnchor(anchor)), out; }
LPNT turned(LPNT p, LPNT centre, int angle) { return UtlPntRotate(&p, p, centre, static_cast<short>(angle)), p; }

// How often a call filed this location at level 0, without data; -1 when it filed anything else.
template <class Call>
int filed(std::uint32_t location, Call call) {
    kora::TraceRing& ring = kora::traceRing = {};
    ring.recording = true;
    call();
    const auto times = std::count(ring.words, ring.words + 999, 1 << 18 | 38 << 12 | location);
    return narrow(ring.count) == 3 * times ? narrow(times) : -1;
}

TEST_F(Geometry, PointsTurnAndMoveModulo32Bits) {
    for (int run = 0; run < 20000; ++run) {
        const LPNT c = point(), p = point(), q = point();
        const Wide v = c.v, h = c.h, dv = p.v - v, dh = p.h - h;
        const LPNT a = at(v + dh, h - dv), b = turned(q, c, 270);
        ASSERT_TRUE(turned(p, c, 0) == p && turned(p, c, 90) == at(v - dh, h + dv)) << run;
        ASSERT_TRUE(turned(p, c, 180) == at(v - dv, h - dh) && turned(p, c, 270) == a) << run;
        LRCT r = {p.v, p.h, q.v, q.h}, out = r;
        UtlRectRotate(&out, &out, c, 270);
        ASSERT_EQ(out, box(min(a.v, b.v), min(a.h, b.h), max(a.v, b.v), max(a.h, b.h))) << run;
        const auto from = eUtlAnchor(below(10)), to = eUtlAnchor(below(10));
        const LPNT there = anchorOf(r, from), here = anchorOf(r, to);
        const Wide down = Wide{there.v} - here.v, over = Wide{there.h} - here.h;
        ASSERT_EQ(*UtlRectAnchorChange(&(out = r), &out, from, to),
                  box(p.v + down, p.h + over, q.v + down, q.h + over));
        ASSERT_EQ(anchorOf(r, 9), at((Wide{p.v} + q.v) / 2, (Wide{p.h} + q.h) / 2)) << run;
    }
    LRCT r = {4, 3, 2, 1};
    EXPECT_TRUE(filed(1920, [&] { UtlRectRotate(&r, &r, {9, 9}, 45); }) == 2 && r == (LRCT{2, 1, 4, 3}));
}

TEST_F(Geometry, AnchorsTurnAsTheirPointsDo) {
    const LRCT square = {-4, -4, 4, 4};
    const LPNT points[] = {{0, 0}, {0, -4}, {-4, 0}, {0, 4}, {4, 0}, {-4, -4}, {-4, 4}, {4, 4}, {4, -4}, {0, 0}};
    const int opposites[] = {3, 2, 2, 3, 4, 5, 6, 7, 11, 10, 10, 11};
    for (int i = -1; i <= 9; ++i) {
        auto out = eUtlAnchor(i);
        const LPNT p = points[i < 0 ? 0 : i];
        EXPECT_EQ(anchorOf(square, i), p) << i;
        for (const int angle : {0, 90, 180, 270, 45, -90, 360}) {
            EXPECT_EQ(filed(0, [&] { UtlAnchorRotate(&out, eUtlAnchor(i), static_cast<short>(angle)); }), 0);
            const auto turn = [&] { EXPECT_EQ(anchorOf(square, out), turned(p, {}, angle)) << i << ' ' << angle; };
            EXPECT_EQ(filed(1920, turn), angle < 0 || angle > 270 || angle == 45);
        }
        const LPNT taken[] = {turned(p, {}, 90), turned(p, {}, 270), turned(p, {}, 180), p,          {}, {}, {}, {},
                              {-p.h, -p.v},      {p.h, p.v},         {p.v, -p.h},        {-p.v, p.h}};
        for (int k = -1; k <= 12; ++k)
            for (const bool second : {false, true}) {
                const bool bad = k < 0 || k > 11;
                EXPECT_EQ(filed(1856, [&] { out = UtlAnchorRotate(eUtlAnchor(i), eUtlOrientation(k), second); }), bad);
                EXPECT_EQ(anchorOf(square, out), bad ? LPNT{} : taken[second ? opposites[k] : k]) << i << ' ' << k;
            }
    }
}

LPNT borderPoint(LRCT r, int angle, int extent = 0, LPNT end = {}, LPNT start = {}) {
    UtlArcAnglesToPoints(r, static_cast<short>(angle - extent), static_cast<short>(extent), end, start);
    return extent == 0 ? start : end;
}

TEST_F(Geometry, ArcsDivideASideByTheirTable) {
    int fractions[90], sum = 0;
    for (int k = 0; k < 90; ++k) {  // a turn ahead of the angles that have points of their own
        sum += fractions[k] = borderPoint({0, 0, 10000, 10000}, k - 405).h;
        const double tangent = 5000 * std::tan((k - 45) * std::acos(-1.0) / 180);  // and 46 away from the middle
        EXPECT_NEAR(fractions[k] - 5000, tangent + (k % 45 ? std::copysign(46, tangent) : 0), 4) << k;
        EXPECT_TRUE(k <= 45 || (fractions[k] + fractions[90 - k] + 1) / 2 == 5001) << k;
    }
    EXPECT_TRUE(fractions[0] == 0 && fractions[45] == 5000 && fractions[46] == 5132 && sum == 445058);
    const LRCT square = {0, 0, 10000, 10000},
               rects[] = {{0, 0, 99, 301}, {99, 301, 0, 0}, {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}};
    for (int a = -32000; a < 32000; ++a)  // the other sides are divided alike
        ASSERT_EQ(borderPoint(square, a + 90), turned(borderPoint(square, a), {5000, 5000}, 270)) << a;
    const int points[][4] = {
        {0, 180, 99, 151},       {0, -180, 99, 150}, {0, 630, 50, 0},       {0, 300, 20, 0},
        {1, 30, 99, 63},         {1, 210, 0, 238},   {2, 90, 0, INT32_MAX}, {2, 30, INT32_MIN, 1259284410},
        {2, -180, INT32_MAX, -1}};
    for (const auto& [rect, angle, v, h] : points) EXPECT_EQ(borderPoint(rects[rect], angle), at(v, h)) << angle;
    const int rows[][3] = {{10, 80, 90}, {10, 400, 370}, {10, -359, -349}, {10, -360, 370}, {32767, 359, -32410}};
    for (const auto& [start, extent, end] : rows)
        EXPECT_EQ(borderPoint(rects[0], start + extent, extent), borderPoint(rects[0], end)) << end;
}

}  // namespace
