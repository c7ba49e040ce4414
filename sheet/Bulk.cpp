#include <kora/Sht.h>
#include <kora/Str.h>

#include <optional>
#include <string>

#include "sheet/BusyCursor.h"
#include "sheet/State.h"
#include "strings/Guarded.h"

using kora::BusyCursor;
using kora::kToEnd;
using kora::SheetExtent;
using kora::SheetLine;
using kora::SheetRange;
using kora::SheetState;
using kora::TShtCell;
using kora::TShtRow;
using kora::TShtTable;

namespace {

// What fills copy, held apart, since a hook may change or destroy where it comes from. Nothing when there is no text,
// or no memory to hold it.
std::optional<std::string> textOf(const TShtCell* cell) {
    std::optional<std::string> text;
    if (cell == nullptr || cell->text() == nullptr) return text;
    const std::int32_t length = cell->length();
    // With the NUL, so that it is told from a text that was said to be empty.
    const std::size_t size = static_cast<std::size_t>(length < 0 ? StrLength(cell->text(), length) + 1 : length);
    kora::guarded([&] { text.emplace(cell->text(), size); });
    return text;
}

void setText(SheetState& state, TShtCell& cell, const std::optional<std::string>& text) {
    state.markDirty(cell);
    if (text)
        state.table.store.copy(cell, text->data(), text->size());
    else
        state.table.store.copy(cell, nullptr, 0);
}

void clear(SheetState& state, TShtTable::Place place) {
    setText(state, place.row[place.number], {});
    state.table.clearMark(place);
}

}  // namespace

bool ShtSheet::askHook(int r, int c) { return ShtProgCellChange(static_cast<short>(r), static_cast<short>(c)); }

bool ShtSheet::bulkSet(int r, int c, const std::optional<std::string>& text) {
    TShtRow* const row = state_->table.row(r);
    if (row == nullptr || state_->table.column(c) == nullptr) return true;
    TShtCell* const cell = state_->table.makeCell(*row, c);
    if (cell == nullptr || cell->isProtected) return true;
    setText(*state_, *cell, text);
    return askHook(r, c);
}

bool ShtSheet::bulkClear(int r, int c) {
    TShtCell* const cell = state_->table.cell(r, c);
    if (cell == nullptr || cell->isProtected) return true;
    clear(*state_, {*state_->table.row(r), c});
    return askHook(r, c);
}

void ShtSheet::ShtSheetClear(bool selectionOnly, bool headingsToo) {
    endEdit();
    const auto& table = state_->table;
    SheetRange range = {0, 0, table.rowCount() - 1, table.colCount() - 1};
    if (selectionOnly && !selectedRange(range)) return;
    BusyCursor busy(*this);
    // Up to the last column, not only to the last of the range.
    for (int c = range.left; headingsToo && c < table.colCount(); ++c)
        clear(*state_, state_->table.headingPlace(SheetLine::column, c));
    bool goOn = true;
    for (int r = range.top; goOn && r <= range.bottom && r < table.rowCount(); ++r) {
        if (headingsToo && state_->makeHeading(SheetLine::row, r) != nullptr)
            clear(*state_, state_->table.headingPlace(SheetLine::row, r));
        for (int c = range.left; goOn && c <= range.right && state_->table.cell(r, c) != nullptr; ++c)
            goOn = bulkClear(r, c);
        busy.next();
    }
    ShtProgCellChangeDone(goOn);
    redraw(range);
    if (!headingsToo) return;
    redraw({-1, 0, -1, kToEnd});
    redraw({0, -1, kToEnd, -1});
}

void ShtSheet::ShtSheetFillDown(bool headingsToo) { fill(SheetLine::row, headingsToo); }
void ShtSheet::ShtSheetFillRight(bool headingsToo) { fill(SheetLine::column, headingsToo); }

// From the first row (column) of the selection over the others.
void ShtSheet::fill(SheetLine along, bool headingsToo) {
    endEdit();
    SheetRange range;
    if (!selectedRange(range)) return;
    if (ShtSheetSelectGet(nullptr, nullptr, nullptr, nullptr) != ShtSelectCells && ShtSheetVirtGet()) return UtlBeep();
    BusyCursor busy(*this);
    const auto& table = state_->table;
    const SheetLine across = kora::other(along);
    const int source = range.first(along);
    bool goOn = true;
    for (int i = range.first(across); goOn && i <= range.last(across) && i < table.count(across); ++i) {
        const auto place = [=](int n) { return along == SheetLine::row ? SheetExtent{n, i} : SheetExtent{i, n}; };
        const auto [r, c] = place(source);
        const std::optional<std::string> text = textOf(state_->table.cell(r, c));
        for (int n = source + 1; goOn && n <= range.last(along) && n < table.count(along); ++n) {
            busy.next();
            goOn = bulkSet(place(n).row, place(n).column, text);
        }
    }
    ShtProgCellChangeDone(goOn);
    redraw(range);
    if (!goOn || !headingsToo) return;
    const std::optional<std::string> text = textOf(state_->heading(along, source));
    for (int n = source + 1; n <= range.last(along) && n < table.count(along); ++n) {
        TShtCell* const heading = state_->makeHeading(along, n);
        if (heading == nullptr) break;
        // Filling down, the count becomes that of the last heading: callers rely on it.
        if (along == SheetLine::row) state_->dirtyCells = 0;
        setText(*state_, *heading, text);
        if (along == SheetLine::column) state_->table.store.keepOutside(*heading);
    }
    if (source < range.last(along)) redrawLines(along, source + 1, range.last(along));
}

void ShtSheet::ShtSheetDelete() {
    endEdit();
    state_->table.clear();
    state_->firstVisible = {};
    updateScrollBars();
    state_->dirtyCells = 0;
    ShtSheetDirtySet(true);
    ShtSheetSelectSet(ShtSelectNone, 0, 0, 0, 0);
    if (ShtSheetVirtGet()) {
        grow(SheetLine::row);
        grow(SheetLine::column);
    }
    redrawSheet();
}
