#include <kora/Sht.h>

#include <algorithm>

#include "sheet/BusyCursor.h"
#include "sheet/State.h"

using kora::SheetLine;
using kora::SheetState;
using kora::TShtCell;

namespace {

constexpr int kMargin = 200;  // beside a text

std::int16_t widthFor(LPNT text) { return kora::sizeFor(std::int64_t{text.h} + kMargin); }

// No text takes no room, in headings too. The cell may be gone behind the call.
LPNT measured(WinSurface& surface, const TShtCell& cell) {
    LPNT size = {0, 0};
    const std::string_view text = cell.view();
    if (!text.empty()) surface.WinTextMeasure(text.data(), static_cast<long>(text.size()), &size);
    return size;
}

// Widens the columns to the cells of a row; the answer is what height they need.
int fitCells(WinSurface& surface, SheetState& state, int r, bool columns) {
    int height = 0;
    for (int c = 0;; ++c) {
        const TShtCell* const cell = state.table.cell(r, c);
        if (cell == nullptr) return height;
        if (cell->view().empty()) continue;
        const LPNT size = measured(surface, *cell);
        height = std::max(height, size.v);
        if (!columns || c >= state.table.colCount()) continue;
        std::int16_t& width = state.table.size(SheetLine::column, c);
        width = std::max(width, widthFor(size));
    }
}

}  // namespace

void ShtSheet::ShtSheetAutoSize(eShtAutoSize rows, eShtAutoSize cols, eShtHeaderSize header) {
    SheetState& state = *state_;
    if (state.table.rowCount() == 0 || state.table.colCount() == 0) return;
    if (rows == ShtAutoSizeNone && cols == ShtAutoSizeNone && header == ShtHeaderSizeNone) return;
    std::int16_t& band = state.bandSize.column;
    if (header == ShtHeaderSizeHalf) band = static_cast<std::int16_t>(state.defaultSize.column / 2);
    if (header == ShtHeaderSizeDefault) band = state.defaultSize.column;
    endEdit();
    kora::BusyCursor busy(*this);
    WinFontSet(&state.cellFont);
    const bool fitRows = rows == ShtAutoSizeFit, fitCols = cols == ShtAutoSizeFit, fitBand = header == ShtHeaderSizeFit;
    for (int c = 0; cols != ShtAutoSizeNone && c < state.table.colCount(); ++c) {
        const std::int16_t width =
            fitCols ? widthFor(measured(*this, *state.table.column(c))) : state.defaultSize.column;
        if (c < state.table.colCount()) state.table.size(SheetLine::column, c) = width;
    }
    for (int r = 0; r < state.table.rowCount(); ++r) {
        int height = 0;
        if (fitRows || fitBand) {
            const LPNT size = measured(*this, *state.heading(SheetLine::row, r));
            height = size.v;
            if (fitBand) band = std::max(band, widthFor(size));
        }
        if (fitRows || fitCols) height = std::max(height, fitCells(*this, state, r, fitCols));
        kora::TShtRow* const row = rows != ShtAutoSizeNone ? state.table.row(r) : nullptr;
        if (row != nullptr) row->size = fitRows && height > 0 ? kora::sizeFor(height) : state.defaultSize.row;
        busy.next();
    }
    updateScrollBars();
    redrawSheet();
}
