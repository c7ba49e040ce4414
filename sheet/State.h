#pragma once

#include <cstdint>

#include "sheet/Table.h"

namespace kora {

/// Rows and columns, the last ones included.
struct SheetRange {
    int top, left, bottom, right;
};

/// In ranges that are redrawn: up to the end.
constexpr int kToEnd = 32767;

/// How many rows and column headings a sheet has at some moment.
struct SheetExtent {
    int rows, cols;
    bool operator==(const SheetExtent&) const = default;
};

/// What a writer invalidates: nothing, the rows and columns that it made, or its cell too.
enum class SheetRedraw : int { nothing, grown, written };

/// Everything that a sheet knows.
struct SheetState {
    TShtTable table;
    WinFont cellFont;
    std::int16_t defaultRowHeight = 0;
    std::int16_t defaultColWidth = 0;
    std::int16_t rowBandWidth = 0;   // of the row headings
    std::int16_t colBandHeight = 0;  // of the column headings
    int protectColour = 3;
    int gridLinesColour = 9;
    bool inited = true;
    bool virtualMode = false;
    bool gridLines = true;
    bool axesSwapped = false;
    bool isProtected = false;
    bool userMoveRows = false, userMoveCols = false;
    bool userSizeRows = true, userSizeCols = true;
    bool dirty = false;
    std::int32_t dirtyCells = 0;
    bool editing = false;
    std::int16_t editRow = -1, editCol = -1;
    eShtSelect selection = ShtSelectNone;
    std::int16_t selectTop = 0, selectLeft = 0, selectBottom = 0, selectRight = 0;
    int firstRow = 0, firstCol = 0;  // the first visible ones

    // The sheet's own code of operations that it may do inline while they are not overridden.
    const void* ownCellGet = nullptr;
    const void* ownCellShow = nullptr;
    const void* ownProgCellChange = nullptr;

    SheetExtent extent() const { return {table.rowCount(), table.colCount()}; }

    /// A row's heading, to be read; null when there is no such row.
    const TShtCell* heading(int r) {
        const TShtRow* const row = table.row(r);
        if (row == nullptr) return nullptr;
        return row->heading() != nullptr ? row->heading() : &kBlankCell;
    }

    // What a writer addresses, made if need be.
    TShtRow* makeRow(int r) { return inited ? table.makeRow(r, defaultRowHeight) : nullptr; }
    TShtCell* makeColumn(int c) { return inited ? table.makeColumn(c, defaultColWidth) : nullptr; }
    TShtCell* makeHeading(int r) {
        TShtRow* const row = makeRow(r);
        return row != nullptr ? table.makeHeading(*row) : nullptr;
    }
    TShtCell* makeCell(int r, int c) {
        TShtRow* const row = makeRow(r);
        return row != nullptr && makeColumn(c) != nullptr ? table.makeCell(*row, c) : nullptr;
    }

    void markDirty(TShtCell& cell) {
        if (!cell.dirty) ++dirtyCells;
        cell.dirty = true;
    }
};

}  // namespace kora
