#include <kora/Sht.h>

#include "core/VirtualSlots.h"
#include "sheet/State.h"

using kora::CellExtras;
using kora::SheetExtent;
using kora::SheetLine;
using kora::SheetRedraw;
using kora::TShtCell;

namespace {

// What the readers of texts answer.
void readText(const TShtCell& from, char*& text, long& length, void*& data) {
    text = from.text();
    length = from.length();
    data = from.extras().data;
}

// The same for a heading, which may be missing.
bool readHeading(const TShtCell* from, char*& text, long& length, void*& data) {
    readText(from != nullptr ? *from : kora::kBlankCell, text, length, data);
    return from != nullptr;
}

unsigned short flagsOf(const TShtCell* cell) { return cell != nullptr ? cell->extras().flags : std::uint16_t{0}; }

}  // namespace

TShtCell* ShtSheet::cellToWrite(short r, short c, const SheetExtent& before) {
    TShtCell* const cell = state_->makeCell(r, c);
    if (cell == nullptr) updateGrown(before);
    return cell;
}

template <class Change>
bool ShtSheet::changeCell(short r, short c, SheetRedraw redrawBehind, Change change) {
    const SheetExtent before = state_->extent();
    TShtCell* const cell = cellToWrite(r, c, before);
    if (cell == nullptr) return false;
    const bool done = change(*cell);
    if (redrawBehind == SheetRedraw::grown) redrawGrown(before);
    if (redrawBehind == SheetRedraw::written) redrawWritten(r, c, before);
    updateGrown(before);
    return done;
}

bool ShtSheet::ShtCellGet(short r, short c, bool& copied, char*& text, long& length, void*& data) {
    // Most cells are like this: reading at random comes to waiting for memory, and the less there is to do the more
    // reads wait at once.
    const TShtCell* const near = state_->table.near(r, c);
    if (near != nullptr && near->isPlain()) {
        copied = true;
        text = near->plainText();
        length = near->plainLength();
        data = nullptr;
        return true;
    }
    const TShtCell* const found = state_->table.cell(r, c);
    const TShtCell& cell = found != nullptr ? *found : kora::kBlankCell;
    copied = !cell.isBorrowed();
    readText(cell, text, length, data);
    return true;
}

bool ShtSheet::ShtCellSet(short r, short c, bool copy, char* text, long length, void* data, eShtCellUpdate update,
                          eShtCellShow showRow, eShtCellShow showCol) {
    // Showing nothing is something that only an override would notice.
    const bool shows = showRow != ShtCellShowNone || showCol != ShtCellShowNone ||
                       kora::slotCode(*this, &ShtSheet::ShtCellShow) != state_->ownCellShow;
    bool changed = false;
    TShtCell* cell = state_->table.cell(r, c);
    if (cell != nullptr && !shows && update == ShtCellUpdateNone && !state_->editing) {
        if (!state_->table.store.setContents(*cell, copy, text, length, data, changed)) return false;
        state_->markDirty(*cell);
        return true;
    }
    const SheetExtent before = state_->extent();
    if (cell == nullptr) cell = cellToWrite(r, c, before);
    if (cell != nullptr && state_->editing && state_->editRow == r && state_->editCol == c) {
        endEdit();
        cell = cellToWrite(r, c, before);
    }
    if (cell == nullptr) return false;
    if (!state_->table.store.setContents(*cell, copy, text, length, data, changed)) {
        updateGrown(before);
        return false;
    }
    state_->markDirty(*cell);
    if (changed && update != ShtCellUpdateNone) redrawWritten(r, c, before);
    if (shows) ShtCellShow(r, c, showRow, showCol);
    if (update == ShtCellUpdateNow) ShtSheetUpdateNow();
    if (state_->extent() != before) updateGrown(before);
    return true;
}

bool ShtSheet::ShtCellMarkGet(short r, short c, char& mark, int& value) {
    const TShtCell* const cell = state_->table.cell(r, c);
    mark = cell != nullptr ? cell->extras().mark : '\0';
    if (cell != nullptr) value = cell->extras().markValue;
    return true;
}

bool ShtSheet::ShtCellMarkSet(short r, short c, char mark, int value, eShtCellUpdate update, eShtCellShow showRow,
                              eShtCellShow showCol) {
    const SheetExtent before = state_->extent();
    TShtCell* const cell = cellToWrite(r, c, before);
    if (cell == nullptr) return false;
    const bool changed = cell->extras().mark != mark || cell->extras().markValue != value;
    if (!state_->table.store.set(*cell, &CellExtras::mark, mark) ||
        !state_->table.store.set(*cell, &CellExtras::markValue, value)) {
        updateGrown(before);
        return false;
    }
    if (changed && update != ShtCellUpdateNone) redrawWritten(r, c, before);
    ShtCellShow(r, c, showRow, showCol);
    if (update == ShtCellUpdateNow) ShtSheetUpdateNow();
    updateGrown(before);
    return true;
}

