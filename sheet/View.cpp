#include <kora/Sht.h>

#include <algorithm>

#include "geometry/Coordinates.h"
#include "sheet/Axis.h"
#include "sheet/State.h"

using kora::kToEnd;
using kora::SheetAxis;
using kora::SheetExtent;
using kora::SheetState;

namespace {

constexpr int kLastNumber = kora::NumberedList<int>::kMost - 1;

// Sizes of 0 would let an area without bounds fill up.
constexpr int divisor(std::int16_t size) { return std::max<int>(size, 1); }

auto rowAxis(SheetState& state, const LRCT& client) {
    return SheetAxis(state.firstRow, state.table.rowCount(), std::int64_t{client.top} + state.colBandHeight,
                     client.bottom, [&state](int r) { return state.table.row(r)->size; });
}

auto colAxis(SheetState& state, const LRCT& client) {
    return SheetAxis(state.firstCol, state.table.colCount(), std::int64_t{client.left} + state.rowBandWidth,
                     client.right, [&state](int c) { return state.table.width(c); });
}

struct Span {
    std::int64_t begin, end;
};

// Where elements `first` to `last` are seen. -1 to -1 is the band, which stands in front of the axis; -1 alone reaches
// to that end.
template <class Axis>
Span span(const Axis& axis, int first, int last, std::int64_t clientBegin, std::int64_t clientEnd) {
    if (first < 0 && last < 0) return {clientBegin, axis.edge(0)};
    return {first < 0 ? clientBegin : axis.edge(first), last < 0 || last >= kToEnd ? clientEnd : axis.edge(last + 1)};
}

LRCT rectOf(SheetState& state, const LRCT& client, int top, int left, int bottom, int right) {
    const Span rows = span(rowAxis(state, client), top, bottom, client.top, client.bottom);
    const Span cols = span(colAxis(state, client), left, right, client.left, client.right);
    return {kora::wrapped(rows.begin), kora::wrapped(cols.begin), kora::wrapped(rows.end), kora::wrapped(cols.end)};
}

// What is scrolled to when an element is to be shown; the one that is first now when nothing is to be done, or the
// element has gone because an override of the window's operations changed the sheet.
template <class Axis>
int scrolled(const Axis& axis, int first, int n, eShtCellShow show) {
    if (show == ShtCellShowNone || !axis.exists(n) || axis.isWhole(n)) return first;
    if (show == ShtCellShowFirst) return n;
    if (show == ShtCellShowMiddle) return (n + axis.firstIfLast(n)) / 2;
    if (show == ShtCellShowLast) return axis.firstIfLast(n);
    return first;
}

}  // namespace

void ShtSheet::redraw(int top, int left, int bottom, int right) {
    LRCT client = {0, 0, 0, 0};
    WinClientRectGet(&client);
    LRCT area = rectOf(*state_, client, top, left, bottom, right);
    WinInvalidate(&area);
}

void ShtSheet::redrawSheet() { redraw(-1, -1, kToEnd, kToEnd); }

void ShtSheet::redrawWritten(short r, short c, const SheetExtent& before) {
    if (r < before.rows && c < before.cols) redraw(r, c, r, c);
    redrawGrown(before);
}

void ShtSheet::redrawGrown(const SheetExtent& before) {
    const SheetExtent now = state_->extent();
    if (now.rows > before.rows) redraw(before.rows, -1, kToEnd, kToEnd);
    if (now.cols > before.cols) redraw(-1, before.cols, kToEnd, kToEnd);
}

void ShtSheet::updateGrown(const SheetExtent& before) {
    const SheetExtent now = state_->extent();
    updateScrollBars(now.rows > before.rows, now.cols > before.cols);
}

void ShtSheet::updateScrollBars(bool rows, bool cols) {
    if (!rows && !cols) return;
    LRCT client = {0, 0, 0, 0};
    WinClientRectGet(&client);
    if (rows) {
        WinScrollRangeSet(WinScrollBarVertical, state_->table.rowCount(), rowAxis(*state_, client).whole());
        WinScrollPosSet(WinScrollBarVertical, state_->firstRow);
    }
    if (cols) {
        WinScrollRangeSet(WinScrollBarHorizontal, state_->table.colCount(), colAxis(*state_, client).whole());
        WinScrollPosSet(WinScrollBarHorizontal, state_->firstCol);
    }
}

void ShtSheet::scrollTo(int row, int col) {
    const bool rows = row != state_->firstRow, cols = col != state_->firstCol;
    if (!rows && !cols) return;
    state_->firstRow = row;
    state_->firstCol = col;
    updateScrollBars(rows, cols);
    redrawSheet();
    growCols();
    growRows();
}

