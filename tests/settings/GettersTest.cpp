#include <kora/File.h>
#include <kora/Ini.h>
#include <kora/Utl.h>
#include <kora/Win.h>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "tests/settings/StoreFixture.h"

namespace {

/// Every table runs over both profiles: the main one's table and the state file's search answer alike.
class IniGetters : public kora::test::StoreFixture {
protected:
    void profile(eIniFile file, const std::string& text) { file == eIniState ? state(text) : main(text); }
    void value(eIniFile file, const std::string& text) { profile(file, "[S]\nk = " + text + "\n"); }
    static constexpr eIniFile both[] = {eIniMain, eIniState};
};

TEST_F(IniGetters, StringsFillTheirBufferAndNoMore) {
    struct Row {
        const char* value;
        int size;
        bool unquote;
        const char* text;  // null: the buffer is untouched
    };
    constexpr Row rows[] = {
        // sizes
        {"abc", -1, false, "abc"},
        {"abc", 0, false, nullptr},
        {"abc", 1, false, ""},
        {"abc", 3, false, "ab"},
        {"abc", 4, false, "abc"},
        {"abc", 5, false, "abc"},
        {"a  c", 3, false, "a"},
        // quotes
        {"\"abc\"", 9, true, "abc"},
        {"\"abc\"", 9, false, "\"abc\""},
        {"'a b '", 9, true, "a b"},
        {"' a'", 9, true, " a"},
        {"\"\"", 9, true, ""},
        {"'a", 9, true, "'a"},
        {"'a\"", 9, true, "'a\""},
        {"'", 9, true, "'"},
        {"\"abc\"", 3, true, "ab"},
        {"''a''", 9, true, "'a'"},
    };
    for (const eIniFile file : both)
        for (const Row& row : rows) {
            SCOPED_TRACE(testing::Message() << row.value << " into " << row.size);
            value(file, row.value);
            char buffer[12];
            std::memset(buffer, '#', sizeof buffer);
            EXPECT_TRUE(IniGetString(file, "S", "K", "def", buffer, row.size, row.unquote));
            const std::string expected = row.text ? row.text + std::string(1, '\0') : "";
            EXPECT_EQ(std::string(buffer, sizeof buffer), expected + std::string(sizeof buffer - expected.size(), '#'));
        }
}

TEST_F(IniGetters, DefaultsAreCopiedAsTheyStand) {
    char buffer[8] = "'a b ' ";
    EXPECT_FALSE(IniGetString(eIniState, "S", "k", buffer, buffer, sizeof buffer, true));
    EXPECT_STREQ(buffer, "'a b ' ");
    EXPECT_FALSE(IniGetString(eIniState, "S", "k", buffer + 1, buffer, 4, true));
    EXPECT_STREQ(buffer, "a b");
    EXPECT_FALSE(IniGetString(eIniState, "S", "k", nullptr, buffer, sizeof buffer, true));
    EXPECT_STREQ(buffer, "");
    EXPECT_FALSE(IniGetString(eIniState, "S", "k", "x", nullptr, 5, true));

    CString text = "def";
    EXPECT_FALSE(IniGetString(eIniState, "S", "k", text, false));
    EXPECT_EQ(text, "def");
    EXPECT_FALSE(IniGetString(eIniState, "S", "k", text.c_str() + 1, text, false));
    EXPECT_EQ(text, "ef");
    EXPECT_FALSE(IniGetString(eIniState, "S", "k", CString(40000, 'x').c_str(), text, false));
    EXPECT_EQ(text, CString(31999, 'x'));
    EXPECT_FALSE(IniGetString(eIniState, "S", "k", nullptr, text, false));
    EXPECT_EQ(text, "");
}

TEST_F(IniGetters, NullNamesAreNeverFound) {
    for (const eIniFile file : both) {
        value(file, "1");
        int number = 0;
        EXPECT_FALSE(IniGetInt(file, nullptr, "k", 7, number));
        EXPECT_EQ(number, 7);
        EXPECT_FALSE(IniGetInt(file, "S", nullptr, 8, number));
        EXPECT_EQ(number, 8);
        CString key = "a", text = "b";
        EXPECT_FALSE(IniGetLine(file, nullptr, 0, key, text));
    }
}

TEST_F(IniGetters, WordsAreBools) {
    struct Row {
        const char* value;
        int result;  // -1: the default stays
    };
    constexpr Row rows[] = {{"yes", 1},   {"On", 1}, {"TRUE", 1},   {"no", 0}, {"oFF", 0},
                            {"False", 0}, {"", -1},  {"maybe", -1}, {"1", -1}, {"yes!", -1}};
    for (const eIniFile file : both)
        for (const Row& row : rows)
            for (const bool def : {false, true}) {
                SCOPED_TRACE(row.value);
                value(file, row.value);
                const bool expected = row.result < 0 ? def : row.result == 1;
                bool result = !expected;
                EXPECT_TRUE(IniGetBool(file, "S", "k", def, result));
                EXPECT_EQ(result, expected);
                EXPECT_EQ(IniGetBool(file, "S", "k", def), expected);
                int number = 9;
                EXPECT_TRUE(IniGetBool(file, "S", "k", 5, number));
                EXPECT_EQ(number, row.result < 0 ? 5 : row.result);
            }
    EXPECT_TRUE(IniGetBool(eIniState, "none", "k", true));
}

TEST_F(IniGetters, NumbersAreReadAsFarAsTheyGo) {
    struct Row {
        const char* value;
        bool parses;
        std::int32_t number;
    };
    constexpr Row rows[] = {
        {"12", true, 12},
        {"12abc", true, 12},
        {"-7 8", true, -7},
        {"+7", true, 7},
        {"007", true, 7},
        {"0x10", true, 0},
        {"2147483647", true, INT32_MAX},
        {"-2147483648", true, INT32_MIN},
        // one over, and far over
        {"2147483648", true, INT32_MIN},
        {"4294967297", true, 1},
        {"99999999999999999999", true, 1661992959},
        {"65539", true, 65539},
        // none
        {"abc", false, 0},
        {"", false, 0},
        {"-", false, 0},
        {"- 1", false, 0},
        {"+-1", false, 0},
    };
    for (const eIniFile file : both)
        for (const Row& row : rows) {
            SCOPED_TRACE(row.value);
            value(file, row.value);
            int number = 1, kept = 3;
            long wide = 1, wideKept = 3;
            short narrow = 1, narrowKept = 3;
            EXPECT_TRUE(IniGetInt(file, "S", "k", 5, number));
            EXPECT_TRUE(IniGetInt(file, "S", "k", kept));
            EXPECT_TRUE(IniGetLong(file, "S", "k", 5, wide));
            EXPECT_TRUE(IniGetLong(file, "S", "k", wideKept));
            EXPECT_TRUE(IniGetShort(file, "S", "k", 5, narrow));
            EXPECT_TRUE(IniGetShort(file, "S", "k", narrowKept));
            EXPECT_EQ(number, row.parses ? row.number : 5);
            EXPECT_EQ(kept, row.parses ? row.number : 3);
            EXPECT_EQ(wide, row.parses ? row.number : 5);
            EXPECT_EQ(wideKept, row.parses ? row.number : 3);
            EXPECT_EQ(narrow, row.parses ? static_cast<short>(row.number) : 5);
            EXPECT_EQ(narrowKept, row.parses ? static_cast<short>(row.number) : 3);
        }
    long wide = 3;
    EXPECT_FALSE(IniGetLong(eIniState, "none", "k", wide));
    EXPECT_EQ(wide, 3);
}

TEST_F(IniGetters, ColoursAreNumbersOrNames) {
    struct Row {
        const char* value;
        std::uint32_t colour;
    };
    constexpr Row rows[] = {
        {"0x80FF0000", 0x80FF0000},
        {"0XfF", 255},
        {"0x123456789", 0x23456789},
        {"Pink", 15},
        {"none", 0xAA000002},
        {"puce", 0},
        {"12", 0},
        {"", 0},
        {"0xg", 77},
        {"0x", 77},  // no number: the default stays
    };
    for (const eIniFile file : both)
        for (const Row& row : rows) {
            SCOPED_TRACE(row.value);
            value(file, row.value);
            int colour = 1;
            EXPECT_TRUE(IniGetColor(file, "S", "k", 77, colour));
            EXPECT_EQ(static_cast<std::uint32_t>(colour), row.colour);
        }
}

TEST_F(IniGetters, RectanglesAreFourNumbers) {
    LRCT def = {1, 2, 3, 4}, rect;
    const auto fields = [&] { return std::vector{rect.left, rect.top, rect.right, rect.bottom}; };
    for (const eIniFile file : both) {
        value(file, "10 -20\t30   40 50");
        EXPECT_TRUE(IniGetRect(file, "S", "k", def, rect));
        EXPECT_EQ(fields(), (std::vector{10, -20, 30, 40}));
        for (const char* text : {"", "1 2 3", "1 2 3 x", "1,2,3,4"}) {
            value(file, text);
            EXPECT_TRUE(IniGetRect(file, "S", "k", def, rect));
            EXPECT_EQ(fields(), (std::vector{2, 1, 4, 3})) << text;
        }
        EXPECT_FALSE(IniGetRect(file, "S", "none", def, rect));
        EXPECT_EQ(fields(), (std::vector{2, 1, 4, 3}));
    }
}

TEST_F(IniGetters, FontsAreAFaceAndWords) {
    WinFont def;
    def.WinFontFaceSet("Usual");
    def.WinFontStyleSet(WinFontBold);
    def.WinFontSizeSet(9);
    struct Row {
        const char* value;
        const char* face;
        int style, size;
    };
    constexpr Row rows[] = {
        {"\"Swiss Light\" Bold 10", "Swiss Light", WinFontBold, 10},
        {"\"A\" 8 rule SHADOW frame italic", "A", 2 | 8 | 16 | 32, 8},
        {"\"A\"", "A", 0, 9},
        {"\"\" 7", "", 0, 7},
        {"\"A\" heavy 10pt 12 99999999999", "A", 0, 12},
        // no font
        {"Swiss 10", "Usual", WinFontBold, 9},
        {"\"Swiss", "Usual", WinFontBold, 9},
        {"\"", "Usual", WinFontBold, 9},
        {"", "Usual", WinFontBold, 9},
    };
    for (const eIniFile file : both)
        for (const Row& row : rows) {
            SCOPED_TRACE(row.value);
            value(file, row.value);
            WinFont font;
            EXPECT_TRUE(IniGetFont(file, "S", "k", def, font));
            EXPECT_EQ(font.WinFontFaceGet(), row.face);
            EXPECT_EQ(font.WinFontStyleGet(), row.style);
            EXPECT_EQ(font.WinFontSizeGet(), row.size);
        }
    WinFont font;
    EXPECT_FALSE(IniGetFont(eIniState, "S", "none", def, font));
    EXPECT_TRUE(font == def);
}

TEST_F(IniGetters, PathsAreSetFromTheirText) {
    for (const eIniFile file : both) {
        value(file, "c:\\lib\\a.txt");
        FilePath path("c:\\old\\x.y"), def("d:\\def\\z.w");
        EXPECT_TRUE(IniGetFilePath(file, "S", "k", path));
        EXPECT_STREQ(path.FileStringGet(), "c:\\lib\\a.txt");
        EXPECT_FALSE(IniGetFilePath(file, "S", "none", path));
        EXPECT_STREQ(path.FileStringGet(), "c:\\lib\\a.txt");
        EXPECT_FALSE(IniGetFilePath(file, "S", "none", def, path));
        EXPECT_STREQ(path.FileStringGet(), "d:\\def\\z.w");
        EXPECT_FALSE(IniGetFilePath(file, "S", "none", "e:\\x", path));
        EXPECT_STREQ(path.FileStringGet(), "e:\\x");
        EXPECT_FALSE(IniGetFilePath(file, "S", "none", nullptr, path));
        EXPECT_TRUE(path.FileNullGet());
        // one that is refused, and one that starts from the default
        value(file, std::string(300, 'x'));
        EXPECT_TRUE(IniGetFilePath(file, "S", "k", def, path));
        EXPECT_STREQ(path.FileStringGet(), "d:\\def\\z.w");
        value(file, "sub\\a.txt");
        EXPECT_TRUE(IniGetFilePath(file, "S", "k", def, path));
        EXPECT_STREQ(path.FileStringGet(), "d:\\def\\sub\\a.txt");
    }
}

TEST_F(IniGetters, LinesAreCountedInFileOrder) {
    for (const eIniFile file : both) {
        files.write(kLog, "");
        profile(file, "a = 0\n[S]\na = 1\n; c\nnone\nb = 'x' \n[T]\nc = 3\n[S]\na = 4\n[E]\n");
        TraceToFileSet(true);
        CString key, text;
        const std::pair<const char*, const char*> entries[] = {{"a", "1"}, {"b", "'x'"}, {"a", "4"}};
        for (short line = 0; line < 3; ++line) {
            EXPECT_TRUE(IniGetLine(file, "S", line, key, text));
            EXPECT_EQ(key, entries[line].first);
            EXPECT_EQ(text, entries[line].second);
        }
        EXPECT_EQ(files.read(kLog), "Section 'S' found\nSection 'S' found\nSection 'S' found\n");
        files.write(kLog, "");
        EXPECT_FALSE(IniGetLine(file, "S", 3, key, text));
        EXPECT_FALSE(IniGetLine(file, "S", -1, key, text));
        EXPECT_FALSE(IniGetLine(file, "E", 0, key, text));
        EXPECT_FALSE(IniGetLine(file, "none", 0, key, text));
        EXPECT_EQ(
            files.read(kLog),
            "Section 'S' found\nSection 'S': Line 3 not found\nSection 'S' found\nSection 'S': Line -1 not found\n"
            "Section 'E' found\nSection 'E': Line 0 not found\nSection 'none': Line 0 not found\n");
        TraceToFileSet(false);
        EXPECT_EQ(key + text, "a4");

        EXPECT_TRUE(IniGetLine(file, "T", 0, text));
        EXPECT_EQ(text, "3");
        char keyBuffer[4] = "###", valueBuffer[3] = "##";
        EXPECT_TRUE(IniGetLine(file, "S", 1, keyBuffer, 1, valueBuffer, 3));
        EXPECT_STREQ(keyBuffer, "");
        EXPECT_STREQ(valueBuffer, "'x");
        EXPECT_TRUE(IniGetLine(file, "S", 1, nullptr, 4, nullptr, -1));
    }
}

TEST_F(IniGetters, TheFirstOfEqualKeysCounts) {
    for (const eIniFile file : both) {
        profile(file, "[S]\nk=1\nK=2\n[T]\nk=3\n[S]\nk=4\nj=5\n");
        EXPECT_EQ(get(file, "S", "K"), "1");
        EXPECT_EQ(get(file, "S", "j"), "5");
    }
}

TEST_F(IniGetters, SectionsOfTheMainProfileAreFoundAsTheyAreWritten) {
    state("[S]\nk = 1\n[s]\nj = 2\n");
    main("[S]\nk = 1\n[s]\nj = 2\n");
    EXPECT_EQ(get(eIniState, "s", "K"), "1");
    EXPECT_EQ(get(eIniState, "S", "J"), "2");
    EXPECT_EQ(get(eIniMain, "S", "K"), "1");
    EXPECT_EQ(get(eIniMain, "s", "K"), "(not found)");
    EXPECT_EQ(get(eIniMain, "s", "J"), "2");
    EXPECT_EQ(get(static_cast<eIniFile>(2), "s", "J"), "2");  // any other file is the main one
}

TEST_F(IniGetters, WhatSettersWriteTheyReadBack) {
    constexpr unsigned seed = 41;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto number = [&] { return static_cast<std::int32_t>(random()); };
    for (int round = 0; round < 12; ++round) {
        const int i = number();
        const long l = number();
        const auto s = static_cast<short>(number());
        LRCT rect = {number(), number(), number(), number()};
        WinFont font;
        font.WinFontFaceSet("Swiss Light");
        font.WinFontStyleSet(number() & (1 | 2 | 8 | 16 | 32));
        font.WinFontSizeSet(number() & 0xFF);
        FilePath path("c:\\some dir\\a.b");
        ASSERT_TRUE(IniSetInt(eIniState, "S", "i", i));
        ASSERT_TRUE(IniSetLong(eIniState, "S", "l", l));
        ASSERT_TRUE(IniSetShort(eIniState, "S", "s", s));
        ASSERT_TRUE(IniSetRect(eIniState, "S", "r", rect));
        ASSERT_TRUE(IniSetFont(eIniState, "S", "f", font));
        ASSERT_TRUE(IniSetFilePath(eIniState, "S", "p", path));
        ASSERT_TRUE(IniSetBool(eIniState, "S", "b", (i & 1) != 0));

        int i2;
        long l2;
        short s2;
        LRCT rect2, noRect = {0, 0, 0, 0};
        WinFont font2, noFont;
        FilePath path2;
        EXPECT_TRUE(IniGetInt(eIniState, "S", "i", 0, i2) && i2 == i);
        EXPECT_TRUE(IniGetLong(eIniState, "S", "l", 0, l2) && l2 == l);
        EXPECT_TRUE(IniGetShort(eIniState, "S", "s", 0, s2) && s2 == s);
        EXPECT_TRUE(IniGetRect(eIniState, "S", "r", noRect, rect2));
        EXPECT_EQ(std::memcmp(&rect, &rect2, sizeof rect), 0);
        EXPECT_TRUE(IniGetFont(eIniState, "S", "f", noFont, font2) && font2 == font);
        EXPECT_TRUE(IniGetFilePath(eIniState, "S", "p", path2) && path2.FileCompare(&path));
        EXPECT_EQ(IniGetBool(eIniState, "S", "b", (i & 1) == 0), (i & 1) != 0);
    }
}

TEST_F(IniGetters, SettersWriteTheseTexts) {
    LRCT rect = {1, -2, 3, 4};
    WinFont font;
    font.WinFontFaceSet("A b");
    font.WinFontStyleSet(WinFontBold | WinFontItalic | WinFontFrame | WinFontShadow | WinFontRule | 4);
    EXPECT_TRUE(IniSetRect(eIniState, "S", "r", rect));
    EXPECT_TRUE(IniSetFont(eIniState, "S", "f", font));
    EXPECT_TRUE(IniSetBool(eIniState, "S", "b", 2));
    EXPECT_TRUE(IniSetBool(eIniState, "S", "c", false));
    EXPECT_TRUE(IniSetLong(eIniState, "S", "l", std::numeric_limits<long>::min() + 5));
    EXPECT_TRUE(IniSetString(eIniState, "S", "n", nullptr));
    EXPECT_TRUE(IniSetString(eIniState, "S", "t", " a "));
    const std::string least = sizeof(long) == 4 ? "-2147483643" : "5";
    EXPECT_EQ(state(), "[S]\nr = -2 1 4 3\nf = \"A b\" Bold Italic Frame Shadow Rule 12\nb = True\nc = False\nl = " +
                           least + "\nn = \nt =  a \n");
}

}  // namespace