bool ShtSheet::ShtCellMarkClear(short r, short c, eShtCellUpdate update, eShtCellShow showRow, eShtCellShow showCol) {
    return ShtCellMarkSet(r, c, '\0', 0, update, showRow, showCol);
}

bool ShtSheet::ShtCellDirtyGet(short r, short c) {
    const TShtCell* const cell = state_->table.cell(r, c);
    return cell != nullptr && cell->dirty;
}

bool ShtSheet::ShtCellDirtySet(short r, short c, bool dirty) {
    return changeCell(r, c, SheetRedraw::grown, [&](TShtCell& cell) {
        if (cell.dirty != dirty) state_->dirtyCells += dirty ? 1 : -1;
        cell.dirty = dirty;
        return true;
    });
}

bool ShtSheet::ShtCellMultiLineGet(short r, short c) {
    const TShtCell* const cell = state_->table.cell(r, c);
    return cell != nullptr && cell->multiLine;
}

bool ShtSheet::ShtCellMultiLineSet(short r, short c, bool multiLine) {
    return changeCell(r, c, SheetRedraw::grown, [=](TShtCell& cell) {
        cell.multiLine = multiLine;
        return true;
    });
}

bool ShtSheet::ShtCellProtectGet(short r, short c) {
    const TShtCell* const cell = state_->table.cell(r, c);
    return cell != nullptr && cell->isProtected;
}

bool ShtSheet::ShtCellProtectSet(short r, short c, bool on) {
    return changeCell(r, c, SheetRedraw::written, [=](TShtCell& cell) {
        cell.isProtected = on;
        return true;
    });
}

eShtCellAlign ShtSheet::ShtCellAlignGet(short r, short c) {
    const TShtCell* const cell = state_->table.cell(r, c);
    return cell != nullptr ? cell->extras().align : ShtCellAlignLeft;
}

bool ShtSheet::ShtCellAlignSet(short r, short c, eShtCellAlign align) {
    return changeCell(r, c, SheetRedraw::written,
                      [&](TShtCell& cell) { return state_->table.store.set(cell, &CellExtras::align, align); });
}

unsigned short ShtSheet::ShtCellFlagsGet(short r, short c) { return flagsOf(state_->table.cell(r, c)); }

bool ShtSheet::ShtCellFlagsSet(short r, short c, unsigned short flags) {
    return changeCell(r, c, SheetRedraw::nothing,
                      [&](TShtCell& cell) { return state_->table.store.set(cell, &CellExtras::flags, flags); });
}

bool ShtSheet::ShtRowHeadingGet(short r, char*& text, long& length, void*& data) {
    return readHeading(state_->heading(SheetLine::row, r), text, length, data);
}

bool ShtSheet::ShtColHeadingGet(short c, char*& text, long& length, void*& data) {
    return readHeading(state_->heading(SheetLine::column, c), text, length, data);
}

bool ShtSheet::ShtRowHeadingSet(short r, char* text, long length, void* data) {
    return setHeading(SheetLine::row, r, text, length, data);
}

bool ShtSheet::ShtColHeadingSet(short c, char* text, long length, void* data) {
    return setHeading(SheetLine::column, c, text, length, data);
}

bool ShtSheet::setHeading(SheetLine line, int n, char* text, long length, void* data) {
    const SheetExtent before = state_->extent();
    bool changed = false;
    TShtCell* const heading = state_->makeHeading(line, n);
    const bool done =
        heading != nullptr && state_->table.store.setContents(*heading, /*copyText=*/true, text, length, data, changed);
    if (done && line == SheetLine::column) state_->table.store.keepOutside(*heading);
    if (changed) redraw(line == SheetLine::row ? kora::SheetRange{n, -1, n, -1} : kora::SheetRange{-1, n, -1, n});
    redrawGrown(before);
    updateGrown(before);
    return done;
}

unsigned short ShtSheet::ShtRowFlagsGet(short r) { return flagsOf(state_->heading(SheetLine::row, r)); }
unsigned short ShtSheet::ShtColFlagsGet(short c) { return flagsOf(state_->heading(SheetLine::column, c)); }
bool ShtSheet::ShtRowFlagsSet(short r, unsigned short flags) { return setFlags(SheetLine::row, r, flags); }
bool ShtSheet::ShtColFlagsSet(short c, unsigned short flags) { return setFlags(SheetLine::column, c, flags); }

bool ShtSheet::setFlags(SheetLine line, int n, unsigned short flags) {
    const SheetExtent before = state_->extent();
    TShtCell* const heading = state_->makeHeading(line, n);
    const bool done = heading != nullptr && state_->table.store.set(*heading, &CellExtras::flags, flags);
    redrawGrown(before);
    updateGrown(before);
    return done;
}
