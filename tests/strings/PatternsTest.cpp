#include <kora/Str.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/strings/SizedBuffer.h"

namespace {

bool match(const std::string& pattern, const std::string& text, bool caseSensitive = true) {
    return StrComparePattern(pattern.c_str(), -1, text.c_str(), -1, caseSensitive);
}

// The rule itself, recursive: pattern first, the first fit wins.
bool matchRecursively(const char* pattern, const char* text, bool caseSensitive) {
    const auto folded = [caseSensitive](char c) {
        return !caseSensitive && c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    };
    const auto digit = [](char c) { return c >= '0' && c <= '9'; };
    switch (*pattern) {
        case '\0':
            return *text == '\0';
        case '*':
            for (;; ++text) {
                if (matchRecursively(pattern + 1, text, caseSensitive)) return true;
                if (*text == '\0') return false;
            }
        case '?':
            return *text != '\0' && matchRecursively(pattern + 1, text + 1, caseSensitive);
        case '#':
            while (digit(*text)) {
                if (matchRecursively(pattern + 1, ++text, caseSensitive)) return true;
            }
            return false;
        default:
            return *text != '\0' && folded(*pattern) == folded(*text) &&
                   matchRecursively(pattern + 1, text + 1, caseSensitive);
    }
}

std::string repeated(std::string_view text, int times) {
    std::string all;
    while (times-- > 0) all += text;
    return all;
}

}  // namespace

TEST(StrComparePattern, OpenCharacters) {
    EXPECT_TRUE(match("R#", "R12"));
    EXPECT_FALSE(match("R#", "R"));
    EXPECT_FALSE(match("R#", "Rx"));
    EXPECT_FALSE(match("R#", "R12x"));
    EXPECT_TRUE(match("A*", "A"));
    EXPECT_TRUE(match("*", ""));
    EXPECT_FALSE(match("?", ""));
    EXPECT_TRUE(match("", ""));
    EXPECT_FALSE(match("", "a"));
    EXPECT_TRUE(match("##", "12"));
    EXPECT_FALSE(match("##", "1"));
    EXPECT_TRUE(match("#5", "1555"));
    EXPECT_TRUE(match("[a]\\*", "[a]\\b")) << "nothing escapes";
    EXPECT_TRUE(match("d*Q", "D1q", false));
    EXPECT_FALSE(match("d*Q", "D1q"));
    EXPECT_FALSE(match("\xE9", "\xC9", false));
}

TEST(StrComparePattern, SizesBoundBothTexts) {
    EXPECT_TRUE(StrComparePattern("A*xx", 2, "Abcd", 2, true));
    EXPECT_FALSE(StrComparePattern("A?x", 2, "Abcd", 3, true));
    EXPECT_TRUE(StrComparePattern("A", 0, "b", 0, true));
}

TEST(StrComparePattern, AgreesWithTheRecursiveRule) {
    constexpr unsigned kSeed = 99;
    std::mt19937 random(kSeed);
    int matched = 0;
    for (int round = 0; round < 50000; ++round) {
        const std::string pattern = randomText(random, "**##?a1B", 8);
        const std::string text = randomText(random, round % 2 ? "aA1b" : "a11", 9);
        const bool caseSensitive = random() % 2;
        const bool expected = matchRecursively(pattern.c_str(), text.c_str(), caseSensitive);
        ASSERT_EQ(match(pattern, text, caseSensitive), expected)
            << "seed " << kSeed << " round " << round << ": '" << pattern << "' on '" << text << "'";
        matched += expected;
    }
    EXPECT_GT(matched, 2500);
}

// Taken recursively, none of these would ever end.
TEST(StrComparePattern, HostilePatternsEnd) {
    const std::string text(5000, 'a');
    EXPECT_TRUE(match(repeated("*a", 60) + "*", text));
    EXPECT_FALSE(match(repeated("*a", 60) + "*b", text));
    EXPECT_FALSE(match(repeated("*a", 60) + "*b*", text));
    EXPECT_FALSE(match(repeated("*a", 60) + "#*", text));
    EXPECT_TRUE(match(repeated("*a", 60) + "#*", text + "1"));
    EXPECT_FALSE(match(repeated("*?", 60) + "*b*", text));
    const std::string digits(5000, '1');
    EXPECT_TRUE(match(repeated("#", 60), digits));
    EXPECT_FALSE(match(repeated("#", 300) + "x#", digits));
    EXPECT_TRUE(match(repeated("*#", 60), digits));
    EXPECT_FALSE(match(std::string("*").append(repeated("1", 400)).append("#2*"), digits));
    const std::string deep(1000000, 'a');
    EXPECT_TRUE(match("*a?*", deep));
    EXPECT_TRUE(match(deep, deep));
    EXPECT_FALSE(match("*#", deep));
}
