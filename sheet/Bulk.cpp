#include <kora/Sht.h>
#include <kora/Str.h>

#include <optional>
#include <string>

#include "sheet/BusyCursor.h"
#include "sheet/State.h"
#include "strings/Guarded.h"

using kora::BusyCursor;
using kora::kToEnd;
using kora::SheetRange;
using kora::SheetState;
using kora::TShtCell;
using kora::TShtRow;

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

void clear(SheetState& state, TShtCell& cell) {
    setText(state, cell, {});
    state.table.store.clearMark(cell);
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
    clear(*state_, *cell);
    return askHook(r, c);
}

void ShtSheet::ShtSheetClear(bool selectionOnly, bool headingsToo) {
    endEdit();
    const auto& table = state_->table;
    SheetRange range = {0, 0, table.rowCount() - 1, table.colCount() - 1};
    if (selectionOnly && !selectedRange(range)) return;
    BusyCursor busy(*this);
    // Up to the last column, not only to the last of the range.
    for (int c = range.left; headingsToo && c < table.colCount(); ++c) clear(*state_, *state_->table.column(c));
    bool goOn = true;
    for (int r = range.top; goOn && r <= range.bottom && r < table.rowCount(); ++r) {
        TShtCell* const heading = headingsToo ? state_->makeHeading(r) : nullptr;
        if (heading != nullptr) clear(*state_, *heading);
        for (int c = range.left; goOn && c <= range.right && state_->table.cell(r, c) != nullptr; ++c)
            goOn = bulkClear(r, c);
        busy.next();
    }
    ShtProgCellChangeDone(goOn);
    redraw(range.top, range.left, range.bottom, range.right);
    if (!headingsToo) return;
    redraw(-1, 0, -1, kToEnd);
    redraw(0, -1, kToEnd, -1);
}

void ShtSheet::ShtSheetFillDown(bool headingsToo) {
    endEdit();
    SheetRange range;
    if (!selectedRange(range)) return;
    if (state_->selection != ShtSelectCells && ShtSheetVirtGet()) return UtlBeep();
    BusyCursor busy(*this);
    const auto& table = state_->table;
    bool goOn = true;
    for (int c = range.left; goOn && c <= range.right && c < table.colCount(); ++c) {
        const std::optional<std::string> text = textOf(state_->table.cell(range.top, c));
        for (int r = range.top + 1; goOn && r <= range.bottom && r < table.rowCount(); ++r) {
            busy.next();
            goOn = bulkSet(r, c, text);
        }
    }
    ShtProgCellChangeDone(goOn);
    redraw(range.top, range.left, range.bottom, range.right);
    if (!goOn || !headingsToo) return;
    const std::optional<std::string> text = textOf(state_->heading(range.top));
    for (int r = range.top + 1; r <= range.bottom && r < table.rowCount(); ++r) {
        TShtCell* const heading = state_->makeHeading(r);
        if (heading == nullptr) continue;
        // Not added: callers rely on the count being that of the last heading.
        state_->dirtyCells = heading->dirty ? 0 : 1;
        heading->dirty = true;
        setText(*state_, *heading, text);
    }
    if (range.top < range.bottom) redraw(range.top + 1, -1, range.bottom, kToEnd);
}

void ShtSheet::ShtSheetFillRight(bool headingsToo) {
    endEdit();
    SheetRange range;
    if (!selectedRange(range)) return;
    if (state_->selection != ShtSelectCells && ShtSheetVirtGet()) return UtlBeep();
    BusyCursor busy(*this);
    const auto& table = state_->table;
    bool goOn = true;
    for (int r = range.top; goOn && r <= range.bottom && r < table.rowCount(); ++r) {
        const std::optional<std::string> text = textOf(state_->table.cell(r, range.left));
        for (int c = range.left + 1; goOn && c <= range.right && c < table.colCount(); ++c) {
            busy.next();
            goOn = bulkSet(r, c, text);
        }
    }
    ShtProgCellChangeDone(goOn);
    redraw(range.top, range.left, range.bottom, range.right);
    if (!goOn || !headingsToo) return;
    const std::optional<std::string> text = textOf(state_->table.column(range.left));
    for (int c = range.left + 1; c <= range.right && c < table.colCount(); ++c) {
        setText(*state_, *state_->table.column(c), text);
    }
    if (range.left < range.right) redraw(-1, range.left + 1, kToEnd, range.right);
}

void ShtSheet::ShtSheetDelete() {
    endEdit();
    state_->table.clear();
    state_->firstRow = state_->firstCol = 0;
    updateScrollBars(/*rows=*/true, /*cols=*/true);
    state_->dirtyCells = 0;
    ShtSheetDirtySet(true);
    state_->selection = ShtSelectNone;
    state_->selectTop = state_->selectLeft = state_->selectBottom = state_->selectRight = 0;
    if (ShtSheetVirtGet()) {
        growRows();
        growCols();
    }
    redrawSheet();
}
