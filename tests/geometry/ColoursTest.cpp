#include <kora/Win.h>

#include <gtest/gtest.h>

#include <random>

#include "tests/settings/StoreFixture.h"

namespace {

constexpr int value(std::uint32_t bits) { return static_cast<int>(bits); }

constexpr int kForeground = value(0xAA000000), kBackground = value(0xAA000001), kNone = value(0xAA000002);
constexpr int kFlag = 0x01000000;

struct PaletteRow {
    int index;
    const char* name;
    unsigned red, green, blue;
    unsigned long rgb() const { return red + 256ul * green + 65536ul * blue; }
};

using ColourTexts = kora::test::StoreFixture;

constexpr PaletteRow palette[] = {
    {1, "red", 255, 0, 0},         {2, "green", 0, 240, 0},        {3, "blue", 0, 0, 255},
    {4, "cyan", 0, 255, 255},      {5, "magenta", 255, 0, 255},    {6, "yellow", 255, 255, 0},
    {7, "black", 0, 0, 0},         {8, "dkgray", 110, 110, 110},   {9, "gray", 150, 150, 150},
    {10, "ltgray", 200, 200, 200}, {11, "white", 255, 255, 255},   {12, "vltgray", 230, 230, 230},
    {13, "ltblue", 150, 150, 255}, {14, "ltgreen", 150, 255, 150}, {15, "ltred", 255, 155, 155},
    {16, "dkblue", 0, 0, 120},     {17, "dkgreen", 0, 120, 0},     {18, "dkred", 120, 0, 0},
    {19, "violet", 150, 0, 150},   {20, "orange", 255, 150, 0},    {21, "xltgray", 242, 242, 242},
};

TEST(Colours, PaletteNamesIndexesAndValuesBelongTogether) {
    for (const PaletteRow& row : palette) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(WinGetColourByName(row.name), row.index);
        EXPECT_EQ(WinMapColour(row.index), row.rgb());
        EXPECT_EQ(WinMapColour(row.index | kFlag), row.rgb());
        EXPECT_TRUE(WinIsValidColour(row.index));
        EXPECT_EQ(WinGetClosestQzColor(row.rgb()), row.index);
    }
}

TEST(Colours, ValuesMapAndAreCheckedByTheirForm) {
    constexpr std::pair<std::uint32_t, unsigned long> valid[] = {
        {0x80000000, 0},        {0x80123456, 0x123456}, {0x81FFFFFF, 0xFFFFFF}, {0x01000005, 0xFF00FF},
        {0xAA000000, 0},        {0xAA000001, 0xFFFFFF}, {0xAA000002, 0xFFFFFF}, {0xAB000000, 0},
        {0xAB000001, 0xFFFFFF}, {0xAB000002, 0xFFFFFF}};
    for (const auto& [colour, rgb] : valid) {
        EXPECT_TRUE(WinIsValidColour(value(colour))) << std::hex << colour;
        EXPECT_EQ(WinMapColour(value(colour)), rgb) << std::hex << colour;
    }
    // beside the direct ones, the palette's, and the symbols
    for (const std::uint32_t colour : {0x82000000u, 0x7FFFFFFFu, 0x84123456u, 0u, 0x01000000u, 22u, 0x01000016u,
                                       0x02000001u, 0xAA000003u, 0xA9FFFFFFu, 0xFFFFFFFFu}) {
        EXPECT_FALSE(WinIsValidColour(value(colour))) << std::hex << colour;
        EXPECT_EQ(WinMapColour(value(colour)), 0u) << std::hex << colour;
    }
}

TEST(Colours, NamesAreReadWithoutCaseAndNumbersAsDigits) {
    for (const auto& [text, colour] : {std::pair{"PINK", 15u},

                                       {"foreground", 0xAA000000},
                                       {"Background", 0xAA000001},
                                       {"NONE", 0xAA000002},

                                       {"0xFFFFFF", 0x80FFFFFF},
                                       {"0x0", 0x80000000},
                                       {"0x12zz", 0x80000012}})
        EXPECT_EQ(WinGetColourByName(text), value(colour)) << text;
    // the name of no colour, numbers that are too wide, and what is neither
    for (const char* text : {"netset", "0x1000000", "0xffffffff", "0x100000000", "0x1000000000000000000", "0x-1",
                             "Dark", "", "red ", " red", "re", "reds", "0x", "0xg", "x12", " 0x12", "0X12", "12"})
        EXPECT_EQ(WinGetColourByName(text), 0) << text;
    EXPECT_EQ(WinGetColourByName(nullptr), 0);
}

