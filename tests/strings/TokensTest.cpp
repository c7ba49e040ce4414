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

TEST(StrTok, SplitsAtEachDelimiter) {
    void* state = nullptr;
    Texts tokens;
    for (char* token = StrTok(";a;;b;", ';', &state); token; token = StrTok(nullptr, ';', &state))
        tokens.push_back(token);
    EXPECT_EQ(tokens, (Texts{"", "a", "", "b", ""}));
    EXPECT_EQ(state, nullptr);
    EXPECT_STREQ(StrTok("", ';', &state), "");
    EXPECT_EQ(StrTok(nullptr, ';', &state), nullptr);
}
