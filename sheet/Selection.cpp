#include <kora/Sht.h>

#include "sheet/State.h"

using kora::SheetRange;

eShtSelect ShtSheet::ShtSheetSelectGet(short* top, short* left, short* bottom, short* right) {
    if (top != nullptr) *top = state_->selectTop;
    if (left != nullptr) *left = state_->selectLeft;
    if (bottom != nullptr) *bottom = state_->selectBottom;
    if (right != nullptr) *right = state_->selectRight;
    return state_->selection;
}

void ShtSheet::ShtSheetSelectSet(eShtSelect kind, short top, short left, short bottom, short right) {
    SheetRange range;
    if (selectedRange(range)) redraw(range);
    state_->selection = kind;
    state_->selectTop = top;
    state_->selectLeft = left;
    state_->selectBottom = bottom;
    state_->selectRight = right;
    if (selectedRange(range)) redraw(range);
}

bool ShtSheet::ShtSheetSelectNext() {
    const kora::SheetExtent extent = state_->extent();
    int r = state_->selectTop, c = state_->selectLeft;
    const bool oneCell = state_->selection == ShtSelectCells && r == state_->selectBottom && c == state_->selectRight;
    if (!oneCell || r < 0 || c < 0 || r >= extent.row || c >= extent.column) return false;
    if (++c == extent.column) {
        c = 0;
        if (++r == extent.row) r = 0;
    }
    const auto row = static_cast<short>(r), col = static_cast<short>(c);
    ShtSheetSelectSet(ShtSelectCells, row, col, row, col);
    return true;
}

bool ShtSheet::selectedRange(SheetRange& range) {
    const eShtSelect kind = state_->selection;
    if (kind == ShtSelectNone) return false;
    const kora::SheetExtent extent = state_->extent();
    const bool allRows = kind == ShtSelectCols || kind == ShtSelectSheet;
    const bool allCols = kind == ShtSelectRows || kind == ShtSelectSheet;
    range.top = allRows || state_->selectTop < 0 ? 0 : state_->selectTop;
    range.bottom = allRows || state_->selectBottom < 0 ? extent.row - 1 : state_->selectBottom;
    range.left = allCols || state_->selectLeft < 0 ? 0 : state_->selectLeft;
    range.right = allCols || state_->selectRight < 0 ? extent.column - 1 : state_->selectRight;
    return true;
}
