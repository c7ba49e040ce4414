#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "tests/sheet/SheetModel.h"
#include "tests/support/VirtualSlot.h"

namespace {

using namespace kora::test;
using namespace std::string_literals;
using Place = SheetModel::Place;
using Text = char*;

struct Watched : ShtSheet {
    Watched() : ShtSheet(nullptr, nullptr, 0) {}
    bool ShtProgCellChange(short r, short c) override { return asked.emplace_back(r, c), asked.size() != stopAt; }
    void ShtProgCellChangeDone(bool completed) override { told.push_back(completed); }

    std::string written(bool selectionOnly) {
        Text buffer = nullptr;
        long length = -1;
        const bool done = ShtSheetToBuffer(buffer, length, selectionOnly);
        const std::string text = done ? std::string(buffer, static_cast<std::size_t>(length)) : "refused";
        return ShtBufferFree(buffer), text;
    }
    Place sizes(void (ShtSheet::*get)(short*, short*)) {
        short rows = -1, cols = -1;
        return (this->*get)(&rows, &cols), Place{rows, cols};
    }

    std::vector<std::pair<short, short>> asked;
    std::vector<bool> told;
    std::size_t stopAt = 0;
};
// Does the same, which cannot be known in front.
struct Overriding : Watched {
    bool ShtCellGet(short r, short c, bool& copied, Text& text, long& length, void*& data) override {
        return ShtSheet::ShtCellGet(r, c, copied, text, length, data);
    }
};

// A sheet and its model under random operations.
struct Pair {
    std::mt19937 random;
    std::unique_ptr<Watched> sheet;
    SheetModel m;
    std::vector<std::string> texts{"",     "a",       "b",     "a9",    "a10",
                                   "007",  "7",       "65543", "\x80z", "B",
                                   "t\tb", "ab\0cd"s, "\0z"s,  "lent",  std::string(200, 'q')};
    // The arguments of an operation.
    short r = 0, c = 0, to = 0;
    int k = 0;
    bool a = false, b = false;
    Text text = nullptr;
    long length = 0;

    explicit Pair(unsigned seed) : random(seed) {
        sheet = seed % 2 == 0 ? std::make_unique<Watched>() : std::make_unique<Overriding>();
        LRCT client = {100, 50, 100 + draw(5) * 300, 50 + draw(5) * 900};
        sheet->WinClientRectSet(&client), m.client = {client.bottom - 100, client.right - 50};
    }
    int draw(int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); }
    short number(unsigned axis) {
        const int count = m.count[axis], edges[] = {-2, -1, 32767, 0, count - 1, count, count + 1};
        const int most = count > 9 ? 5 : 7, drawn = draw(2 * most);
        return static_cast<short>(drawn < most ? edges[drawn] : draw(std::max(count, 1)));
    }
    void drawArguments() {
        r = number(0), c = number(1), to = number(random() % 2), k = draw(1000), a = draw(2) == 0, b = draw(2) == 0;
        std::string& drawn = texts[random() % texts.size()];
        const int size = static_cast<int>(drawn.size()),
                  lengths[] = {size, size, size, size / 2, size + 1, a ? -1 : 0, 0};
        length = lengths[draw(7)], text = length == 0 && b ? nullptr : drawn.data();
        m.stopAt = sheet->stopAt = static_cast<std::size_t>(std::max(draw(12) - 6, 0));
        m.asked.clear(), m.told.clear(), sheet->asked.clear(), sheet->told.clear();
    }
    static void same(bool is, bool due) { EXPECT_EQ(is, due); }
    void act(int operation);
    void compare();
    void compareCell(short row, short col);
};

