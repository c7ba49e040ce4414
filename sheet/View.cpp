#include <kora/Sht.h>

#include <algorithm>

#include "geometry/Coordinates.h"
#include "sheet/Axis.h"

using kora::kToEnd;
using kora::SheetAxis;
using kora::SheetExtent;
using kora::SheetLine;
using kora::SheetRange;
using kora::SheetState;

namespace {

LRCT rectOf(SheetState& state, const LRCT& client, const SheetRange& range) {
    const SheetAxis::Span rows = SheetAxis(state, SheetLine::row, client).span(range.top, range.bottom);
    const SheetAxis::Span cols = SheetAxis(state, SheetLine::column, client).span(range.left, range.right);
    return {kora::wrapped(rows.begin), kora::wrapped(cols.begin), kora::wrapped(rows.end), kora::wrapped(cols.end)};
}

}  // namespace

LRCT ShtSheet::client() {
    LRCT rect = {0, 0, 0, 0};
    WinClientRectGet(&rect);
    return rect;
}

void ShtSheet::redraw(const SheetRange& range) {
    LRCT area = rectOf(*state_, client(), range);
    WinInvalidate(&area);
}

void ShtSheet::redrawLines(SheetLine line, int first, int last) {
    redraw(line == SheetLine::row ? SheetRange{first, -1, last, kToEnd} : SheetRange{-1, first, kToEnd, last});
}

void ShtSheet::redrawSheet() { redraw({-1, -1, kToEnd, kToEnd}); }

void ShtSheet::redrawWritten(short r, short c, const SheetExtent& before) {
    if (r < before.row && c < before.column) redraw({r, c, r, c});
    redrawGrown(before);
}

void ShtSheet::redrawGrown(const SheetExtent& before) {
    const SheetExtent now = state_->extent();
    for (const SheetLine line : kora::kLines)
        if (now[line] > before[line]) redrawLines(line, before[line], kToEnd);
}

void ShtSheet::updateGrown(const SheetExtent& before) {
    const SheetExtent now = state_->extent();
    for (const SheetLine line : kora::kLines)
        if (now[line] > before[line]) updateScrollBar(line);
}

void ShtSheet::updateScrollBar(SheetLine line) {
    const eWinScrollBar bar = line == SheetLine::row ? WinScrollBarVertical : WinScrollBarHorizontal;
    WinScrollRangeSet(bar, state_->table.count(line), SheetAxis(*state_, line, client()).whole());
    WinScrollPosSet(bar, state_->firstVisible[line]);
}

void ShtSheet::updateScrollBars() {
    for (const SheetLine line : kora::kLines) updateScrollBar(line);
}

void ShtSheet::scrollTo(int row, int col) {
    const SheetExtent to = {row, col}, from = state_->firstVisible;
    if (to == from) return;
    state_->firstVisible = to;
    for (const SheetLine line : kora::kLines)
        if (to[line] != from[line]) updateScrollBar(line);
    redrawSheet();
    grow(SheetLine::column);
    grow(SheetLine::row);
}

bool ShtSheet::ShtCellShow(short r, short c, eShtCellShow showRow, eShtCellShow showCol) {
    const SheetExtent before = state_->extent();
    if (before.row == 0 || before.column == 0) return false;
    if (showRow == ShtCellShowNone && showCol == ShtCellShowNone) return true;
    const auto isRefused = [](int n, eShtCellShow show) {
        return show != ShtCellShowNone && !kora::TShtTable::isNumber(n);
    };
    if (isRefused(r, showRow) || isRefused(c, showCol)) return false;
    const bool made = (showRow == ShtCellShowNone || state_->make(SheetLine::row, r)) &&
                      (showCol == ShtCellShowNone || state_->make(SheetLine::column, c));
    if (state_->extent() != before) {
        redrawGrown(before);
        updateGrown(before);
    }
    if (!made) return false;
    const LRCT area = client();
    scrollTo(SheetAxis(*state_, SheetLine::row, area).scrolled(r, showRow),
             SheetAxis(*state_, SheetLine::column, area).scrolled(c, showCol));
    return true;
}

