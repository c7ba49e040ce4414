#include <gmock/gmock.h>
#include <kora/Test.h>
#include <kora/Tsk.h>
#include <kora/Win.h>

#include <array>
#include <random>
#include <regex>

#include "platform/Platform.h"
#include "tests/support/AllocationFault.h"
#include "tests/support/ScopedPlaces.h"
#include "tests/support/VirtualSlot.h"

namespace {

TEST(Window, SlotsStandBehindThoseOfTheSurface) {
    using W = WinWindow;
    EXPECT_EQ(0, kora::test::firstOutOfSlot(
                     &W::WinMapColour, &W::WinForeColourSet, &W::WinBackColourSet, &W::WinClientRectSet,
                     &W::WinClientRectGet, &W::WinForeColourGet, &W::WinBackColourGet, &W::WinFontSet, &W::WinFontGet,
                     &W::WinTextMeasure, &W::WinInvalidate, &W::WinUpdateNow, &W::WinCursorSet, &W::WinBusyCursorStart,
                     &W::WinBusyCursorNext, &W::WinBusyCursorStop, &W::WinModuleGet, &W::WinParentGet, &W::WinCreate,
                     &W::WinCreateDone, &W::WinVisibleGet, &W::WinShow, &W::WinHide, &W::WinMove, &W::WinScrollRangeSet,
                     &W::WinScrollRangeGet, &W::WinScrollPosSet, &W::WinScrollPosGet));
}

std::pair<std::int32_t, std::int32_t> measuredByTheLetter(const std::string& text, int points) {
    static const std::regex ends("\r\n|\r|\n");
    std::int64_t width = 0, height = 0;
    for (std::sregex_token_iterator line(text.begin(), text.end(), ends, -1), none; line != none; ++line, height += 200)
        width = std::max<std::int64_t>(width, line->length() * 100);
    for (std::int64_t* extent : {&width, &height})
        *extent = std::min<std::int64_t>(*extent * std::max(points, 0) / 12, INT32_MAX);
    return {height, width};
}

TEST(Window, MeasuresTextOnAGrid) {
    WinWindow window;
    for (unsigned seed = 1; seed <= 4000; ++seed) {
        std::mt19937 random(seed);
        WinFont font;
        font.WinFontSizeSet(std::array{12, 7, 10, 1, 144, 0, -12, INT32_MAX, INT32_MAX / 3, 10737418}[random() % 10]);
        window.WinFontSet(&font);
        std::string text(random() % 12, ' ');
        for (char& c : text) c = "\r\n\ra\xFF\0b "[random() % 8];
        for (const bool counted : {true, false}) {
            LPNT size;
            const char* given = text.empty() && counted ? nullptr : text.c_str();
            window.WinTextMeasure(given, counted ? static_cast<long>(text.size()) : -1, &size);
            if (!counted) text = text.c_str();
            ASSERT_EQ(std::pair(size.v, size.h), measuredByTheLetter(text, font.WinFontSizeGet())) << "seed " << seed;
        }
    }
}

TEST(Window, KeepsItsSettings) {
    WinWindow window;
    LRCT r = {INT32_MIN, 3, INT32_MAX, 1};
    window.WinMove(&r);
    window.WinClientRectGet(&r);
    EXPECT_TRUE(r.top == 0 && r.left == 0 && r.bottom == -1 && r.right == -2);
    const auto bar = [](int n) { return static_cast<eWinScrollBar>(n); };  // there are 0 and 1
    for (const int n : {1, 2}) window.WinScrollRangeSet(bar(n), 5, 7), window.WinScrollPosSet(bar(n), 9);
    for (const int n : {0, 1, 2}) {
        long count, page;
        window.WinScrollRangeGet(bar(n), &count, &page);
        EXPECT_EQ((std::array{count, page, window.WinScrollPosGet(bar(n))}),
                  (n == 1 ? std::array{5l, 7l, 9l} : std::array{0l, 0l, 0l}));
    }
    WinFont font, got, untouched;
    font.WinFontFaceSet("longer than what a string holds in itself");
    for (const long nth : {1, 0}) {
        const kora::test::AllocationFault fault(nth);
        window.WinFontSet(&font);
        EXPECT_TRUE(window.WinFontGet(&got) == &got && (got == font) != fault.wasHit());
    }
    const kora::test::AllocationFault fault(1);
    EXPECT_TRUE((window.WinFontGet(&untouched) == nullptr) == fault.wasHit() && (untouched == font) != fault.wasHit());
}

TEST(Window, ShowsCursorsAndBeepsThroughTheSlots) {
    struct Watched : WinWindow, TestPresenter {
        void WinCursorSet(short cursor) override { shown.push_back(cursor); }
        void WinCreateDone() override { shown.push_back(-1); }
        void Beep() override { shown.push_back(-2); }
        std::vector<short> shown;
    } window;
    window.WinBusyCursorNext();
    window.WinBusyCursorStart(std::array<short, 3>{1050, 1051, 1052}.data(), 3);
    for (int i = 0; i < 4; ++i) window.WinBusyCursorNext();
    window.WinBusyCursorStop();
    window.WinBusyCursorNext();
    EXPECT_TRUE(window.WinCreate(5));
    UtlBeep();
    EXPECT_THAT(window.shown, testing::ElementsAre(1050, 1051, 1052, 1050, 1051, 32512, -1, -2));
    for (const int n : {1050, 1051, 1052, 1053, 32512, 1054, 1034, 0, -1})
        EXPECT_EQ(kora::platform::showCursor(static_cast<short>(n)),
                  UtlOS() == 3 && (n == 32512 || (n >= 1050 && n < 1054)));
}

std::array<WinWindow*, 900> alive;
std::vector<std::pair<WinWindow*, WinWindow*>> destroyed;  // with their parents

struct Noted : WinWindow {
    using WinWindow::WinWindow;
    ~Noted() override {
        destroyed.emplace_back(this, WinParentGet());
        *std::find(alive.begin(), alive.end(), this) = nullptr;
    }
};

// Windows of a deep forest are destroyed at random, with all that is below them, and only the first has a parent left.
TEST(Window, LeavesItsParentAndDeletesItsChildrenInOrder) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        std::array<std::vector<std::size_t>, alive.size()> below;
        for (std::size_t i = 0; i < alive.size(); ++i) {
            const std::size_t above = random() % 16 == 0 ? random() % (i + 1) : i - (i > 0);
            alive[i] = new Noted(nullptr, above < i ? alive[above] : nullptr);
            if (above < i) below[above].push_back(i);
        }
        for (std::size_t left = alive.size(); left > 0; left -= !alive[left - 1]) {
            const std::size_t at = left - 1 - random() % std::min<std::size_t>(left, 300);
            decltype(destroyed) expected;
            const auto walk = [&](auto&& self, std::size_t i) -> void {
                if (alive[i]) expected.emplace_back(alive[i], i == at ? alive[i]->WinParentGet() : nullptr);
                for (const std::size_t child : below[i]) self(self, child);
            };
            walk(walk, at);
            destroyed.clear();
            delete alive[at];
            ASSERT_EQ(destroyed, expected) << "seed " << seed;
        }
    }
    WinWindow before, after;
    auto* const moved = new WinWindow(nullptr, &before);
    before.ChildDetach(moved);
    EXPECT_EQ(moved->Parent(), nullptr);
    after.ChildAttach(moved);
    EXPECT_EQ(moved->WinParentGet(), &after);
    delete moved;
    EXPECT_EQ(before.ChildCount() + after.ChildCount(), 0);
}