void Pair::act(int operation) {
    ShtSheet& s = *sheet;
    const auto data = reinterpret_cast<std::intptr_t>(text);
    const auto show = static_cast<eShtCellShow>(m.isVirtual ? 0 : k % 4);
    const auto update = static_cast<eShtCellUpdate>(k % 3);
    const auto flags = static_cast<unsigned short>(k * 131);
    const char mark = static_cast<char>(k % 3 * 100);
    const auto turn = [&operation] { return operation-- == 0; };
    if (turn()) return same(s.ShtCellMultiLineSet(r, c, a), m.setAttribute(r, c, kMultiLine, a));
    if (turn()) return same(s.ShtCellProtectSet(r, c, a), m.setAttribute(r, c, kProtected, a));
    if (turn()) return same(s.ShtCellAlignSet(r, c, eShtCellAlign(k - 3)), m.setAttribute(r, c, kAlign, k - 3));
    if (turn()) return same(s.ShtCellFlagsSet(r, c, flags), m.setAttribute(r, c, kFlags, flags));
    if (turn()) return same(s.ShtCellDirtySet(r, c, a), m.setAttribute(r, c, kDirty, a));
    if (turn()) return same(s.ShtCellMarkSet(r, c, mark, k, update, show, show), m.setMark(r, c, mark, k));
    if (turn()) return same(s.ShtCellMarkClear(r, c, update, show, show), m.setMark(r, c, 0, 0));
    if (turn()) return void(texts[13][0] = mark);  // its borrowers see it
    if (turn()) return same(s.ShtRowHeadingSet(r, text, length, text), m.setHeading(0, r, text, length, data));
    if (turn()) return same(s.ShtColHeadingSet(c, text, length, text), m.setHeading(1, c, text, length, data));
    if (turn()) return same(s.ShtRowFlagsSet(r, flags), m.setHeadingAttribute(0, r, kFlags, flags));
    if (turn()) return same(s.ShtColFlagsSet(c, flags), m.setHeadingAttribute(1, c, kFlags, flags));
    if (turn()) return m.count[0] < 12 ? same(s.ShtRowAdd(r), m.add(0, r)) : same(s.ShtRowDel(r), m.del(0, r));
    if (turn()) return m.count[1] < 12 ? same(s.ShtColAdd(c), m.add(1, c)) : same(s.ShtColDel(c), m.del(1, c));
    if (turn()) return same(s.ShtRowDel(r), m.del(0, r));
    if (turn()) return same(s.ShtColDel(c), m.del(1, c));
    if (turn()) return same(s.ShtRowMove(r, to), m.move(0, r, to));
    if (turn()) return same(s.ShtColMove(c, to), m.move(1, c, to));
    if (turn()) return s.ShtRowClear(r), m.clearLine(0, r);
    if (turn()) return s.ShtColClear(c), m.clearLine(1, c);
    if (turn()) return s.ShtSheetSort(eShtSort(k % 3)), m.sort(eShtSort(k % 3));
    if (turn()) return s.ShtSheetClear(a, b), m.clear(a, b);
    if (turn()) return s.ShtSheetFillDown(a), m.fill(0, a);
    if (turn()) return s.ShtSheetFillRight(a), m.fill(1, a);
    if (turn()) return s.ShtSheetVirtSet(a), m.setVirtual(a);
    if (turn()) return s.ShtSheetDirtySet(a), void(m.dirty = a);
    if (turn()) return same(s.ShtSheetSelectNext(), m.selectNext());
    if (turn()) return k < 100 ? s.ShtSheetDelete(), m.remove() : void();
    if (turn() && m.heading(0, r)) return same(s.ShtRowSizeSet(r, short(k)), m.setHeadingAttribute(0, r, kSize, k));
    if (turn() && m.heading(1, c)) return same(s.ShtColSizeSet(c, short(k)), m.setHeadingAttribute(1, c, kSize, k));
    if (turn() && r >= 0 && c >= 0) return same(s.ShtCellShow(r, c, show, show), m.show(r, c, show != ShtCellShowNone));
    if (const CellModel* cell = m.cell(r, c); turn() && cell != nullptr && cell->isOwner && !cell->own.empty()) {
        void* ignored = nullptr;
        s.ShtCellGet(r, c, a, text, length, ignored);
        const std::string rest = cell->own.substr(static_cast<std::size_t>(k % length));
        text += k % length, length -= k % length;
        return same(s.ShtCellSet(r, c, true, text, length, nullptr, update, show, show),
                    m.set(r, c, true, rest.data(), length, 0));
    }
    if (turn()) {
        std::string read;
        for (int i = k % 20; i >= 0; --i) read += texts[random() % texts.size()] + "\t\t\r\n1"[draw(5)];
        length = static_cast<long>(read.size());
        return same(s.ShtSheetFromBuffer(read.data(), length, a, b), m.fromBuffer(read.data(), length, a, b));
    }
    if (operation < 5) {
        const auto edge = [this](unsigned axis) { return std::clamp<int>(number(axis), -1, 40); };
        const Place from = {edge(0), edge(1)}, last = a ? from : Place{edge(0), edge(1)};
        m.kind = eShtSelect(k < 600 ? 1 : k % 5), m.selection = {from, last};
        return s.ShtSheetSelectSet(m.kind, short(from[0]), short(from[1]), short(last[0]), short(last[1]));
    }
    same(s.ShtCellSet(r, c, a, text, length, text, update, show, show), m.set(r, c, a, text, length, data));
}