void ShtSheet::ShtScrollGet(short* r, short* c) {
    if (r != nullptr) *r = static_cast<short>(state_->firstVisible.row);
    if (c != nullptr) *c = static_cast<short>(state_->firstVisible.column);
}

void ShtSheet::ShtScrollSet(short r, short c) {
    const SheetExtent extent = state_->extent();
    scrollTo(std::clamp<int>(r, 0, std::max(extent.row - 1, 0)), std::clamp<int>(c, 0, std::max(extent.column - 1, 0)));
}

bool ShtSheet::ShtCellRectGet(short r, short c, LRCT* rect) {
    const auto isSeen = [this](SheetLine line, int n) {
        return n == -1 || (n >= state_->firstVisible[line] && n < state_->table.count(line));
    };
    if (!isSeen(SheetLine::row, r) || !isSeen(SheetLine::column, c)) return false;
    const LRCT found = rectOf(*state_, client(), {r, c, r, c});
    if (kora::isEmpty(found)) return false;
    if (rect != nullptr) *rect = found;
    return true;
}

short ShtSheet::ShtRowSizeGet(short r) { return sizeOf(SheetLine::row, r); }
short ShtSheet::ShtColSizeGet(short c) { return sizeOf(SheetLine::column, c); }
bool ShtSheet::ShtRowSizeSet(short r, short size) { return setSize(SheetLine::row, r, size); }
bool ShtSheet::ShtColSizeSet(short c, short size) { return setSize(SheetLine::column, c, size); }

short ShtSheet::sizeOf(SheetLine line, int n) {
    if (n == -1) return state_->bandSize[line];
    return n >= 0 && n < state_->table.count(line) ? state_->table.size(line, n) : std::int16_t{0};
}

bool ShtSheet::setSize(SheetLine line, int n, short size) {
    if (size < 0 || (n != -1 && !state_->make(line, n))) return false;
    (n == -1 ? state_->bandSize[line] : state_->table.size(line, n)) = size;
    updateScrollBars();
    redrawSheet();
    return true;
}

void ShtSheet::WinClientRectSet(LRCT* r) {
    if (r == nullptr) return;
    WinWindow::WinClientRectSet(r);
    updateScrollBars();
    grow(SheetLine::column);
    grow(SheetLine::row);
}

bool ShtSheet::ShtSheetVirtGet() { return state_->virtualMode; }

void ShtSheet::ShtSheetVirtSet(bool on) {
    if (on == state_->virtualMode) return;
    endEdit();
    state_->virtualMode = false;
    scrollTo(0, 0);
    state_->virtualMode = on;
    if (on) {
        grow(SheetLine::column);
        grow(SheetLine::row);
    } else {
        short rows = 0, cols = 0, usedRows = 0, usedCols = 0;
        ShtSheetSizeUsedGet(&usedRows, &usedCols);
        ShtSheetSizeGet(&rows, &cols);
        for (int r = rows - 1; r >= usedRows; --r) ShtRowDel(static_cast<short>(r));
        for (int c = cols - 1; c >= usedCols; --c) ShtColDel(static_cast<short>(c));
    }
    redrawSheet();
}

void ShtSheet::grow(SheetLine line) {
    if (!ShtSheetVirtGet()) return;
    const int count = state_->table.count(line);
    std::int64_t remaining = 2 * SheetAxis(*state_, line, client()).room();
    for (int n = state_->firstVisible[line]; n < count && remaining > 0; ++n) remaining -= state_->table.size(line, n);
    if (remaining <= 0 || count > kora::TShtTable::kLast) return;
    // Elements without a size would never fill it up.
    const std::int64_t more = remaining / std::max<int>(state_->defaultSize[line], 1);
    const auto last = static_cast<short>(std::min<std::int64_t>(count + more, kora::TShtTable::kLast));
    if (line == SheetLine::row)
        ShtRowAdd(last);
    else
        ShtColAdd(last);
}
