#include "strings/Bytes.h"

#include <gtest/gtest.h>

#include <string>

using namespace kora;

TEST(Bytes, FoldsOnlyTheLettersOfAscii) {
    for (int code = 0; code < 256; ++code) {
        const char c = static_cast<char>(code);
        EXPECT_EQ(foldCase(c), code >= 97 && code <= 122 ? static_cast<char>(code - 32) : c) << code;
    }
}

TEST(Bytes, EqualIgnoringCaseNeedsEqualLengths) {
    EXPECT_TRUE(equalIgnoringCase("aBc1", "AbC1"));
    EXPECT_TRUE(equalIgnoringCase("", ""));
    EXPECT_FALSE(equalIgnoringCase("ab", "abc"));
    EXPECT_FALSE(equalIgnoringCase("abc", "ab"));
    EXPECT_FALSE(equalIgnoringCase("\xE9", "\xC9"));
    EXPECT_FALSE(equalIgnoringCase("[", "{"));
}

// The difference may stand in any of the eight bytes that are compared at once, or behind them.
TEST(Bytes, FindsTheFirstDifferenceAtEveryPlace) {
    const std::string text(21, 'm');
    for (std::size_t at = 0; at < text.size(); ++at) {
        SCOPED_TRACE(at);
        std::string other = text;
        other[at] = '\xE9';
        EXPECT_EQ(commonPrefix(text, other), at);
        EXPECT_EQ(compareTexts(other, text), -1);
        EXPECT_EQ(compareTexts(text, other), 1);
        EXPECT_EQ(compareTexts(text.substr(0, at), text), -1);
        EXPECT_EQ(compareTexts(text, text.substr(0, at)), 1);
    }
    EXPECT_EQ(compareTexts(text, text), 0);
}