// A cell, or with row or column -1 a heading, as the readers tell it. Where a text lies that the cell owns is its own
// affair.
void Pair::compareCell(short row, short col) {
    static const CellModel kBlank;
    const CellModel *found = m.find({row, col}), &due = found != nullptr ? *found : kBlank;
    const bool isHeading = row == -1 || col == -1;
    ShtSheet& s = *sheet;
    Text is = nullptr;
    long size = -1;
    void* at = nullptr;
    bool owned = false;
    char mark = 'x';
    int value = 0;
    if (isHeading)
        owned = row == -1 ? s.ShtColHeadingGet(col, is, size, at) : s.ShtRowHeadingGet(row, is, size, at);
    else
        EXPECT_TRUE(s.ShtCellGet(row, col, owned, is, size, at) && s.ShtCellMarkGet(row, col, mark, value));
    decltype(due.attributes) all = {}, dueAll = due.attributes;
    if (isHeading) {
        all[kFlags] = row == -1 ? s.ShtColFlagsGet(col) : s.ShtRowFlagsGet(row);
        all[kSize] = !owned ? 0 : row == -1 ? s.ShtColSizeGet(col) : s.ShtRowSizeGet(row);
        dueAll[kDirty] = 0;
    } else {
        all = {s.ShtCellDirtyGet(row, col), s.ShtCellMultiLineGet(row, col), s.ShtCellProtectGet(row, col)};
        all[kAlign] = s.ShtCellAlignGet(row, col), all[kFlags] = s.ShtCellFlagsGet(row, col);
        all[kMark] = mark, all[kMarkValue] = value;
        EXPECT_TRUE((owned && size > 0) || is == due.text()) << row << ", " << col;
    }
    all[kData] = reinterpret_cast<std::intptr_t>(at);
    EXPECT_EQ(std::tuple(owned, std::string_view(is, static_cast<std::size_t>(size)), all),
              std::tuple(isHeading ? found != nullptr : due.isOwner, due.view(), dueAll))
        << "cell " << row << ", " << col;
}

void Pair::compare() {
    EXPECT_EQ(sheet->ShtSheetDirtyGet(), m.dirty || m.dirtyCells > 0);
    sheet->ShtSheetDirtySet(false);
    EXPECT_EQ(sheet->ShtSheetDirtyGet(), m.dirtyCells > 0) << "by cells";
    sheet->ShtSheetDirtySet(m.dirty);
    EXPECT_EQ(sheet->sizes(&ShtSheet::ShtSheetSizeGet), m.count);
    EXPECT_EQ(sheet->sizes(&ShtSheet::ShtSheetSizeUsedGet), m.used());
    short top = 0, left = 0, bottom = 0, right = 0;
    EXPECT_EQ(sheet->ShtSheetSelectGet(&top, &left, &bottom, &right), m.kind);
    const SheetModel::Range selection = {Place{top, left}, Place{bottom, right}};
    EXPECT_TRUE(m.kind == ShtSelectNone || selection == m.selection);
    EXPECT_EQ(sheet->written(false), m.toBuffer(false));
    EXPECT_EQ(sheet->written(true), m.toBuffer(true));
    for (short row = -2; row <= m.count[0]; ++row)
        for (short col = -2; col <= m.count[1]; ++col) compareCell(row, col);
}

