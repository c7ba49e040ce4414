#include <kora/Utl.h>
#include <kora/Win.h>

#include <gtest/gtest.h>

#include <cstring>

#include "tests/support/VirtualSlot.h"

namespace {

TEST(WinWindow, SlotsStandInTheOrderThatModulesAreCompiledAgainst) {
    using kora::test::virtualSlot;
    using W = WinWindow;
    const int slots[] = {virtualSlot(&W::WinMapColour),     virtualSlot(&W::WinForeColourSet),
                         virtualSlot(&W::WinBackColourSet), virtualSlot(&W::WinClientRectSet),
                         virtualSlot(&W::WinClientRectGet), virtualSlot(&W::WinForeColourGet),
                         virtualSlot(&W::WinBackColourGet)};
    int slot = 1;  // behind the destructor
    for (const int each : slots) EXPECT_EQ(each, slot++);
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
    EXPECT_EQ(std::memcmp(&r, &set, sizeof r), 0);
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
    EXPECT_TRUE(font.WinFontFaceGet().empty() && font.WinFontStyleGet() == 0 && font.WinFontSizeGet() == 12);
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
