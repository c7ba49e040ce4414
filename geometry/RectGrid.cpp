#include <kora/Utl.h>

#include "geometry/Coordinates.h"

using namespace kora;

namespace {

// A last cell that is partly covered counts.
short cellsAlong(std::int64_t outer, std::int64_t cell) { return static_cast<short>((outer - 1) / cell + 1); }

}  // namespace

void UtlRectSubRectCount(LRCT* outer, LRCT* cell, short* across, short* down) {
    *across = *down = 0;
    if (isEmpty(*outer) || isEmpty(*cell)) return;
    *across = cellsAlong(width(*outer), width(*cell));
    *down = cellsAlong(height(*outer), height(*cell));
}

bool UtlRectSubRectGet(LRCT* outer, LRCT* cell, short index) {
    short across, down;
    UtlRectSubRectCount(outer, cell, &across, &down);
    const int count = across * down;
    const bool found = count != 0 && index < count;
    const std::int64_t column = found ? index / down : 0, row = found ? index % down : 0;

    const std::int64_t cellWidth = width(*cell), cellHeight = height(*cell);
    const std::int64_t top = outer->top + row * cellHeight, left = outer->left + column * cellWidth;
    *cell = {wrapped(top), wrapped(left), wrapped(top + cellHeight), wrapped(left + cellWidth)};
    return found;
}
