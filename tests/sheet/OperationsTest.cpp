#include <gtest/gtest.h>
#include <kora/Ini.h>
#include <kora/Sht.h>
#include <kora/Test.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/AllocationFault.h"

namespace {

/// Four rows of four clean cells that show their numbers; in a ragged one row n has n + 1 cells.
class WatchedSheet : public ShtSheet {
public:
    explicit WatchedSheet(bool ragged = false) : ShtSheet(nullptr, nullptr, 0) {
        ShtColFlagsSet(3, 0);
        for (short r = 0; r < 4; ++r)
            for (short c = 0; c <= (ragged ? r : 3); ++c) set(r, c, std::to_string(10 * r + c));
        ShtSheetDirtySet(false);
        done.reserve(64);
    }
    void set(short r, short c, std::string text) {
        ShtCellSet(r, c, true, text.data(), static_cast<long>(text.size()), nullptr, {}, {}, {});
        ShtCellDirtySet(r, c, false);
    }
    std::string all() {
        char* buffer;
        long length;
        ShtSheetToBuffer(buffer, length, false);
        const std::string text(buffer, static_cast<std::size_t>(length));
        ShtBufferFree(buffer);
        return text;
    }
    int dirtyBits() {
        int dirty = 0;
        for (int n = 0; n < 16; ++n) dirty += ShtCellDirtyGet(static_cast<short>(n / 4), static_cast<short>(n % 4));
        return dirty;
    }
    // Whether the count of dirty cells is right: then it is 0 when all of them have been removed.
    bool countIsRight() {
        while (ShtRowDel(0) || ShtColDel(0)) continue;
        ShtSheetDirtySet(false);
        return !ShtSheetDirtyGet() && ShtCellDirtySet(0, 0, true) && ShtSheetDirtyGet();
    }
    bool ShtProgCellChange(short, short) override { return ++asked != actAt || act(); }
    void ShtProgCellChangeDone(bool completed) override { done.push_back(completed); }
    void WinCursorSet(short cursor) override { shown = cursor; }
    void WinBusyCursorNext() override { ++steps; }
    void WinTextMeasure(const char* text, long length, LPNT* size) override {
        EXPECT_GT(length, 0);
        *size = {*text == 'T' ? 300 : 200, static_cast<std::int32_t>(100 * length)};
    }

