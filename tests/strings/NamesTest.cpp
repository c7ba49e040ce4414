#include <kora/Str.h>

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <random>
#include <string>

#include "tests/strings/SizedBuffer.h"

namespace {

bool digit(char c) { return c >= '0' && c <= '9'; }
char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }

// Natural order, walked character by character.
int naturalOrder(const std::string& a, const std::string& b, bool caseSensitive) {
    if (a.empty()) return b.empty() ? 0 : 1;
    if (b.empty()) return -1;
    std::size_t i = 0, j = 0;
    const auto number = [](const std::string& text, std::size_t& at) {
        std::uint32_t value = 0;
        while (at < text.size() && digit(text[at])) value = value * 10 + static_cast<std::uint32_t>(text[at++] - '0');
        return value;
    };
    while (i < a.size()) {
        if (j == b.size()) return 1;
        if (digit(a[i]) && digit(b[j])) {
            const std::uint32_t x = number(a, i), y = number(b, j);
            if (x != y) return x > y ? 1 : -1;
        } else {
            const auto x = static_cast<signed char>(caseSensitive ? a[i] : upper(a[i]));
            const auto y = static_cast<signed char>(caseSensitive ? b[j] : upper(b[j]));
            if (x != y) return x > y ? 1 : -1;
            ++i, ++j;
        }
    }
    if (j < b.size()) return -1;
    return StrCompare(a.c_str(), -1, b.c_str(), -1);
}

std::string stepped(std::string_view name, int delta, bool keepWidth, std::size_t room) {
    SizedBuffer buffer(room, name);
    StrIncName(buffer.data(), buffer.size(), delta, keepWidth);
    return buffer.text() + (StrStringError() ? " full" : "");
}

}  // namespace

TEST(StrIncName, StepsTheLastDigitRun) {
    struct Row {
        const char* name;
        int delta;
        bool keepWidth;
        const char* after;
    };
    // clang-format off
    static constexpr Row rows[] = {
        // carries
        {"A9", 1, false, "A10"}, {"A99", 1, false, "A100"}, {"A1B", 1, false, "A2B"}, {"A19", 1, false, "A20"},
        {"A1B9C", 1, false, "A1B10C"}, {"A95", 9, false, "A104"}, {"A19", 2, false, "A21"},
        // borrows; one leading zero goes unless the width is kept
        {"A10", -1, false, "A9"}, {"A10", -1, true, "A09"}, {"A0", -1, false, "A9"}, {"A100", -1, false, "A99"},
        {"A000", -1, true, "A999"}, {"A20", -1, false, "A19"},
        // a zero that stood there goes too, one at a step
        {"A001", 1, false, "A02"}, {"A001", 1, true, "A002"}, {"A0", 0, false, "A0"},
        // nothing to step yet; one carry a digit
        {"", 1, false, "1"}, {"X", 1, false, "X1"}, {"X", -1, false, "X1"}, {"A5", 20, false, "A1?"},
    };
    // clang-format on
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << '"' << row.name << "\" by " << row.delta);
        EXPECT_EQ(stepped(row.name, row.delta, row.keepWidth, 12), row.after);
        CString name = row.name;
        StrIncName(name, row.delta, row.keepWidth);
        EXPECT_EQ(name, row.after);
    }
}

TEST(StrIncName, StaysInsideTheBuffer) {
    EXPECT_EQ(stepped("A9", 1, false, 3), "A10");
    EXPECT_EQ(stepped("A9", 1, false, 2), "A0 full");
    EXPECT_EQ(stepped("A8", 1, false, 2), "A9");
    EXPECT_EQ(stepped("A10", -1, false, 3), "A9");
    EXPECT_EQ(stepped("", 1, false, 1), "1");
    EXPECT_EQ(stepped("", 1, false, 0), " full");
    EXPECT_EQ(stepped("X", 1, false, 1), "X full");
    for (const int delta : {10, 19, -11, 250, -48, INT_MAX, INT_MIN})
        for (const char* name : {"A9", "999", "0", "A1B"})
            for (const std::size_t room : {3U, 4U, 8U}) stepped(name, delta, false, room);
}

