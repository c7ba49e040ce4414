#include <kora/Utl.h>
#include <kora/Win.h>

#include <gtest/gtest.h>

#include "tests/support/VirtualSlot.h"

namespace {

TEST(WinWindow, SlotsStandInTheOrderThatModulesAreCompiledAgainst) {
    using kora::test::virtualSlot;
    EXPECT_EQ(virtualSlot(&WinWindow::WinMapColour), 1);
    EXPECT_EQ(virtualSlot(&WinWindow::WinForeColourSet), 2);
    EXPECT_EQ(virtualSlot(&WinWindow::WinBackColourSet), 3);
    EXPECT_EQ(virtualSlot(&WinWindow::WinClientRectSet), 4);
    EXPECT_EQ(virtualSlot(&WinWindow::WinClientRectGet), 5);
    EXPECT_EQ(virtualSlot(&WinWindow::WinForeColourGet), 6);
    EXPECT_EQ(virtualSlot(&WinWindow::WinBackColourGet), 7);
}

TEST(WinWindow, KeepsItsClientRectangle) {
    WinWindow window;
    LRCT r = {1, 2, 3, 4};
    window.WinClientRectGet(&r);
    EXPECT_TRUE(r.top >= r.bottom || r.left >= r.right);
    LRCT set = {-1, -2, 30, 40};
    window.WinClientRectSet(&set);
    window.WinClientRectSet(nullptr);
    window.WinClientRectGet(nullptr);
    window.WinClientRectGet(&r);
    EXPECT_EQ(r.top, -1);
    EXPECT_EQ(r.left, -2);
    EXPECT_EQ(r.bottom, 30);
    EXPECT_EQ(r.right, 40);
}

TEST(WinWindow, MappingAsksForTheSettingsThroughTheirSlots) {
    struct Own : WinWindow {
        int WinForeColourGet() override { return 1; }
        int WinBackColourGet() override { return 2; }
    } window;
    EXPECT_EQ(window.WinMapColour(static_cast<int>(0xAA000000), false), 255u);
    EXPECT_EQ(window.WinMapColour(static_cast<int>(0xAA000001), false), 240u << 8);
}

TEST(WinFont, IsAValue) {
    WinFont font;
    EXPECT_EQ(font.WinFontFaceGet(), "");
    EXPECT_EQ(font.WinFontStyleGet(), 0);
    EXPECT_EQ(font.WinFontSizeGet(), 12);

    const auto differsBy = [](auto change) {
        WinFont changed;
        change(changed);
        const WinFont copy = changed;
        return copy == changed && !(changed == WinFont());
    };
    EXPECT_TRUE(differsBy([](WinFont& f) { f.WinFontFaceSet("Swiss"); }));
    EXPECT_TRUE(differsBy([](WinFont& f) { f.WinFontStyleSet(WinFontItalic | WinFontRule); }));
    EXPECT_TRUE(differsBy([](WinFont& f) { f.WinFontSizeSet(8); }));

    font.WinFontFaceSet("Swiss");
    font.WinFontFaceSet(nullptr);
    EXPECT_TRUE(font == WinFont());
}

TEST(Utl, SaysWhichKindOfSystemThisIs) {
#if defined(_WIN32)
    EXPECT_EQ(UtlOS(), 3);
#else
    EXPECT_EQ(UtlOS(), 0);
#endif
}

}  // namespace
