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
    switch (*pattern) {
        case '\0':
            return *text == '\0';
        case '*':
            return matchRecursively(pattern + 1, text, caseSensitive) ||
                   (*text != '\0' && matchRecursively(pattern, text + 1, caseSensitive));
        case '#':
            return *text >= '0' && *text <= '9' &&
                   (matchRecursively(pattern + 1, text + 1, caseSensitive) ||
                    matchRecursively(pattern, text + 1, caseSensitive));
        default:
            return *text != '\0' && (*pattern == '?' || folded(*pattern) == folded(*text)) &&
                   matchRecursively(pattern + 1, text + 1, caseSensitive);
    }
}

std::string repeated(std::string_view text, int times) {
    std::string all;
    while (times-- > 0) all += text;
    return all;
}

}  // namespace

TEST(StrComparePattern, AgreesWithTheRecursiveRule) {
    std::mt19937 random(99);
    int matched = 0;
    for (int round = 0; round < 50000; ++round) {
        const std::string start(random() % 2 ? random() % 19 : 0, 'x');
        const std::string pattern = start + randomText(random, "**##?a1B", 8);
        const std::string text = start + randomText(random, round % 2 ? "aA1b*#" : "a11", 9);
        const bool caseSensitive = random() % 2;
        const bool expected = matchRecursively(pattern.c_str(), text.c_str(), caseSensitive);
        ASSERT_EQ(match(pattern, text, caseSensitive), expected)
            << "round " << round << ": '" << pattern << "' on '" << text << "'";
        matched += expected;
    }
    EXPECT_GT(matched, 2500);
    EXPECT_FALSE(match("\xE9", "\xC9", false));
    EXPECT_TRUE(StrComparePattern("A*xx", 2, "Abcd", 2, true));
}

// Taken recursively, none of these would ever end.
TEST(StrComparePattern, HostilePatternsEnd) {
    const std::string text(5000, 'a'), digits(5000, '1'), deep(1000000, 'a');
    EXPECT_FALSE(match(repeated("*a", 60) + "*b", text));
    EXPECT_FALSE(match(repeated("*a", 60) + "#*", text));
    EXPECT_FALSE(match(repeated("#", 300) + "x#", digits));
    EXPECT_FALSE(match("*" + std::string(400, '1') + "#2*", digits));
    EXPECT_TRUE(match("*a?*", deep));
}
