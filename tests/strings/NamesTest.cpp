#include <kora/Str.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <numeric>
#include <random>
#include <string>
#include <tuple>
#include <vector>

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

// By prefix, names with a number first, number, suffix.
auto listKey(const CString& name) {
    CString prefix, suffix;
    int number = 0, digits = 0;
    StrSplitName(name, prefix, suffix, &number, &digits);
    return std::tuple(std::vector<signed char>(prefix.begin(), prefix.end()), digits == 0, digits > 0 ? number : 0,
                      std::vector<signed char>(suffix.begin(), suffix.end()));
}

CString listText(const CStringArray& names, bool sortFirst = false) {
    CString text = "old";
    StrMakeNameListString(names, text, sortFirst);
    return text;
}

std::string stepped(std::string_view name, int delta, bool keepWidth, std::size_t room) {
    SizedBuffer buffer(room, name);
    StrIncName(buffer.data(), buffer.size(), delta, keepWidth);
    return buffer.text() + (StrStringError() ? " full" : "");
}

// The names with a bar between two.
std::string expanded(const CString& list, unsigned most = 1000) {
    CStringArray names = {"old"};
    if (!StrExpandNameList(list, names, most)) return names == CStringArray{"old"} ? "refused" : "changed";
    std::string text;
    for (const CString& name : names) text += (&name == &names[0] ? "" : "|") + name;
    return text;
}

}  // namespace

TEST(StrIncName, StepsTheLastDigitRun) {
    struct Row {
        const char* name;
        int delta;
        bool keepWidth;
        const char* after;
        std::size_t room = 12;
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
        // as far as the buffer reaches
        {"A9", 1, false, "A10", 3}, {"A9", 1, false, "A0 full", 2}, {"", 1, false, "1", 1}, {"", 1, false, " full", 0},
    };
    // clang-format on
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << '"' << row.name << "\" by " << row.delta);
        EXPECT_EQ(stepped(row.name, row.delta, row.keepWidth, row.room), row.after);
        if (row.room < 12) continue;
        CString name = row.name;
        StrIncName(name, row.delta, row.keepWidth);
        EXPECT_EQ(name, row.after);
    }
    for (const int delta : {250, -48, INT_MAX, INT_MIN})
        for (const std::size_t room : {3U, 4U, 8U}) stepped("A9", delta, false, room);
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
    }
}

TEST(StrCompareName, OrdersAsAPersonExpects) {
    EXPECT_EQ(StrCompareName("A4294967297", -1, "A1", -1, true), 1) << "equal after wrapping; raw bytes break the tie";
    EXPECT_EQ(StrCompareName("A4294967295", -1, "A4294967296", -1, true), 1) << "0 after wrapping";
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

TEST(StrSortNameList, AgreesWithAStableSort) {
    std::mt19937 random(5);
    for (int round = 0; round < 4000; ++round) {
        SCOPED_TRACE(round);
        CStringArray names(random() % (round % 10 ? 7 : 300));
        for (CString& name : names) {
            name = randomText(random, "A\xE9[", 1);
            if (random() % 8) name += std::to_string(random() % 2 ? random() % 12 : 123450 + random() % 16);
            name += randomText(random, "Qq]", 1);
        }
        std::vector<unsigned> tags(names.size() + 1);  // one more than there are names: it stays where it is
        std::iota(tags.begin(), tags.end(), 0U);
        std::vector<unsigned> expected = tags;
        std::stable_sort(expected.begin(), expected.end() - 1,
                         [&](unsigned a, unsigned b) { return listKey(names[a]) < listKey(names[b]); });
        StrSortNameList(names, tags);
        ASSERT_EQ(tags, expected);
    }
}

TEST(StrMakeNameListString, DrawsNeighboursTogether) {
    EXPECT_EQ(listText({"A1", "A2", "A3", "B", "C5", "C6"}), "A1..A3 B C5 C6");
    EXPECT_EQ(listText({"A3", "A2", "A1"}), "A3..A1");
    EXPECT_EQ(listText({"A3", "A2", "A1"}, true), "A1..A3");
    EXPECT_EQ(listText({"A1", "A2", "A1", "A0"}), "A1 A2 A1 A0") << "a range keeps its direction";
    EXPECT_EQ(listText({"A[1]", "A[2]", "A[3]"}), "A[1] A[2] A[3]");
    EXPECT_EQ(listText({"A32766", "A32767", "A32768", "A32769"}), "A32766..A32768 A32769") << "16-bit runs";
    EXPECT_EQ(listText({"A1", "A2", "B3", "B4Q", "B5Q", "B6Q", "", "A007"}), "A1 A2 B3 B4Q..B6Q  A007");
    EXPECT_EQ(listText({}), "");
}

TEST(StrExpandNameList, WritesRangesOutAsFarAsItIsAllowed) {
    // clang-format off
    for (const auto& [list, names] : {std::pair{"A1..A3 B C5", "A1|A2|A3|B|C5"}, {"A11..A9", "A11|A10|A9"}, {"", ""},
             {"A098..A101Q A098Q..A101Q", "A098..A101Q|A098Q|A099Q|A100Q|A101Q"}, {"\t A  B\n", "A|B"},
             {"x..1..x..3 7..9", "x..1|x..2|x..3|7|8|9"}, {"A1..A03", "A1|A2|A03"}, {"A99999..A100000", "A99999|A100000"},
             {"A12345678901234567890123..A12345678901234567890124", "A12345678901234567890123|A12345678901234567890124"},
             {"D[0]..D[7] A1..B3 .. A.. ..3 A1..A01 A1..A1", "D[0]..D[7]|A1..B3|..|A..|..3|A1..A01|A1..A1"}})
        EXPECT_EQ(expanded(list), names);
    // clang-format on
    EXPECT_EQ(expanded("B A1..A2", 3), "B|A1|A2");
    for (const char* list : {"B A1..A3", "A1..A3 B", "A B C D", "A0..A4000000000", "A1..A99999999999999999999999999",
                             "A18446744073709551615..A0"})
        EXPECT_EQ(expanded(list, 3), "refused") << list;
    const std::string name(400, 'n');
    EXPECT_EQ(expanded(name + "1.." + name + "3", 3), "refused") << "more characters than three names may have";
    EXPECT_EQ(expanded(std::string(300000, '.'), 1).size(), 300000u);
}

TEST(StrExpandNameList, IsTheInverseOfTheNameList) {
    for (unsigned seed = 0; seed < 3000; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&random](unsigned end) { return static_cast<unsigned>(random() % end); };
        CStringArray names(below(30)), again;
        unsigned number = 0, step = 1, which = 0;
        for (CString& name : names) {
            if (below(5) == 0) which = below(6), step = below(3);
            constexpr unsigned starts[] = {0, 7, 95, 996, 9995, 32760, 32766};
            number = below(5) ? (number + 1 - step) % 40000 : starts[below(7)];
            const std::string digits = std::to_string(number);  // of one width at least with each prefix
            name = std::vector{"A", "B", "", "x..", "C[", "D1Q"}[which] +
                   std::string(digits.size() < which ? which - digits.size() : 0, '0') + digits + (below(9) ? "" : "s");
        }
        CString list;
        StrMakeNameListString(names, list, /*sortFirst=*/false);
        ASSERT_TRUE(StrExpandNameList(list, again));
        ASSERT_EQ(again, names) << "seed " << seed << ": " << list;
    }
}