// Every so many steps everything is compared. False at the first difference.
bool runsAsTheModel(unsigned seed, int every) {
    const auto failures = [] {
        return testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count();
    };
    const int before = failures();
    Pair pair(seed);
    for (int step = 1; step <= 200; ++step) {
        pair.drawArguments();
        const int operation = pair.draw(45);
        pair.act(operation);
        EXPECT_EQ(pair.sheet->asked, pair.m.asked);
        EXPECT_EQ(pair.sheet->told, pair.m.told);
        if (step % every == 0) pair.compare();
        if (failures() == before) continue;
        ADD_FAILURE() << "seed " << seed << " step " << step << " operation " << operation << " at " << pair.r << ", "
                      << pair.c << " to " << pair.to << " k " << pair.k << " a " << pair.a << " b " << pair.b
                      << " length " << pair.length << " text " << testing::PrintToString(pair.text) << " stop at "
                      << pair.m.stopAt << " selected " << testing::PrintToString(pair.m.selection);
        return false;
    }
    // Cell after cell is saved: the count tells how large it is.
    for (const auto& [at, cell] : std::map(pair.m.cells)) {
        if (at[0] < 0 || at[1] < 0) continue;
        pair.sheet->ShtCellDirtySet(short(at[0]), short(at[1]), false), pair.sheet->ShtSheetDirtySet(false);
        pair.m.setAttribute(at[0], at[1], kDirty, false);
        EXPECT_EQ(pair.sheet->ShtSheetDirtyGet(), pair.m.dirtyCells > 0) << "seed " << seed;
    }
    return failures() == before;
}

TEST(ShtSheet, ActsAsTheModel) {
    for (unsigned seed = 1; seed <= 300; ++seed)
        if (!runsAsTheModel(seed, 10)) return void(runsAsTheModel(seed, 1));  // which names the step
}

TEST(ShtSheet, SlotsStandInTheOrderThatModulesAreCompiledAgainst) {
    using S = ShtSheet;
    EXPECT_EQ(
        firstOutOfSlotFrom(
            virtualSlot(&S::ShtInited), &S::ShtInited, &S::ShtMove, &S::ShtShow, &S::ShtHide, &S::ShtSheetVirtGet,
            &S::ShtSheetVirtSet, &S::ShtSheetGridLinesGet, &S::ShtSheetGridLinesSet, &S::ShtSheetAxisSwapGet,
            &S::ShtSheetAxisSwapSet, &S::ShtSheetFontGet, &S::ShtSheetFontSet, &S::ShtSheetUserMoveOkayGet,
            &S::ShtSheetUserMoveOkaySet, &S::ShtSheetUserSizeOkayGet, &S::ShtSheetUserSizeOkaySet, &S::ShtSheetSizeGet,
            &S::ShtSheetSizeUsedGet, &S::ShtSheetDelete, &S::ShtSheetClear, &S::ShtSheetFillDown, &S::ShtSheetFillRight,
            &S::ShtSheetSort, &S::ShtSheetAutoSize, &S::ShtSheetDirtyGet, &S::ShtSheetDirtySet, &S::ShtSheetProtectGet,
            &S::ShtSheetProtectSet, &S::ShtSheetUpdateNow, &S::ShtSheetSelectGet, &S::ShtSheetSelectSet,
            &S::ShtSheetSelectNext, &S::ShtSheetToBuffer, &S::ShtSheetFromBuffer, &S::ShtSheetCut, &S::ShtSheetCopy,
            &S::ShtSheetPaste, &S::ShtRowAdd, &S::ShtRowDel, &S::ShtRowClear, &S::ShtRowMove, &S::ShtRowHeadingGet,
            &S::ShtRowHeadingSet, &S::ShtRowFlagsGet, &S::ShtRowFlagsSet, &S::ShtColAdd, &S::ShtColDel, &S::ShtColClear,
            &S::ShtColMove, &S::ShtColHeadingGet, &S::ShtColHeadingSet, &S::ShtColFlagsGet, &S::ShtColFlagsSet,
            &S::ShtCellGet, &S::ShtCellSet, &S::ShtCellShow, &S::ShtCellMarkGet, &S::ShtCellMarkSet,
            &S::ShtCellMarkClear, &S::ShtCellDirtyGet, &S::ShtCellDirtySet, &S::ShtCellMultiLineGet,
            &S::ShtCellMultiLineSet, &S::ShtCellProtectGet, &S::ShtCellProtectSet, &S::ShtCellAlignGet,
            &S::ShtCellAlignSet, &S::ShtCellFlagsGet, &S::ShtCellFlagsSet, &S::ShtUserCellChange, &S::ShtUserSelect,
            &S::ShtUserRightMouseDown, &S::ShtUserRightMouseUp, &S::ShtUserColMove, &S::ShtUserColMoveDone,
            &S::ShtUserRowMove, &S::ShtUserRowMoveDone, &S::ShtProgCellChange, &S::ShtProgCellChangeDone),
        0);
}

