#include <gtest/gtest.h>
#include <kora/Sht.h>
#include <kora/SortTree.h>

#include <algorithm>
#include <functional>
#include <random>

#include "sheet/TextOrder.h"

using namespace std::literals;
namespace {
constexpr auto kLetters = "0123456789aB \x7F\x80\xFF/:\0"sv;

std::string randomText(std::mt19937& random, std::string_view letters, unsigned most) {
    std::string text(random() % (most + 1), ' ');
    for (char& c : text) c = letters[random() % letters.size()];
    return text;
}

int literalOrder(std::string_view a, std::string_view b) {
    if (a.empty() || b.empty()) return a.empty() - b.empty();
    const auto digit = [](std::string_view s, std::size_t i) { return i < s.size() && s[i] >= '0' && s[i] <= '9'; };
    std::size_t i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        int x = static_cast<signed char>(a[i]), y = static_cast<signed char>(b[j]);
        if (digit(a, i) && digit(b, j)) {
            for (x = 0; digit(a, i); ++i) x = (x * 10 + a[i] - '0') & 0xFFFF;
            for (y = 0; digit(b, j); ++j) y = (y * 10 + b[j] - '0') & 0xFFFF;
        } else
            ++i, ++j;
        if (x != y) return x < y ? -1 : 1;
    }
    return (i < a.size()) - (j < b.size());
}

TEST(SheetTextOrder, IsTheStepByStepOne) {
    std::mt19937 random(1);
    for (int round = 0; round < 50000; ++round) {
        const std::string stem = randomText(random, kLetters, round % 3 == 0 ? 20 : 0);
        const auto text = [&] { return stem + randomText(random, kLetters.substr(0, round % 2 ? 10 : 19), 7); };
        const std::string a = text(), b = text();
        ASSERT_EQ(kora::compareCellTexts(a, b), literalOrder(a, b)) << testing::PrintToString(std::pair(a, b));
    }
}

struct WatchedSheet : ShtSheet {
    std::string calls;
    std::string_view got;
    std::function<bool()> onChange = [] { return true; };
    std::function<void()> onAdvance = [] {};
    std::function<void(long&)> onGet = [](long&) {};
    WatchedSheet() : ShtSheet(nullptr, nullptr, 0) {}
    bool ShtProgCellChange(short, short) override { return calls += 'c', onChange(); }
    void ShtProgCellChangeDone(bool completed) override { calls += completed ? 'D' : 'd'; }
    void WinBusyCursorNext() override { calls += '.', onAdvance(); }
    void ShtSheetDirtySet(bool on) override { calls += on ? 'M' : '?'; }
    bool ShtCellShow(short, short, eShtCellShow r, eShtCellShow c) override { return calls += r + c ? '0' : '?', true; }
    bool ShtCellGet(short r, short c, bool& copied, char*& text, long& length, void*& data) override {
        ShtSheet::ShtCellGet(r, c, copied, text, length, data);
        if (length > 0) got = {text, static_cast<std::size_t>(length)};
        return onGet(length), false;
    }
};

bool read(ShtSheet& sheet, std::string_view text, short top = 0, short left = 0, bool create = true) {
    sheet.ShtSheetSelectSet(ShtSelectCells, top, left, top, left);
    return sheet.ShtSheetFromBuffer(const_cast<char*>(text.data()), static_cast<long>(text.size()), true, create);
}
std::string written(ShtSheet& sheet) {
    char* buffer;
    long length;
    if (!sheet.ShtSheetToBuffer(buffer, length, false)) return buffer == nullptr && length == 0 ? "-" : "?";
    return std::shared_ptr<char>(buffer, ShtBufferFree), std::string(buffer, static_cast<std::size_t>(length));
}

struct RowTree : SortTree {
    struct Row : DoubleListElement {
        unsigned short number = 0;
        std::vector<std::string> texts;  // heading, cells
    };
    std::size_t first = 0, behind = 1;  // which texts are compared
    short Compare(DoubleListElement* a, DoubleListElement* b) override {
        const auto &x = static_cast<Row*>(a)->texts, &y = static_cast<Row*>(b)->texts;
        for (std::size_t c = first; c < std::min({x.size(), y.size(), behind}); ++c)
            if (const int order = literalOrder(x[c], y[c])) return static_cast<short>(order);
        return 0;
    }
};

// Rows of few different values, with equally many cells and with some that run out against others.
TEST(ShtSheetSort, GivesTheOrderOfTheTree) {
    for (unsigned seed = 0; seed < 1500; ++seed) {
        std::mt19937 random(seed);
        const auto count = random() % 30, most = random() % 5;
        const auto letters = kLetters.substr(random() % 15, 3);
        const std::string stem = randomText(random, kLetters.substr(0, 18), 10);
        ShtSheet sheet(nullptr, nullptr, 0);
        RowTree tree;
        if (seed % 4 != 0) tree.first = 1, tree.behind = 99;
        for (short r = 0; r < static_cast<short>(count); ++r) {
            auto* const row = new RowTree::Row;
            row->number = static_cast<unsigned short>(r);
            row->texts.resize(1 + (seed % 3 == 0 ? most : random() % (most + 1)));
            for (std::string& text : row->texts)
                text = std::string(random() % 3, '0') + stem + randomText(random, letters, seed % 5);
            for (std::size_t c = 1; c < row->texts.size(); ++c)
                read(sheet, row->texts[c] + '\t', r, static_cast<short>(c - 1));
            sheet.ShtRowHeadingSet(r, row->texts[0].data(), -1, nullptr);
            sheet.ShtRowFlagsSet(r, row->number);
            tree.Insert(row);
        }
        DoubleList rows;
        tree.Flatten(rows);
        sheet.ShtSheetSort(static_cast<eShtSort>(seed % 4));
        for (short r = 0; const auto* row = static_cast<RowTree::Row*>(rows.Next()); ++r)
            ASSERT_EQ(sheet.ShtRowFlagsGet(r), row->number) << "seed " << seed << " row " << r;
    }
}

