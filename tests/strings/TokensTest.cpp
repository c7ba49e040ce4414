#include <kora/Str.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

Texts itemsOf(const CString& line) {
    Texts items;
    CString item;
    for (int at = 0; StrGetItem(at, line, item);) items.push_back(item);
    return items;
}

Texts tokensOf(const char* text, char delimiter) {
    Texts tokens;
    void* state = nullptr;
    for (char* token = StrTok(text, delimiter, &state); token; token = StrTok(nullptr, delimiter, &state))
        tokens.push_back(token);
    EXPECT_EQ(state, nullptr);
    return tokens;
}

}  // namespace

TEST(StrGetItem, ReadsItemsAndQuotes) {
    EXPECT_EQ(itemsOf("a b,c , ,d\t,\x01 e"), (Texts{"a", "b", "c", "d", "e"}));
    EXPECT_EQ(itemsOf("  \"a, 'b'\"'c\"d'e"), (Texts{"a, 'b'", "c\"d", "e"}));
    EXPECT_EQ(itemsOf("\"\",'open, end"), (Texts{"", "open, end"}));
    EXPECT_EQ(itemsOf("a\"b c\""), (Texts{"a\"b", "c\""})) << "only a quote in front counts";
    EXPECT_EQ(itemsOf(",a"), (Texts{"", "a"}));
    EXPECT_EQ(itemsOf("\xE9\x80 \xA0"), (Texts{"\xE9\x80", "\xA0"})) << "bytes from 0x80 up are ordinary";
    EXPECT_EQ(itemsOf(" \t "), Texts{});
}

TEST(StrGetItem, MovesToTheNextItem) {
    CString line = "ab , cd", item;
    int at = 1;
    EXPECT_TRUE(StrGetItem(at, line, item));
    EXPECT_EQ(item, "b");
    EXPECT_EQ(at, 5);
    for (const int outside : {7, 100}) {
        at = outside;
        EXPECT_FALSE(StrGetItem(at, line, item));
        EXPECT_EQ(item, "b");
    }
    at = -3;
    EXPECT_TRUE(StrGetItem(at, line, line));
    EXPECT_EQ(line, "ab");
    EXPECT_EQ(at, 5);
}

TEST(StrTok, SplitsAtEachDelimiter) {
    EXPECT_EQ(tokensOf("a;b;c", ';'), (Texts{"a", "b", "c"}));
    EXPECT_EQ(tokensOf(";a;;b;", ';'), (Texts{"", "a", "", "b", ""}));
    EXPECT_EQ(tokensOf("", ';'), Texts{""});
    EXPECT_EQ(tokensOf("a b", '\0'), Texts{"a b"});
    EXPECT_EQ(tokensOf("a\xE9!", '\xE9'), (Texts{"a", "!"}));
    EXPECT_EQ(tokensOf(nullptr, ';'), Texts{});
    EXPECT_EQ(StrTok("a", ';', nullptr), nullptr);
    void *first = nullptr, *second = nullptr;  // two texts at once
    EXPECT_STREQ(StrTok("a b", ' ', &first), "a");
    EXPECT_STREQ(StrTok("1,2", ',', &second), "1");
    EXPECT_STREQ(StrTok(nullptr, ' ', &first), "b");
    EXPECT_STREQ(StrTok(nullptr, ',', &second), "2");
    EXPECT_EQ(StrTok(nullptr, ' ', &first), nullptr);
    EXPECT_EQ(StrTok(nullptr, ',', &second), nullptr);
}

TEST(StrVerify, FindsTheFirstCharacterOutside) {
    EXPECT_EQ(StrVerify("abcx", -1, "cab", -1), 3);
    EXPECT_EQ(StrVerify("abcx", 3, "cab", -1), -1);
    EXPECT_EQ(StrVerify("abc", -1, "abc", 2), 2);
    EXPECT_EQ(StrVerify("", -1, "abc", -1), -1);
    EXPECT_EQ(StrVerify("a", -1, "", -1), 0);
    EXPECT_EQ(StrVerify(CString("12\xE9"), "0123456789", -1), 2);
}

TEST(StrConvertNonNameChars, EveryRunBecomesOneUnderscore) {
    CString text = "  Az09-b +c_-_@[`{/:\xE9";
    StrConvertNonNameChars(text);
    EXPECT_EQ(text, "_Az09_b_c_");
    text.clear();
    StrConvertNonNameChars(text);
    EXPECT_EQ(text, "");
}