TEST(Window, IsStoppedAtExitAndRunsAgain) {
    struct Counting : WinWindow {
        bool TmrExpiry() override { return ++expired, false; }
        int expired = 0;
    } window;
    const kora::test::ScopedPlaces places;
    for (int run = 1; run <= 2; ++run) {
        EXPECT_TRUE(Startup(nullptr, nullptr) != 0 && !TmrIdleRunning());
        window.TmrStart(), Idle(0);
        EXPECT_TRUE(window.expired == run && TmrIdleRunning());
        TskExitKoraQuery();
        ExitInstance();
    }
    EXPECT_FALSE(TmrIdleRunning());
}

TEST(Clipboard, KeepsTextAndIsOpenOnce) {
    EXPECT_TRUE(ClpClear() && !ClpTextAvailable());
    std::string held;
    for (unsigned seed = 1; seed <= 300; ++seed) {
        std::mt19937 random(seed);
        const bool open = random() % 2, writing = random() % 2;
        std::string put("longer than what a string holds in itself");
        put[random() % put.size()] = random() % 2 ? '\0' : '\xFF';
        ASSERT_TRUE(!open || ClpOpen(writing));
        {
            const kora::test::AllocationFault fault(random() % 4 == 0);
            const bool kept = ClpTextPut(put.data(), random() % 2 ? -1 : static_cast<long>(put.size()));
            ASSERT_EQ(kept, open && writing && !fault.wasHit()) << seed;
            if (kept) held = put.c_str();
        }
        char* text;
        long length;
        ASSERT_EQ(ClpTextGet(text, length), open && ClpTextAvailable()) << seed;
        ASSERT_TRUE(!text || std::string(text, static_cast<std::size_t>(length) + 1) == held + '\0') << seed;
        ClpTextFree(text);
        ASSERT_EQ(ClpOpen(false), !open) << seed;
        ASSERT_FALSE(ClpOpen(true) || ClpClear()) << seed;
        ClpClose(), ClpClose();
    }
    EXPECT_TRUE(!held.empty() && ClpTextAvailable() && ClpClear() && !ClpTextAvailable());
}

}  // namespace
