#include <kora/File.h>
#include <kora/Ini.h>
#include <kora/Utl.h>
#include <kora/Win.h>

#include <gtest/gtest.h>

#include <string>

#include "tests/settings/StoreFixture.h"

namespace {

constexpr eIniFile kBoth[] = {eIniMain, eIniState};

std::string listed(std::initializer_list<long long> numbers) {
    std::string text;
    for (const long long number : numbers) text.append(text.empty() ? "" : " ").append(std::to_string(number));
    return text;
}

/// Every table runs over both profiles: the main one's table and the state file's search answer alike.
class IniGetters : public kora::test::StoreFixture {
protected:
    void profile(eIniFile file, const std::string& text) { file == eIniState ? state(text) : main(text); }

    static std::string shown(const LRCT& rect) { return listed({rect.left, rect.top, rect.right, rect.bottom}); }
    static std::string shown(const WinFont& font) {
        return font.WinFontFaceGet() + '/' + listed({font.WinFontStyleGet(), font.WinFontSizeGet()});
    }
    /// What every getter of one kind makes of an entry. Where it makes nothing of it, the defaults show.
    static std::string read(char kind, eIniFile file, const char* key, bool found) {
        switch (kind) {
            case 'b': {  // without a default, with false, with true, with 5
                bool no = true, yes = false;
                int number = 9;
                EXPECT_EQ(IniGetBool(file, "S", key, false, no), found);
                EXPECT_EQ(IniGetBool(file, "S", key, true, yes), found);
                EXPECT_EQ(IniGetBool(file, "S", key, 5, number), found);
                return listed({no, yes, number});
            }
            case 'n': {
                int number = 1;
                short narrow = 1;
                EXPECT_EQ(IniGetInt(file, "S", key, 5, number), found);
                EXPECT_EQ(IniGetShort(file, "S", key, 5, narrow), found);
                EXPECT_EQ(narrow, static_cast<short>(number));
                return listed({number});
            }
            case 'c': {
                int colour = 1;
                EXPECT_EQ(IniGetColor(file, "S", key, 77, colour), found);
                return listed({static_cast<std::uint32_t>(colour)});
            }
            case 'r': {
                LRCT def = {1, 2, 3, 4}, rect;
                EXPECT_EQ(IniGetRect(file, "S", key, def, rect), found);
                return shown(rect);
            }
            case 'f': {
                WinFont def, font;
                def.WinFontFaceSet("Usual");
                def.WinFontStyleSet(WinFontBold);
                def.WinFontSizeSet(9);
                EXPECT_EQ(IniGetFont(file, "S", key, def, font), found);
                return shown(font);
            }
            default: {
                FilePath path("c:\\old\\x.y"), def("d:\\def\\z.w");
                EXPECT_EQ(IniGetFilePath(file, "S", key, def, path), found);
                return path.FileStringGet();
            }
        }
    }
};

TEST_F(IniGetters, ReadEachKindAsFarAsItGoes) {
    // Value and result of a few of each kind.
    const std::pair<char, std::vector<std::string>> kinds[] = {
        {'b',
         {"yes => 1 1 1", "On => 1 1 1", "TRUE => 1 1 1", "no => 0 0 0", "oFF => 0 0 0", "False => 0 0 0", " => 0 1 5",
          "maybe => 0 1 5", "1 => 0 1 5", "yes! => 0 1 5"}},
        {'n',
         {"12 => 12", "12abc => 12", "-7 8 => -7", "+7 => 7", "007 => 7", "0x10 => 0", "2147483647 => 2147483647",
          "-2147483648 => -2147483648", "2147483648 => -2147483648", "4294967297 => 1",
          "99999999999999999999 => 1661992959", "65539 => 65539", "abc => 5", " => 5", "- => 5", "- 1 => 5",
          "+-1 => 5"}},
        {'c',
         {"0x80FF0000 => 2164195328", "0XfF => 255", "0x123456789 => 591751049", "Pink => 15", "none => 2852126722",
          "puce => 0", "12 => 0", " => 0", "0xg => 77", "0x => 77"}},
        {'r',
         {"10 -20\t30   40 50 => 10 -20 30 40", " => 2 1 4 3", "1 2 3 => 2 1 4 3", "1 2 3 x => 2 1 4 3",
          "1,2,3,4 => 2 1 4 3"}},
        {'f',
         {"\"Swiss Light\" Bold 10 => Swiss Light/1 10", "\"A\" 8 rule SHADOW frame italic => A/58 8", "\"A\" => A/0 9",
          "\"\" 7 => /0 7", "\"A\" heavy 10pt 12 99999999999 => A/0 12", "Swiss 10 => Usual/1 9",
          "\"Swiss => Usual/1 9", "\" => Usual/1 9", " => Usual/1 9"}},
        {'p',
         {"c:\\lib\\a.txt => c:\\lib\\a.txt", std::string(300, 'x') + " => d:\\def\\z.w",
          "sub\\a.txt => d:\\def\\sub\\a.txt"}}};
    for (const eIniFile file : kBoth) {
        for (const auto& [kind, rows] : kinds)
            for (const std::string& row : rows) {
                SCOPED_TRACE(row);
                const std::size_t arrow = row.find(" => ");
                profile(file, std::string("[S]\nk = ").append(row, 0, arrow) + "\n");
                EXPECT_EQ(read(kind, file, "K", true), row.substr(arrow + 4));
            }
        const char* const defaults[] = {"b0 1 5", "n5", "c77", "r2 1 4 3", "fUsual/1 9", "pd:\\def\\z.w"};
        for (const char* def : defaults) EXPECT_EQ(read(def[0], file, "none", false), def + 1);
    }
}

TEST_F(IniGetters, StringsFillTheirBufferAndNoMore) {
    struct Row {
        const char* value;
        int size;
        bool unquote;
        const char* text;  // null: the buffer is untouched
    };
    constexpr Row rows[] = {{"abc", -1, false, "abc"},   {"abc", 0, false, nullptr},
                            {"abc", 1, false, ""},       {"abc", 3, false, "ab"},
                            {"abc", 4, false, "abc"},    {"a  c", 3, false, "a"},
                            {"\"abc\"", 9, true, "abc"}, {"\"abc\"", 9, false, "\"abc\""},
                            {"'a b '", 9, true, "a b"},  {"' a'", 9, true, " a"},
                            {"\"\"", 9, true, ""},       {"'a", 9, true, "'a"},
                            {"'a\"", 9, true, "'a\""},   {"'", 9, true, "'"},
                            {"\"abc\"", 3, true, "ab"},  {"''a''", 9, true, "'a'"}};
    for (const eIniFile file : kBoth)
        for (const Row& row : rows) {
            SCOPED_TRACE(testing::Message() << row.value << " into " << row.size);
            profile(file, std::string("[S]\nk = ") + row.value + "\n");
            std::string buffer(12, '#'), expected = row.text ? row.text + std::string(1, '\0') : "";
            EXPECT_TRUE(IniGetString(file, "S", "K", "def", buffer.data(), row.size, row.unquote));
            EXPECT_EQ(buffer, expected + std::string(buffer.size() - expected.size(), '#'));
            CString text;
            EXPECT_TRUE(IniGetString(file, "S", "K", text, row.unquote) && (row.size != 9 || text == row.text));
        }
}

TEST_F(IniGetters, LinesAreCountedInFileOrder) {
    for (const eIniFile file : kBoth) {
        profile(file, "a = 0\n[S]\na = 1\n; c\nnone\nb = 'x' \n[T]\nc = 3\n[S]\na = 4\n[E]\n");
        CString key, text, lines;
        for (short line = 0; IniGetLine(file, "S", line, key, text); ++line) lines += key + '=' + text + ' ';
        EXPECT_EQ(lines, "a=1 b='x' a=4 ");
        EXPECT_FALSE(IniGetLine(file, "S", -1, key, text) || IniGetLine(file, "E", 0, key, text));
        EXPECT_FALSE(IniGetLine(file, "none", 0, key, text));
        EXPECT_EQ(key + text, "a4");
    }
}

TEST_F(IniGetters, SectionsOfTheMainProfileAreFoundAsTheyAreWritten) {
    const std::string text = "[S]\nk = 1\nK = 5\n[s]\nj = 2\n[S]\nk = 3\n";
    state(text);
    main(text);
    EXPECT_EQ(get(eIniState, "s", "K"), "1");
    EXPECT_EQ(get(eIniState, "S", "J"), "2");
    EXPECT_EQ(get(eIniMain, "S", "K"), "1");
    EXPECT_EQ(get(eIniMain, "s", "K"), "(not found)");
    EXPECT_EQ(get(static_cast<eIniFile>(2), "s", "J"), "2");  // any other file is the main one
}

TEST_F(IniGetters, SettersWriteWhatIsReadBack) {
    LRCT rect = {1, -2, 3, 4};
    WinFont font;
    font.WinFontFaceSet("A b");
    font.WinFontStyleSet(WinFontBold | WinFontItalic | WinFontFrame | WinFontShadow | WinFontRule);
    EXPECT_TRUE(IniSetRect(eIniState, "S", "r", rect) && IniSetFont(eIniState, "S", "f", font));
    EXPECT_TRUE(IniSetBool(eIniState, "S", "b", 2) && IniSetInt(eIniState, "S", "n", -5));
    EXPECT_EQ(state(), "[S]\nr = -2 1 4 3\nf = \"A b\" Bold Italic Frame Shadow Rule 12\nb = True\nn = -5\n");
}

}  // namespace