TEST(ShtSheetSort, TakesItsStepsWithAllRowsInTheSheet) {
    WatchedSheet sheet;
    for (std::size_t rows = 0; rows < 4; ++rows) {
        read(sheet, "c\rb\ra\r"sv.substr(0, 2 * rows));
        sheet.onAdvance = [&] { EXPECT_EQ(std::ranges::count(written(sheet), '\r'), rows + 1); };
        sheet.calls.clear();
        sheet.ShtSheetSort(ShtSortCells);
        EXPECT_EQ(sheet.calls, std::string(2 * rows, '.') + "0M");
    }
    sheet.onAdvance = [&] { sheet.ShtRowDel(0); };
    sheet.ShtSheetSort(ShtSortCells);
    EXPECT_EQ(written(sheet), "\t\r");
}

// Whatever a text holds, several times over, with hooks that refuse at some cell.
TEST(ShtSheetFromBuffer, ReadsStepByStep) {
    for (unsigned seed = 0; seed < 3000; ++seed) {
        std::mt19937 random(seed);
        WatchedSheet watched;
        ShtSheet plain(nullptr, nullptr, 0);
        ShtSheet& sheet = seed % 2 ? watched : plain;
        std::string cells[64][64];
        for (short rows = 0, cols = 0, pass = 0; pass < 4; ++pass) {
            const std::string text = randomText(random, "xy\xE4\t\r\n\t\r\n\0"sv.substr(0, 9 + seed / 2 % 2), 40);
            const auto top = static_cast<short>(random() % 4), left = static_cast<short>(random() % 4);
            const bool create = random() % 2, reads = !text.empty() && (rows > 0 || create);
            const std::size_t most = seed % 2 ? 1 + random() % 20 : 99;
            std::string rest = reads ? text : "", calls, expected;
            for (short r = top, c = left; !rest.empty() && calls.size() < most;) {
                const std::size_t end = std::min(rest.find_first_of("\t\r\n"), rest.size());
                if (create) rows = std::max<short>(rows, r + 1), cols = std::max<short>(cols, c + 1);
                if (r < rows && c < cols && !sheet.ShtCellProtectGet(r, c))
                    cells[r][c] = rest.substr(0, end).c_str(), calls += 'c';
                ++c;
                if (end < rest.size() && rest[end] != '\t') ++r, c = left;
                rest.erase(0, end + 1);
            }
            for (short r = 0; r <= rows; ++r, expected += '\r')
                for (short c = 0; c <= cols; ++c) expected += (c > 0 ? "\t" : "") + cells[r][c];
            watched.onChange = [&] { return watched.calls.size() != most; };
            watched.calls.clear();
            EXPECT_TRUE(read(sheet, text, top, left, create));
            ASSERT_EQ(written(sheet), expected) << "seed " << seed << testing::PrintToString(text);
            ASSERT_EQ(watched.calls, seed % 2 == 0 || !reads ? "" : calls + (calls.size() == most ? 'd' : 'D'));
            if (rows > 1 && cols > 1) sheet.ShtCellProtectSet(1, 1, true);
        }
    }
}

// Texts that lie in the sheet, hooks that empty it, texts that are longer or shorter when they are asked for again.
TEST(ShtSheetExchange, SurvivesWhateverTheSheetHolds) {
    WatchedSheet sheet;
    sheet.ShtCellSet(0, 1, true, const_cast<char*>("a\tbb\tc\rd"), -1, nullptr, {}, {}, {});
    written(sheet);
    read(sheet, sheet.got);
    EXPECT_EQ(written(sheet), "a\tbb\tc\t\rd\t\t\t\r\t\t\t\r");
    ShtSheet plain(nullptr, nullptr, 0);
    read(plain, std::string(63996, 'x'));
    EXPECT_EQ(written(plain).size(), 64000U);
    read(plain, std::string(63997, 'x'));
    EXPECT_EQ(written(plain), "-");
    for (const long wrong : {-1L, 1L, 63979L, 1L << 30}) {
        sheet.onGet = [wrong, calls = 0](long& length) mutable { length = ++calls > 12 ? wrong : length; };
        EXPECT_EQ(written(sheet), "-");
    }
    sheet.onChange = [&] { return sheet.ShtSheetDelete(), true; };
    read(sheet, "a\tb\rc\td\re");
    EXPECT_EQ(written(sheet), "\r");
}
}  // namespace