bool ShtSheet::ShtCellShow(short r, short c, eShtCellShow showRow, eShtCellShow showCol) {
    const SheetExtent before = state_->extent();
    if (before.rows == 0 || before.cols == 0) return false;
    if (showRow == ShtCellShowNone && showCol == ShtCellShowNone) return true;
    const bool made = (showRow == ShtCellShowNone || state_->makeRow(r) != nullptr) &&
                      (showCol == ShtCellShowNone || state_->makeColumn(c) != nullptr);
    if (state_->extent() != before) {
        redrawGrown(before);
        updateGrown(before);
    }
    if (!made) return false;
    LRCT client = {0, 0, 0, 0};
    WinClientRectGet(&client);
    scrollTo(scrolled(rowAxis(*state_, client), state_->firstRow, r, showRow),
             scrolled(colAxis(*state_, client), state_->firstCol, c, showCol));
    return true;
}

void ShtSheet::ShtScrollGet(short* r, short* c) {
    if (r != nullptr) *r = static_cast<short>(state_->firstRow);
    if (c != nullptr) *c = static_cast<short>(state_->firstCol);
}

void ShtSheet::ShtScrollSet(short r, short c) {
    scrollTo(std::clamp<int>(r, 0, std::max(state_->table.rowCount() - 1, 0)),
             std::clamp<int>(c, 0, std::max(state_->table.colCount() - 1, 0)));
}

bool ShtSheet::ShtCellRectGet(short r, short c, LRCT* rect) {
    LRCT client = {0, 0, 0, 0};
    WinClientRectGet(&client);
    const bool exists = (r == -1 || (r >= state_->firstRow && state_->table.row(r) != nullptr)) &&
                        (c == -1 || (c >= state_->firstCol && state_->table.column(c) != nullptr));
    if (!exists) return false;
    const LRCT found = rectOf(*state_, client, r, c, r, c);
    if (kora::isEmpty(found)) return false;
    if (rect != nullptr) *rect = found;
    return true;
}

short ShtSheet::ShtRowSizeGet(short r) {
    if (r == -1) return state_->colBandHeight;
    const kora::TShtRow* const row = state_->table.row(r);
    return row != nullptr ? row->size : std::int16_t{0};
}

short ShtSheet::ShtColSizeGet(short c) {
    if (c == -1) return state_->rowBandWidth;
    return state_->table.column(c) != nullptr ? state_->table.width(c) : std::int16_t{0};
}

bool ShtSheet::ShtRowSizeSet(short r, short size) {
    if (size < 0) return false;
    if (r == -1) {
        state_->colBandHeight = size;
    } else {
        kora::TShtRow* const row = state_->makeRow(r);
        if (row == nullptr) return false;
        row->size = size;
    }
    updateSizes();
    return true;
}

bool ShtSheet::ShtColSizeSet(short c, short size) {
    if (size < 0) return false;
    if (c == -1) {
        state_->rowBandWidth = size;
    } else {
        if (state_->makeColumn(c) == nullptr) return false;
        state_->table.width(c) = size;
    }
    updateSizes();
    return true;
}

void ShtSheet::updateSizes() {
    updateScrollBars(true, true);
    redrawSheet();
}

void ShtSheet::WinClientRectSet(LRCT* r) {
    if (r == nullptr) return;
    WinWindow::WinClientRectSet(r);
    updateScrollBars(true, true);
    growCols();
    growRows();
}

bool ShtSheet::ShtSheetVirtGet() { return state_->virtualMode; }

void ShtSheet::ShtSheetVirtSet(bool on) {
    if (on == state_->virtualMode) return;
    endEdit();
    state_->virtualMode = false;
    scrollTo(0, 0);
    state_->virtualMode = on;
    if (on) {
        growCols();
        growRows();
    } else {
        short rows = 0, cols = 0, usedRows = 0, usedCols = 0;
        ShtSheetSizeUsedGet(&usedRows, &usedCols);
        ShtSheetSizeGet(&rows, &cols);
        for (int r = rows - 1; r >= usedRows; --r) ShtRowDel(static_cast<short>(r));
        for (int c = cols - 1; c >= usedCols; --c) ShtColDel(static_cast<short>(c));
    }
    redrawSheet();
}

void ShtSheet::growCols() {
    if (!state_->virtualMode) return;
    LRCT client = {0, 0, 0, 0};
    WinClientRectGet(&client);
    const int count = state_->table.colCount();
    std::int64_t remaining = 2 * (kora::width(client) - state_->rowBandWidth);
    for (int c = state_->firstCol; c < count && remaining > 0; ++c) remaining -= state_->table.width(c);
    if (remaining <= 0 || count > kLastNumber) return;
    const std::int64_t last = count + remaining / divisor(state_->defaultColWidth);
    ShtColAdd(static_cast<short>(std::min<std::int64_t>(last, kLastNumber)));
}

void ShtSheet::growRows() {
    if (!state_->virtualMode) return;
    LRCT client = {0, 0, 0, 0};
    WinClientRectGet(&client);
    const int count = state_->table.rowCount();
    std::int64_t remaining = 2 * (kora::height(client) - state_->colBandHeight);
    for (int r = state_->firstRow; r < count && remaining > 0; ++r) remaining -= state_->table.row(r)->size;
    if (remaining <= 0 || count > kLastNumber) return;
    const std::int64_t last = count + remaining / divisor(state_->defaultRowHeight);
    ShtRowAdd(static_cast<short>(std::min<std::int64_t>(last, kLastNumber)));
}
