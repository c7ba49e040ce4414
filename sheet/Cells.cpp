#include <kora/Sht.h>

#include "core/VirtualSlots.h"
#include "sheet/State.h"

using kora::CellExtras;
using kora::SheetExtent;
using kora::SheetLine;
using kora::SheetRedraw;
using kora::SheetState;
using kora::TShtCell;

namespace {

// What the readers of texts answer.
void readText(const TShtCell& from, const CellExtras& extras, char*& text, long& length, void*& data) {
    text = from.text();
    length = from.length();
    data = extras.data;
}

// The same for a heading, which may be missing.
bool readHeading(SheetState& state, SheetLine line, int n, char*& text, long& length, void*& data) {
    const TShtCell* const from = state.heading(line, n);
    readText(from != nullptr ? *from : kora::kBlankCell, state.headingExtras(line, n), text, length, data);
    return from != nullptr;
}

// Most writes are like this, and as reading does they wait for memory at once if there is little to do. False, with at
// most a blank cell made, where there is more to it.
bool storePlainText(SheetState& state, short r, short c, char* text, long length) {
    TShtCell* cell = state.table.near(static_cast<std::uint16_t>(r), static_cast<std::uint16_t>(c));
    if (cell == nullptr) cell = state.table.appendCell(r, c);
    if (cell == nullptr || cell->hasExtras || !kora::CellStore::assignInside(*cell, text, length)) return false;
    state.markDirty(*cell);
    return true;
}

// What ShtCellGet() answers. Inline there, its registers would be saved at every read.
[[gnu::noinline]] bool readAnyCell(SheetState& state, int r, int c, bool& copied, char*& text, long& length,
                                   void*& data) {
    const TShtCell* const found = state.table.cell(r, c);
    const TShtCell& cell = found != nullptr ? *found : kora::kBlankCell;
    copied = !cell.isBorrowed();
    readText(cell, state.table.extras(r, c), text, length, data);
    return true;
}

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
    const auto row = static_cast<std::uint16_t>(r), column = static_cast<std::uint16_t>(c);
    const TShtCell* const near = state_->table.near(row, column);
    if (near != nullptr && near->isPlain()) {
        // Read first: for all a compiler knows a result might be stored in the cell.
        const std::int32_t plainLength = near->plainLength();
        copied = true;
        text = near->plainText();
        length = plainLength;
        data = nullptr;
        return true;
    }
    return readAnyCell(*state_, row, column, copied, text, length, data);
}

bool ShtSheet::ShtCellSet(short r, short c, bool copy, char* text, long length, void* data, eShtCellUpdate update,
                          eShtCellShow showRow, eShtCellShow showCol) {
    // Whether nothing but the cell changes, with no operation called that an override might have in its place.
    const bool isQuiet = update == ShtCellUpdateNone && showRow == ShtCellShowNone && showCol == ShtCellShowNone &&
                         !state_->editing && kora::runsCode(*this, &ShtSheet::ShtCellShow, state_->ownCellShow);
    if (isQuiet && copy && data == nullptr && storePlainText(*state_, r, c, text, length)) return true;
    return setAnyCell(r, c, copy, text, length, data, update, showRow, showCol);
}

[[gnu::noinline]] bool ShtSheet::setAnyCell(short r, short c, bool copy, char* text, long length, void* data,
                                            eShtCellUpdate update, eShtCellShow showRow, eShtCellShow showCol) {
    // Showing nothing is something that only an override would notice.
    const bool shows = showRow != ShtCellShowNone || showCol != ShtCellShowNone ||
                       !kora::runsCode(*this, &ShtSheet::ShtCellShow, state_->ownCellShow);
    bool changed = false;
    TShtCell* cell = state_->table.cell(r, c);
    if (cell != nullptr && !shows && update == ShtCellUpdateNone && !state_->editing) {
        if (!state_->table.setContents({*state_->table.row(r), c}, copy, text, length, data, changed)) return false;
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
    if (!state_->table.setContents({*state_->table.row(r), c}, copy, text, length, data, changed)) {
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
    const CellExtras& extras = state_->table.extras(r, c);
    mark = extras.mark;
    if (state_->table.cell(r, c) != nullptr) value = extras.markValue;
    return true;
}

bool ShtSheet::ShtCellMarkSet(short r, short c, char mark, int value, eShtCellUpdate update, eShtCellShow showRow,
                              eShtCellShow showCol) {
    const SheetExtent before = state_->extent();
    if (cellToWrite(r, c, before) == nullptr) return false;
    kora::TShtTable& table = state_->table;
    const bool changed = table.extras(r, c).mark != mark || table.extras(r, c).markValue != value;
    if (!table.set({*table.row(r), c}, &CellExtras::mark, mark) ||
        !table.set({*table.row(r), c}, &CellExtras::markValue, value)) {
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

eShtCellAlign ShtSheet::ShtCellAlignGet(short r, short c) { return state_->table.extras(r, c).align; }

bool ShtSheet::ShtCellAlignSet(short r, short c, eShtCellAlign align) {
    return changeCell(r, c, SheetRedraw::written, [&](TShtCell&) {
        return state_->table.set({*state_->table.row(r), c}, &CellExtras::align, align);
    });
}

unsigned short ShtSheet::ShtCellFlagsGet(short r, short c) { return state_->table.extras(r, c).flags; }

bool ShtSheet::ShtCellFlagsSet(short r, short c, unsigned short flags) {
    return changeCell(r, c, SheetRedraw::nothing, [&](TShtCell&) {
        return state_->table.set({*state_->table.row(r), c}, &CellExtras::flags, flags);
    });
}

bool ShtSheet::ShtRowHeadingGet(short r, char*& text, long& length, void*& data) {
    return readHeading(*state_, SheetLine::row, r, text, length, data);
}

bool ShtSheet::ShtColHeadingGet(short c, char*& text, long& length, void*& data) {
    return readHeading(*state_, SheetLine::column, c, text, length, data);
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
    const bool done = heading != nullptr && state_->table.setContents(state_->table.headingPlace(line, n),
                                                                      /*copyText=*/true, text, length, data, changed);
    if (done && line == SheetLine::column) state_->table.store.keepOutside(*heading);
    if (changed) redraw(line == SheetLine::row ? kora::SheetRange{n, -1, n, -1} : kora::SheetRange{-1, n, -1, n});
    redrawGrown(before);
    updateGrown(before);
    return done;
}

unsigned short ShtSheet::ShtRowFlagsGet(short r) { return state_->headingExtras(SheetLine::row, r).flags; }
unsigned short ShtSheet::ShtColFlagsGet(short c) { return state_->headingExtras(SheetLine::column, c).flags; }
bool ShtSheet::ShtRowFlagsSet(short r, unsigned short flags) { return setFlags(SheetLine::row, r, flags); }
bool ShtSheet::ShtColFlagsSet(short c, unsigned short flags) { return setFlags(SheetLine::column, c, flags); }

bool ShtSheet::setFlags(SheetLine line, int n, unsigned short flags) {
    const SheetExtent before = state_->extent();
    const bool done = state_->makeHeading(line, n) != nullptr &&
                      state_->table.set(state_->table.headingPlace(line, n), &CellExtras::flags, flags);
    redrawGrown(before);
    updateGrown(before);
    return done;
}