TEST(StrSplitName, SplitsAtTheLastDigitRun) {
    struct Row {
        const char* name;
        const char* prefix;
        const char* suffix;
        int number, digits;
    };
    // clang-format off
    static constexpr Row rows[] = {
        {"D12Q", "D", "Q", 12, 2}, {"A1B2", "A1B", "", 2, 1}, {"7", "", "", 7, 1}, {"A007", "A", "", 7, 3},
        {"", "", "", 0, 0}, {"Name", "", "Name", 0, 0}, {"A12345", "A", "", 12345, 5}, {"A123456", "A", "", 33456, 6},
        {"A999999999", "A", "", 459999, 9}, {"A1234567890", "A1", "", 207890, 9},
    };
    // clang-format on
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        SizedBuffer prefix(12), suffix(12);
        int number = -1, digits = -1;
        StrSplitName(row.name, -1, prefix.data(), 12, suffix.data(), 12, &number, &digits);
        EXPECT_EQ(prefix.text(), row.prefix);
        EXPECT_EQ(suffix.text(), row.suffix);
        EXPECT_EQ(number, row.number);
        EXPECT_EQ(digits, row.digits);
        CString whole = row.name, rest;
        StrSplitName(whole, whole, rest, nullptr, nullptr);
        EXPECT_EQ(whole, row.prefix);
        EXPECT_EQ(rest, row.suffix);
    }
    const auto cut = [](const char* name, int size) {
        SizedBuffer prefix(2), suffix(1);
        StrSplitName(name, size, prefix.data(), prefix.size(), suffix.data(), suffix.size(), nullptr, nullptr);
        return prefix.bytes() + suffix.bytes() + (StrStringError() ? " cut" : "");
    };
    EXPECT_EQ(cut("AB1CD9", 4), "ABC");
    EXPECT_EQ(cut("ABC1", -1), "AB. cut");
    EXPECT_EQ(cut("A1BC", -1), "A.B cut");
}

TEST(StrCompareName, OrdersAsAPersonExpects) {
    // each before the next, with case
    static constexpr const char* ordered[] = {"\xE9", "A",     "A01",    "A1", "A1B", "A2",
                                              "A10",  "A10.1", "A10.02", "AB", "a1",  ""};
    const int count = static_cast<int>(std::size(ordered));
    for (int i = 0; i < count; ++i)
        for (int j = 0; j < count; ++j)
            EXPECT_EQ(StrCompareName(ordered[i], -1, ordered[j], -1, true), (i > j) - (i < j))
                << '"' << ordered[i] << "\" and \"" << ordered[j] << '"';
    EXPECT_EQ(StrCompareName("A1", -1, "a1", -1, false), -1) << "raw bytes break the tie";
    EXPECT_EQ(StrCompareName("a1", -1, "A2", -1, false), -1);
    EXPECT_EQ(StrCompareName("A4294967297", -1, "A1", -1, true), 1) << "equal after wrapping; raw bytes break the tie";
    EXPECT_EQ(StrCompareName("A12", 2, "A1", -1, true), 0);
    std::mt19937 random(31);
    for (int round = 0; round < 50000; ++round) {
        const std::string common = randomText(random, "aA01", 12);
        const std::string a = common + randomText(random, "abAB019\xE9.", 7);
        const std::string b = common + randomText(random, "abAB019\xE9.", 7);
        const bool caseSensitive = random() % 2;
        ASSERT_EQ(StrCompareName(a.c_str(), -1, b.c_str(), -1, caseSensitive), naturalOrder(a, b, caseSensitive))
            << "round " << round << ": '" << a << "' and '" << b << "'";
    }
}
