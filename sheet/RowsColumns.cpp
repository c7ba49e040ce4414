#include <kora/Sht.h>

#include <algorithm>

#include "sheet/State.h"

using kora::kToEnd;
using kora::SheetRange;
using kora::TShtCell;
using kora::TShtTable;

namespace {

// The first visible element stays the same one, whatever is inserted, removed and moved before it. 0 is the top, not an
// element: it stays 0.
int firstAfterInsertion(int first, int at) { return first > 0 && at <= first ? first + 1 : first; }

// In the place of one that goes comes the next, behind the last one the one before.
int firstAfterRemoval(int first, int at, int howMany, int countLeft) {
    if (first < at) return first;
    if (first >= at + howMany) return first - howMany;
    return std::max(0, std::min(at, countLeft - 1));
}

int firstAfterMove(int first, int from, int to) {
    if (first == 0) return 0;
    if (first == from) return to;
    if (from < first && first <= to) return first - 1;
    if (to <= first && first < from) return first + 1;
    return first;
}

// How many of the elements `first` to `last` there are.
int countWithin(int first, int last, int count) { return first < 0 ? 0 : std::min(last, count - 1) - first + 1; }

}  // namespace

bool ShtSheet::ShtRowAdd(short r) {
    const TShtTable& table = state_->table;
    SheetRange selected;
    const int at = r != -1 ? r : selectedRange(selected) ? selected.top : table.rowCount();
    // Growing at the end, as virtual mode does while somebody writes, moves no cell that is edited.
    if (at >= 0 && at < table.rowCount()) endEdit();
    const int had = table.rowCount();
    const bool made =
        at >= 0 && at < had ? state_->table.insertRow(at, state_->defaultRowHeight) : state_->makeRow(at) != nullptr;
    if (table.rowCount() == had) return false;
    state_->firstRow = firstAfterInsertion(state_->firstRow, at);
    updateScrollBars(/*rows=*/true, /*cols=*/false);
    ShtSheetDirtySet(true);
    redraw(std::max(std::min(at, had), state_->firstRow), -1, kToEnd, kToEnd);
    return made;
}

bool ShtSheet::ShtRowDel(short r) {
    SheetRange rows = {r, 0, r, 0};
    if (r == -1 && !selectedRange(rows)) return true;
    endEdit();
    const int howMany = countWithin(rows.top, rows.bottom, state_->table.rowCount());
    if (howMany <= 0) return false;
    state_->dirtyCells -= state_->table.removeRows(rows.top, howMany);
    const int first = state_->firstRow;
    state_->firstRow = firstAfterRemoval(first, rows.top, howMany, state_->table.rowCount());
    updateScrollBars(/*rows=*/true, /*cols=*/false);
    ShtSheetDirtySet(true);
    redraw(first < rows.top ? rows.top : state_->firstRow, -1, kToEnd, kToEnd);
    return true;
}

void ShtSheet::ShtRowClear(short r) {
    endEdit();
    bool changed = false, goOn = true;
    for (int c = 0; goOn; ++c) {
        const TShtCell* const cell = state_->table.cell(r, c);
        if (cell == nullptr) break;
        changed |= !cell->isProtected;
        goOn = bulkClear(r, c);
    }
    if (changed) redraw(r, 0, r, kToEnd);
}

bool ShtSheet::ShtRowMove(short from, short to) {
    if (from < 0 || to < 0) return false;
    if (from == to) return true;
    endEdit();
    const int target = std::min(to, static_cast<short>(state_->table.rowCount() - 1));
    if (from < state_->table.rowCount() && from != target) {
        state_->table.moveRow(from, target);
        const int first = state_->firstRow;
        state_->firstRow = firstAfterMove(first, from, target);
        if (state_->firstRow == first) {
            redraw(std::min<int>(from, target), -1, std::max<int>(from, target), kToEnd);
        } else {
            updateScrollBars(/*rows=*/true, /*cols=*/false);
            redraw(state_->firstRow, -1, kToEnd, kToEnd);
        }
    }
    ShtSheetDirtySet(true);
    return true;
}

bool ShtSheet::ShtColAdd(short c) {
    const TShtTable& table = state_->table;
    SheetRange selected;
    const int at = c != -1 ? c : selectedRange(selected) ? selected.left : table.colCount();
    if (at >= 0 && at < table.colCount()) endEdit();
    const int had = table.colCount();
    const bool made = at >= 0 && at < had ? state_->table.insertColumn(at, state_->defaultColWidth)
                                          : state_->makeColumn(at) != nullptr;
    if (table.colCount() == had) return false;
    state_->firstCol = firstAfterInsertion(state_->firstCol, at);
    updateScrollBars(/*rows=*/false, /*cols=*/true);
    ShtSheetDirtySet(true);
    redraw(-1, std::max(std::min(at, had), state_->firstCol), kToEnd, kToEnd);
    return made;
}

bool ShtSheet::ShtColDel(short c) {
    SheetRange cols = {0, c, 0, c};
    if (c == -1 && !selectedRange(cols)) return true;
    endEdit();
    const int howMany = countWithin(cols.left, cols.right, state_->table.colCount());
    if (howMany <= 0) return false;
    state_->dirtyCells -= state_->table.removeColumns(cols.left, howMany);
    const int first = state_->firstCol;
    state_->firstCol = firstAfterRemoval(first, cols.left, howMany, state_->table.colCount());
    updateScrollBars(/*rows=*/false, /*cols=*/true);
    ShtSheetDirtySet(true);
    redraw(-1, first < cols.left ? cols.left : state_->firstCol, kToEnd, kToEnd);
    return true;
}

void ShtSheet::ShtColClear(short c) {
    endEdit();
    bool changed = false, goOn = true;
    for (int r = 0; goOn && r < state_->table.rowCount(); ++r) {
        const TShtCell* const cell = state_->table.cell(r, c);
        if (cell == nullptr) continue;
        changed |= !cell->isProtected;
        goOn = bulkClear(r, c);
    }
    if (changed) redraw(0, c, kToEnd, c);
}

bool ShtSheet::ShtColMove(short from, short to) {
    if (from < 0 || to < 0) return false;
    if (from == to) return true;
    endEdit();
    const int target = std::min(to, static_cast<short>(state_->table.colCount() - 1));
    if (from < state_->table.colCount() && from != target) {
        if (!state_->table.moveColumn(from, target)) return false;
        const int first = state_->firstCol;
        state_->firstCol = firstAfterMove(first, from, target);
        if (state_->firstCol == first) {
            redraw(-1, std::min<int>(from, target), kToEnd, std::max<int>(from, target));
        } else {
            updateScrollBars(/*rows=*/false, /*cols=*/true);
            redraw(-1, state_->firstCol, kToEnd, kToEnd);
        }
    }
    ShtSheetDirtySet(true);
    return true;
}
