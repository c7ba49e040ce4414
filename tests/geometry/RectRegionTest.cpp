#include <gtest/gtest.h>
#include <kora/Utl.h>

#include <array>
#include <list>
#include <memory>
#include <optional>
#include <random>

#include "tests/support/AllocationFault.h"

namespace {

using Rect = UtlPlatformRect;
using Wide = std::int64_t;
using U = std::uint64_t;
bool overlap(Rect a, Rect b) { return a.left < b.right && a.right > b.left && a.top < b.bottom && a.bottom > b.top; }

// The list as it is told: every node, head first.
struct Model {
    std::list<Rect> nodes;
    void sub(const Rect& r) {
        for (auto at = nodes.begin(); at != nodes.end();) {
            const Rect n = *at++;
            if (!overlap(r, n)) continue;
            nodes.erase(std::prev(at));
            if (n.top < r.top) nodes.push_front({n.left, n.top, n.right, r.top});
            if (n.left < r.left) nodes.push_front({n.left, n.top, r.left, n.bottom});
            if (n.bottom > r.bottom) nodes.push_front({n.left, r.bottom, n.right, n.bottom});
            if (n.right > r.right) nodes.push_front({r.right, n.top, n.right, n.bottom});
        }
    }
    std::optional<Rect> largest() const {
        std::optional<Rect> best;
        U most = 0;
        for (const Rect& n : nodes) {
            const bool empty = n.left >= n.right || n.top >= n.bottom;
            const U area = empty ? 0 : U(Wide{n.right} - n.left) * U(Wide{n.bottom} - n.top);
            if (area > most) best = n, most = area;
        }
        return best;
    }
    static Wide begin(Wide size, Wide low, Wide high, Wide at) {
        const Wide half = (size + 1) / 2;
        return at - half < low ? low : at + half > high ? high - size : at - half;
    }
    std::optional<Rect> closest(int width, int height, int h, int v) const {
        std::optional<Rect> best;
        std::pair<U, U> nearest;  // half the squared distance, and what is left of it
        for (const Rect& n : nodes) {
            if (width > Wide{n.right} - n.left || height > Wide{n.bottom} - n.top) continue;
            const Wide left = begin(width, n.left, n.right, h), top = begin(height, n.top, n.bottom, v);
            const auto dh = U((2 * left + width) / 2 - h), dv = U((2 * top + height) / 2 - v);
            const U a = dh * dh, b = dv * dv;
            const std::pair here(a / 2 + b / 2 + (a & b & 1), (a ^ b) & 1);
            if (best && here >= nearest) continue;
            best = {int(left), int(top), int(left + width), int(top + height)}, nearest = here;
        }
        return best ? best : largest();
    }
};

void expectFound(const std::optional<Rect>& expected, auto&& get) {
    const auto fields = [](const auto& of) { return std::array{of.left, of.top, of.right, of.bottom}; };
    Rect r = {11, 12, 13, 14};
    LRCT lrct = {12, 11, 14, 13};
    const Rect wanted = expected.value_or(r);
    ASSERT_TRUE(get(r) == expected.has_value() && get(lrct) == expected.has_value());
    ASSERT_EQ(std::pair(fields(r), fields(lrct)), std::pair(fields(wanted), fields(wanted)));
}

// Coordinates from 0 to `grid`; without one from everywhere, the ends and the middle above all.
struct Numbers {
    std::mt19937 random;
    int grid;
    int below(int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); }
    int any() { return int(below(4) == 0 ? Wide(random()) : INT32_MIN + below(5) * Wide{0x3FFFFFFF} + below(9) - 2); }
    int place() { return grid > 0 ? below(grid + 1) : any(); }
    int size() { return grid > 0 ? below(grid / 3 + 3) - 1 : any() / (1 << below(31)); }
    Rect rect() {  // one in eight, without a grid all, are as likely as not empty or inside out
        const int left = place(), top = place(), reach = grid / 4 + 2;
        if (grid == 0 || below(8) == 0) return {left, top, place(), place()};
        return {left, top, left + below(reach), top + below(reach)};
    }
};

TEST(UtlRectRegion, ActsAsTheList) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        Numbers numbers{std::mt19937(seed), std::array{0, 6, 12, 40, 1000}[seed % 5]};
        UtlRectRegion region;
        Model model;
        for (int step = 0; step < 200 && model.nodes.size() < 10000 && !HasFatalFailure(); ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
            const bool adds = step < 2 || numbers.below(12) == 0;
            Rect r = step < 2 && numbers.grid > 0 ? Rect{0, 0, numbers.grid, numbers.grid} : numbers.rect();
            LRCT lrct = {r.top, r.left, r.bottom, r.right};
            const auto act = [&](auto&&... area) { adds ? region.Add(area...) : region.Sub(area...); };
            step % 3 == 0 ? act(r) : step % 3 == 1 ? act(lrct) : act(r.left, r.top, r.right, r.bottom);
            adds ? model.nodes.push_front(r) : model.sub(r);
            expectFound(model.largest(), [&](auto& to) { return region.GetLargest(to); });
            for (int query = step % 4 == 0 ? 12 : 2; query > 0; --query) {
                const int w = numbers.size(), d = numbers.size(), h = numbers.place(), v = numbers.place();
                expectFound(model.closest(w, d, h, v), [&](auto& to) { return region.GetClosest(to, w, d, h, v); });
            }
        }
    }
}

// Whichever allocation fails, alone or with all that follow, nothing that was taken out is reported free.
TEST(UtlRectRegion, WantOfMemoryLosesFreeAreaAndNothingElse) {
    for (long nth = 2;; ++nth) {
        Numbers numbers{std::mt19937(1), 60};
        Rect removed[60], found = {};
        const kora::test::AllocationFault fault(nth / 2, nth % 2 != 0);
        UtlRectRegion region;
        region.Add(0, 0, 60, 60);
        for (Rect& r : removed) region.Sub(r = numbers.rect());
        region.GetLargest(found);
        for (int query = 0; query < 20; ++query) {
            for (const Rect& r : removed) ASSERT_FALSE(overlap(found, r)) << nth;
            region.GetClosest(found, numbers.size(), numbers.size(), numbers.place(), numbers.place());
        }
        if (!fault.wasHit()) break;
    }
}

TEST(UtlRectRegion, CopiesShareTheNodesUntilTheLastIsGone) {
    for (const bool firstGoesFirst : {true, false}) {
        auto first = std::make_unique<UtlRectRegion>(), second = std::make_unique<UtlRectRegion>(*first);
        first->Add(0, 0, 10, 10);
        second->Add(0, 0, 99, 99);
        *second = *first;
        *second = *std::make_unique<UtlRectRegion>(*second);
        second->Sub(4, 0, 10, 10);
        (firstGoesFirst ? first : second).reset();
        expectFound(Rect{0, 0, 4, 10}, [&](auto& to) { return (first ? first : second)->GetLargest(to); });
    }
}

}  // namespace
