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
    short top = 0, left = 0, bottom = 0, right = 0;
    const bool oneCell =
        ShtSheetSelectGet(&top, &left, &bottom, &right) == ShtSelectCells && top == bottom && left == right;
    const kora::SheetExtent extent = state_->extent();
    int r = top, c = left;
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
    short top = 0, left = 0, bottom = 0, right = 0;
    const eShtSelect kind = ShtSheetSelectGet(&top, &left, &bottom, &right);
    if (kind == ShtSelectNone) return false;
    const kora::SheetExtent extent = state_->extent();
    const bool allRows = kind == ShtSelectCols || kind == ShtSelectSheet;
    const bool allCols = kind == ShtSelectRows || kind == ShtSelectSheet;
    range.top = allRows || top < 0 ? 0 : top;
    range.bottom = allRows || bottom < 0 ? extent.row - 1 : bottom;
    range.left = allCols || left < 0 ? 0 : left;
    range.right = allCols || right < 0 ? extent.column - 1 : right;
    return true;
}