    int asked = 0, steps = 0, shown = 0, actAt = 0;  // the hook that acts, counted from 1
    std::function<bool()> act;
    std::vector<bool> done;
};

struct Operation {
    int cells, steps;
    bool tellsDone;
    void (*run)(ShtSheet&);
};

void select(ShtSheet& s, short top, short left, short bottom, short right) {
    s.ShtSheetSelectSet(ShtSelectCells, top, left, bottom, right);
}

// What a hook may do, and what moves the first visible row and column.
bool change(char what, short at, ShtSheet& s) {
    if (what == '+') return s.ShtRowAdd(at) && s.ShtColAdd(at);
    if (what == '-') return s.ShtRowDel(at) && s.ShtColDel(at);
    if (what == '>') return s.ShtRowMove(at, 99) && s.ShtColMove(at, 99);
    if (what == '<') return s.ShtRowMove(3, at) && s.ShtColMove(3, at);
    if (what == 'n') return false;
    if (what == 'd') return s.ShtSheetDelete(), true;
    if (what == 'c') return s.ShtSheetClear(false, true), true;
    throw std::logic_error("hook");
}

const Operation operations[] = {
    {16, 4, true, [](ShtSheet& s) { s.ShtSheetClear(false, true); }},
    {6, 3, true, [](ShtSheet& s) { select(s, 1, 2, 32767, 3), s.ShtSheetClear(true, false); }},
    {6, 6, true, [](ShtSheet& s) { select(s, 0, 1, 3, 2), s.ShtSheetFillDown(false); }},
    {2, 2, true, [](ShtSheet& s) { select(s, 2, 2, 32767, 32767), s.ShtSheetFillDown(false); }},
    {6, 6, true, [](ShtSheet& s) { select(s, 1, 0, 2, 3), s.ShtSheetFillRight(true); }},
    {4, 0, false, [](ShtSheet& s) { s.ShtRowClear(1); }},
    {4, 0, false, [](ShtSheet& s) { s.ShtColClear(3); }},
};

TEST(SheetOperations, StopWhereAHookRefusesAndBearWhateverItDoes) {
    static constexpr std::pair<char, short> changes[] = {{'n', 0}, {'+', 0}, {'+', 99}, {'-', 0}, {'-', -1},
                                                         {'>', 0}, {'<', 0}, {'d', 0},  {'c', 0}, {'!', 0}};
    for (const Operation& operation : operations) {
        for (int nth = 1; nth <= operation.cells + 1; ++nth) {
            for (const auto& [what, at] : changes) {
                SCOPED_TRACE(testing::Message() << &operation - operations << ", " << nth << ", " << what << at);
                WatchedSheet sheet;
                sheet.set(0, 1, std::string(500, 'x'));  // gone with its cell
                sheet.actAt = nth;
                sheet.act = [&, what = what, at = at] { return change(what, at, sheet); };
                try {
                    operation.run(sheet);
                } catch (const std::logic_error&) {
                    EXPECT_TRUE(sheet.done.empty());
                }
                const bool completed = nth > operation.cells;
                if (what == 'n' || completed) {
                    EXPECT_EQ(sheet.asked, completed ? operation.cells : nth);
                    EXPECT_EQ(sheet.dirtyBits(), sheet.asked);
                    EXPECT_EQ(sheet.done, std::vector<bool>(operation.tellsDone, completed));
                }
                EXPECT_TRUE(!completed || sheet.steps == operation.steps);
                EXPECT_TRUE(operation.steps == 0 || sheet.shown == 32512);
                EXPECT_TRUE(sheet.countIsRight());
            }
        }
    }
}

TEST(SheetOperations, FillingHeadingsDownReplacesTheDirtyCount) {
    WatchedSheet sheet;
    for (short c = 0; c < 3; ++c) sheet.ShtCellDirtySet(0, c, true);
    select(sheet, 1, 3, 32767, 3);
    sheet.ShtSheetFillDown(true);
    sheet.ShtSheetDirtySet(false);
    EXPECT_TRUE(sheet.ShtSheetDirtyGet());
    sheet.ShtCellDirtySet(0, 0, false);
    EXPECT_FALSE(sheet.ShtSheetDirtyGet());
}

TEST(SheetOperations, WithoutMemoryLeaveTheSheetWhole) {
    static constexpr bool (*runs[])(ShtSheet&) = {
        [](ShtSheet& s) { return s.ShtRowAdd(1); },
        [](ShtSheet& s) { return s.ShtColAdd(1); },
        [](ShtSheet& s) { return s.ShtColMove(0, 3); },
        [](ShtSheet& s) { return s.ShtRowAdd(99), true; },
        [](ShtSheet& s) { return select(s, 3, 0, 3, 3), s.ShtSheetFillRight(true), true; },
        [](ShtSheet& s) { return select(s, 0, 0, 3, 3), s.ShtSheetFillDown(false), true; },
        [](ShtSheet& s) { return select(s, 3, 0, 3, 3), s.ShtSheetCut(), true; }};
    for (const auto run : runs) {
        for (int nth = 1;; ++nth) {
            WatchedSheet sheet(/*ragged=*/true);
            sheet.set(3, 0, std::string(200, 'x'));
            const std::string before = sheet.all();
            kora::test::AllocationFault fault(nth);
            EXPECT_TRUE(run(sheet) || sheet.all() == before) << nth;
            if (!fault.wasHit()) break;
            EXPECT_TRUE(sheet.countIsRight()) << nth;
        }
    }
}

TEST(SheetOperations, SizeRowsAndColumnsToTheirTexts) {
    // arguments; heights of three rows, widths of four columns and the band
    static constexpr short rows[][11] = {{0, 0, 0, 7, 7, 7, 9, 9, 9, 9, 50},
                                         {1, 0, 1, 200, 200, 200, 9, 9, 9, 9, 500},
                                         {2, 0, 2, 200, 300, 200, 9, 9, 9, 9, 1000},
                                         {0, 2, 3, 7, 7, 7, 1500, 700, 200, 32767, 600}};
    for (const auto& row : rows) {
        WatchedSheet sheet;
        sheet.ShtSheetDelete();
        char column[] = "columnheading", name[] = "name";
        sheet.ShtColHeadingSet(0, column, 13, nullptr);
        sheet.ShtRowHeadingSet(2, name, 4, nullptr);
        sheet.set(1, 1, "Tall.");
        sheet.set(2, 3, std::string(400, 'x'));
        for (short r = 0; r < 3; ++r) sheet.ShtRowSizeSet(r, 7);
        for (short c = 0; c < 4; ++c) sheet.ShtColSizeSet(c, 9);
        sheet.ShtColSizeSet(-1, 50);
        sheet.ShtSheetAutoSize(eShtAutoSize(row[0]), eShtAutoSize(row[1]), eShtHeaderSize(row[2]));
        for (short r = 0; r < 3; ++r) EXPECT_EQ(sheet.ShtRowSizeGet(r), row[3 + r]) << &row - rows << ", " << r;
        for (short c = 0; c < 4; ++c) EXPECT_EQ(sheet.ShtColSizeGet(c), row[6 + c]) << &row - rows << ", " << c;
        EXPECT_EQ(sheet.ShtColSizeGet(-1), row[10]);
        EXPECT_EQ(sheet.steps, &row == rows ? 0 : 3);
    }
}

TEST(SheetOperations, ExchangeTheSelectionWithTheClipboard) {
    TestPresenter presenter;
    WatchedSheet sheet;
    ClpClear();
    sheet.ShtSheetPaste();
    sheet.ShtSheetCopy();
    sheet.ShtSheetCut();
    EXPECT_EQ(presenter.beeps, 2);  // nothing to paste, nothing selected
    EXPECT_FALSE(ClpTextAvailable() || sheet.ShtSheetDirtyGet());
    sheet.ShtCellProtectSet(2, 2, true);
    select(sheet, 1, 2, 2, 3);
    sheet.ShtSheetCut();
    select(sheet, 3, 0, 3, 0);
    sheet.ShtSheetPaste();  // of two rows only one is there
    EXPECT_EQ(sheet.all(), "0\t1\t2\t3\t\r10\t11\t\t\t\r20\t21\t22\t\t\r12\t13\t32\t33\t\r\t\t\t\t\r");
    EXPECT_EQ(sheet.done, std::vector({true, true}));
    EXPECT_EQ(presenter.beeps, 2);
}

TEST(ShtSheet, TakesItsFontAndColoursFromTheSettings) {
    const TestFolder folder;
    folder.Write("ts.ini",
                 "[System SpreadSheet]\nCell Font = \"Face\" Bold 24\nCell Protected Color = pink\n"
                 "GridLines Color = 0x8000ff00\n");
    ASSERT_TRUE(IniMainFileSet(folder.Path("ts.ini").c_str()));
    ShtSheet sheet(nullptr, nullptr, 0);
    ASSERT_TRUE(IniMainFileSet(folder.Path("none.ini").c_str()));
    sheet.ShtCellFlagsSet(0, 0, 1);
    for (const short n : {short{-1}, short{0}}) {
        EXPECT_EQ(sheet.ShtRowSizeGet(n), 400);
        EXPECT_EQ(sheet.ShtColSizeGet(n), 2000);
    }
    EXPECT_EQ(sheet.ShtSheetProtectColourGet(), 15);
    EXPECT_EQ(static_cast<unsigned>(sheet.ShtSheetGridLinesColourGet()), 0x8000ff00U);
}

}  // namespace