// What is written is read back through a profile, and through the names where it is one.
TEST_F(ColourTexts, ReadBackTheSame) {
    // clang-format off
    for (const auto& [colour, text] : {std::pair{15u, "ltred"}, {0u, "netset"}, {0xAA000000, "foreground"},
                                       {0xAA000002, "none"}, {22u, "0x00000016"}, {0x0100000F, "0x0100000F"}})
        EXPECT_EQ(WinColourToText(value(colour)), text);
    // clang-format on
    constexpr std::uint32_t bases[] = {0, 0, 0x01000000, 0x80000000, 0xAA000000, 0xAB000000};
    std::mt19937 random(75);
    for (int round = 0; round < 500; ++round) {
        const auto any = static_cast<std::uint32_t>(random());
        const int colour = value(round % 2 ? any : bases[any % 6] + any / 8 % 24);
        const CString text = WinColourToText(colour);
        main("[C]\nk = " + text + '\n');
        int back = -7;
        EXPECT_TRUE(IniGetColor(eIniMain, "C", "k", -7, back) && back == colour) << text;
        EXPECT_TRUE(text.starts_with("0x") || WinGetColourByName(text.c_str()) == colour) << text;
    }
}

TEST(Colours, ClosestIsTheFirstOfTheNearest) {
    EXPECT_EQ(WinGetClosestQzColor(0xFF000000ul), 7);  // what stands above the RGB value is not looked at

    constexpr unsigned seed = 74;
    std::mt19937 random(seed);
    for (int round = 0; round < 20000; ++round) {
        const unsigned long rgb = random() & 0xFFFFFF;
        long bestDistance = 1000;
        int best = 0;
        for (const PaletteRow& row : palette) {
            const long distance = std::labs(static_cast<long>(row.red) - static_cast<long>(rgb & 0xFF)) +
                                  std::labs(static_cast<long>(row.green) - static_cast<long>(rgb >> 8 & 0xFF)) +
                                  std::labs(static_cast<long>(row.blue) - static_cast<long>(rgb >> 16));
            if (distance < bestDistance) {
                bestDistance = distance;
                best = row.index;
            }
        }
        ASSERT_EQ(WinGetClosestQzColor(rgb), best) << std::hex << rgb;
    }
}

TEST(WindowColours, AreAskedForThroughTheirSlots) {
    struct Own : WinWindow {
        int WinForeColourGet() override { return 1; }
        int WinBackColourGet() override { return 2; }
    } window;
    EXPECT_EQ(window.WinMapColour(kForeground, false), 255u);
    EXPECT_EQ(window.WinMapColour(kBackground, false), 240u << 8);
}

TEST(WindowColours, SymbolsFollowTheWindowsSettings) {
    WinWindow window;
    EXPECT_EQ(window.WinMapColour(kForeground, false), 0u);
    EXPECT_EQ(window.WinMapColour(kBackground, false), 0xFFFFFFu);
    window.WinForeColourSet(3);
    window.WinBackColourSet(value(0x80112233));
    struct Row {
        int colour;
        unsigned long rgb, ofOneBit;
    };
    constexpr Row rows[] = {{kForeground, 0xFF0000, 0},

                            {kBackground, 0x112233, 0},
                            {kBackground | kFlag, 0x112233, 0},
                            {kNone, 0xFFFFFF, 0xFFFFFF},

                            {21, 0xF2F2F2, 0}};
    for (const auto& [colour, rgb, ofOneBit] : rows) {
        EXPECT_EQ(window.WinMapColour(colour, false), rgb) << std::hex << colour;
        EXPECT_EQ(window.WinMapColour(colour, true), ofOneBit) << std::hex << colour;
    }
    // A setting that is a symbol itself is not replaced again: background is white then, whatever the window's is.
    window.WinForeColourSet(kBackground);
    EXPECT_EQ(window.WinMapColour(kForeground, true), 0xFFFFFFu);
}

}  // namespace
