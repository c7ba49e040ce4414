#include <kora/Sht.h>

#include <algorithm>

#include "sheet/State.h"

using kora::kToEnd;
using kora::SheetLine;
using kora::SheetRange;
using kora::TShtCell;

namespace {

// The first visible element stays the same one, whatever is inserted, removed and moved before it.
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

bool ShtSheet::addLine(SheetLine line, int n) {
    SheetRange selected;
    const int at = n != -1 ? n : selectedRange(selected) ? selected.first(line) : state_->table.count(line);
    // Growing at the end, as virtual mode does while somebody writes, moves no cell that is edited.
    if (at >= 0 && at < state_->table.count(line)) endEdit();
    const int had = state_->table.count(line);
    const bool made =
        at >= 0 && at < had ? state_->table.insert(line, at, state_->defaultSize[line]) : state_->make(line, at);
    if (state_->table.count(line) == had) return false;
    int& first = state_->firstVisible[line];
    first = firstAfterInsertion(first, at);
    updateScrollBar(line);
    ShtSheetDirtySet(true);
    redrawLines(line, std::max(std::min(at, had), state_->firstVisible[line]), kToEnd);
    return made;
}

bool ShtSheet::deleteLines(SheetLine line, int n) {
    SheetRange range = {n, n, n, n};
    if (n == -1 && !selectedRange(range)) return true;
    endEdit();
    const int at = range.first(line);
    const int howMany = countWithin(at, range.last(line), state_->table.count(line));
    if (howMany <= 0) return false;
    state_->dirtyCells -= state_->table.remove(line, at, howMany);
    const int before = state_->firstVisible[line];
    state_->firstVisible[line] = firstAfterRemoval(before, at, howMany, state_->table.count(line));
    updateScrollBar(line);
    ShtSheetDirtySet(true);
    redrawLines(line, before < at ? at : state_->firstVisible[line], kToEnd);
    return true;
}

bool ShtSheet::moveLine(SheetLine line, int from, int to) {
    if (from < 0 || to < 0) return false;
    if (from == to) return true;
    endEdit();
    const int target = std::min(to, state_->table.count(line) - 1);
    if (from < state_->table.count(line) && from != target) {
        if (!state_->table.move(line, from, target)) return false;
        int& first = state_->firstVisible[line];
        const int before = first;
        first = firstAfterMove(before, from, target);
        if (first == before) {
            redrawLines(line, std::min(from, target), std::max(from, target));
        } else {
            updateScrollBar(line);
            redrawLines(line, state_->firstVisible[line], kToEnd);
        }
    }
    ShtSheetDirtySet(true);
    return true;
}

void ShtSheet::clearLine(SheetLine line, int n) {
    endEdit();
    const SheetLine across = kora::other(line);
    bool changed = false, goOn = true;
    for (int i = 0; goOn && i < state_->table.count(across); ++i) {
        const int r = line == SheetLine::row ? n : i, c = line == SheetLine::row ? i : n;
        const TShtCell* const cell = state_->table.cell(r, c);
        if (cell == nullptr || cell->isProtected) continue;
        changed = true;
        goOn = bulkClear(r, c);
    }
    if (changed) redrawLines(line, n, n);
}

bool ShtSheet::ShtRowAdd(short r) { return addLine(SheetLine::row, r); }
bool ShtSheet::ShtRowDel(short r) { return deleteLines(SheetLine::row, r); }
void ShtSheet::ShtRowClear(short r) { clearLine(SheetLine::row, r); }
bool ShtSheet::ShtRowMove(short from, short to) { return moveLine(SheetLine::row, from, to); }

bool ShtSheet::ShtColAdd(short c) { return addLine(SheetLine::column, c); }
bool ShtSheet::ShtColDel(short c) { return deleteLines(SheetLine::column, c); }
void ShtSheet::ShtColClear(short c) { clearLine(SheetLine::column, c); }
bool ShtSheet::ShtColMove(short from, short to) { return moveLine(SheetLine::column, from, to); }