TEST(ShtSheet, WritesWhatItReads) {
    Watched sheet;
    EXPECT_EQ(sheet.written(false), "\r");
    std::string text = "a\tb\rc\td", lines = "x\ty\r\nz";
    EXPECT_TRUE(sheet.ShtSheetFromBuffer(text.data(), 7, false, false));  // nowhere to put it
    EXPECT_EQ(sheet.sizes(&ShtSheet::ShtSheetSizeGet), (Place{0, 0}));
    EXPECT_TRUE(sheet.ShtSheetFromBuffer(text.data(), 7, false, true));
    EXPECT_EQ(sheet.written(false), "a\tb\t\rc\td\t\r\t\t\r");
    sheet.ShtSheetDelete();
    EXPECT_TRUE(sheet.ShtSheetFromBuffer(lines.data(), 6, false, true));
    EXPECT_EQ(sheet.written(false), "x\ty\t\r\t\t\rz\t\t\r\t\t\r");
    EXPECT_TRUE(sheet.ShtCellDirtyGet(1, 0));
    sheet.ShtSheetSelectSet(ShtSelectCells, 0, 0, 32767, 32767);
    EXPECT_EQ(sheet.written(true), "refused");
}

TEST(ShtSheet, HasNoElementBeyond32766) {
    Watched sheet;
    constexpr Place kFull = {32767, 32767};
    EXPECT_TRUE(sheet.ShtCellFlagsSet(32766, 0, 1) && sheet.ShtColFlagsSet(32766, 1));
    EXPECT_EQ(sheet.sizes(&ShtSheet::ShtSheetSizeGet), kFull);
    for (const short n : {short{-1}, short{0}, short{32766}, short{32767}})
        EXPECT_FALSE(sheet.ShtRowAdd(n) || sheet.ShtColAdd(n)) << n;
    sheet.ShtSheetSelectSet(ShtSelectCells, 32766, 32766, 32767, 32767);
    std::string text = "a\tb\rc\td";
    EXPECT_TRUE(sheet.ShtSheetFromBuffer(text.data(), 7, true, true));
    sheet.ShtSheetFillDown(true), sheet.ShtSheetFillRight(true);
    EXPECT_EQ(sheet.asked.size(), 1U);
    EXPECT_EQ(sheet.written(true), "a\t\r\t\r");
    EXPECT_TRUE(sheet.ShtRowMove(32766, 0) && sheet.ShtColMove(32766, 0) && sheet.ShtRowMove(1, 32767));
    EXPECT_EQ(sheet.sizes(&ShtSheet::ShtSheetSizeUsedGet), (Place{1, 1}));
    EXPECT_TRUE(sheet.ShtRowDel(32766) && sheet.ShtRowAdd(-1) && !sheet.ShtRowDel(32767));
    EXPECT_EQ(sheet.sizes(&ShtSheet::ShtSheetSizeGet), kFull);
}

// Who is told of new rows may take them away.
struct Emptied : ShtSheet {
    Emptied() : ShtSheet(nullptr, nullptr, 0) { ShtCellFlagsSet(0, 0, 1), isArmed = true; }
    void WinInvalidate(LRCT*) override { std::exchange(isArmed, false) ? ShtSheetDelete() : void(); }
    bool isArmed = false;
};

TEST(ShtSheet, ShowsNoCellThatHasGone) {
    for (const auto show : {ShtCellShowFirst, ShtCellShowMiddle, ShtCellShowLast}) {
        Emptied sheet;
        short first = -1;
        sheet.ShtCellShow(9, 9, show, show), sheet.ShtScrollGet(&first, nullptr);
        EXPECT_EQ(first, 0);
    }
}

TEST(ShtSheet, GrowsToFillItsPlace) {
    Watched sheet;
    LRCT small = {0, 0, 700, 3500}, large = {0, 0, 1100, 5500};
    sheet.ShtSheetVirtSet(true), sheet.WinClientRectSet(&small);
    EXPECT_EQ(sheet.sizes(&ShtSheet::ShtSheetSizeGet), (Place{6, 6}));
    sheet.WinClientRectSet(&large), sheet.WinClientRectSet(&small);
    EXPECT_EQ(sheet.sizes(&ShtSheet::ShtSheetSizeGet), (Place{10, 10}));
}

}  // namespace
