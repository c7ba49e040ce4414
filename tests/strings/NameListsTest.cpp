#include <kora/Str.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "tests/strings/SizedBuffer.h"

namespace {

struct Item {
    CString name, prefix, suffix;
    int number = 0, digits = 0;
    unsigned tag = 0;
};

std::vector<Item> itemsOf(const CStringArray& names) {
    std::vector<Item> items(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        items[i].name = names[i];
        items[i].tag = static_cast<unsigned>(i);
        StrSplitName(names[i], items[i].prefix, items[i].suffix, &items[i].number, &items[i].digits);
    }
    return items;
}

int compareItems(const Item& a, const Item& b) {
    const auto compare = [](const CString& x, const CString& y) { return StrCompare(x.c_str(), -1, y.c_str(), -1); };
    if (const int byPrefix = compare(a.prefix, b.prefix)) return byPrefix;
    if ((a.digits > 0) != (b.digits > 0)) return a.digits > 0 ? -1 : 1;
    if (a.digits > 0 && a.number != b.number) return a.number < b.number ? -1 : 1;
    return compare(a.suffix, b.suffix);
}

// The list text, told item by item.
CString listOf(const std::vector<Item>& items) {
    CString text;
    bool running = false;
    int length = 0, direction = 0;
    Item run;  // the newest of the run
    std::int16_t last = 0;
    const auto close = [&] {
        if (running && length >= 3) text.append("..").append(run.name);
        if (running && length == 2) text.append(" ").append(run.name);
        running = false;
    };
    for (std::size_t i = 0; i < items.size(); ++i) {
        const Item& item = items[i];
        const bool same = running && item.suffix == run.suffix && item.prefix == run.prefix && item.digits > 0;
        const bool up = same && item.number == last + 1 && direction >= 0;
        const bool down = same && item.number == last - 1 && direction <= 0;
        if (up || down) {
            direction = up ? 1 : -1;
            ++length;
        } else {
            close();
            text.append(i == 0 ? "" : " ").append(item.name);
            running = item.digits > 0 && item.name.find_first_of("[]") == CString::npos;
            length = 1;
            direction = 0;
        }
        run = item;
        last = static_cast<std::int16_t>(item.number);
    }
    close();
    return text;
}

CString listText(const CString& line, bool sortFirst = false) {
    CStringArray names;
    CString item, text = "old";
    for (int at = 0; StrGetItem(at, line, item);) names.push_back(item);
    StrMakeNameListString(names, text, sortFirst);
    return text;
}

CStringArray randomNames(std::mt19937& random, std::size_t most) {
    CStringArray names(random() % (most + 1));
    for (CString& name : names) {
        name = randomText(random, "A\xE9[", 1);
        if (random() % 8)
            name += std::to_string(random() % 2 ? random() % 12 : random() % 9 ? 32760 + random() % 16 : 123456);
        name += randomText(random, "Qq]", 1);
    }
    return names;
}

}  // namespace

TEST(StrMakeNameListString, DrawsNeighboursTogether) {
    EXPECT_EQ(listText("A1 A2 A3 B C5 C6"), "A1..A3 B C5 C6");
    EXPECT_EQ(listText("A1 A2"), "A1 A2");
    EXPECT_EQ(listText("A3 A2 A1"), "A3..A1");
    EXPECT_EQ(listText("A3 A2 A1", true), "A1..A3");
    EXPECT_EQ(listText("A1 A2 A1 A0"), "A1 A2 A1 A0") << "a range keeps its direction";
    EXPECT_EQ(listText("A[1] A[2] A[3]"), "A[1] A[2] A[3]");
    EXPECT_EQ(listText("A32766 A32767 A32768 A32769"), "A32766..A32768 A32769") << "16-bit runs";
    EXPECT_EQ(listText(""), "");
    EXPECT_EQ(listText("\"\" A1"), " A1");
    // names without digits are all suffix; A123456 counts as 33456
    EXPECT_EQ(listText("B A10 A2 A '' A2b A2B \xE9_1 A123456 A40000", true),
              " A B \xE9_1 A2 A2B A2b A10 A123456 A40000");
}

TEST(NameLists, AgreeWithTheItemByItemRules) {
    std::mt19937 random(5);
    for (int round = 0; round < 4000; ++round) {
        SCOPED_TRACE(round);
        CStringArray names = randomNames(random, round % 10 == 0 ? 300 : 6);
        // runs in both directions
        for (unsigned at = 32764; random() % 6; at += random() % 4 ? 1U : -1U)
            names.push_back(CString("A").append(std::to_string(at)));
        std::vector<Item> items = itemsOf(names);
        CString text;
        StrMakeNameListString(names, text, false);
        ASSERT_EQ(text, listOf(items));
        // the library keeps equal items in order as well
        std::stable_sort(items.begin(), items.end(),
                         [](const Item& a, const Item& b) { return compareItems(a, b) < 0; });
        std::vector<unsigned> tags(names.size()), expected;
        std::iota(tags.begin(), tags.end(), 0U);
        for (const Item& item : items) expected.push_back(item.tag);
        StrSortNameList(names, tags);
        ASSERT_EQ(tags, expected);
        if (names.empty()) continue;
        StrMakeNameListString(names, names[0], true);  // the result may be one of the names
        ASSERT_EQ(names[0], listOf(items));
    }
}

TEST(StrSortNameList, UnequalArraysAreCutToTheShorter) {
    std::vector<unsigned> tags{7, 8, 9, 10};
    StrSortNameList({"b1", "a1"}, tags);
    EXPECT_EQ(tags, (std::vector<unsigned>{8, 7, 9, 10}));
    tags.resize(1);
    StrSortNameList({"b1", "a1"}, tags);
    EXPECT_EQ(tags, (std::vector<unsigned>{8}));
}
