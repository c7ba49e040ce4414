#pragma once

#include <algorithm>
#include <cstdint>

#include "sheet/Table.h"

namespace kora {

/// In ranges that are redrawn: up to the end.
constexpr int kToEnd = 32767;

/// A length as the size of a row or column: sizes have 16 bits and are not below 0.
constexpr std::int16_t sizeFor(std::int64_t length) {
    return static_cast<std::int16_t>(std::clamp<std::int64_t>(length, 0, INT16_MAX));
}

/// What a writer invalidates: nothing, the rows and columns that it made, or its cell too.
enum class SheetRedraw : int { nothing, grown, written };

/// Everything that a sheet knows.
struct SheetState {
    TShtTable table;
    WinFont cellFont;
    PerLine<std::int16_t> defaultSize;  // the height of rows, the width of columns
    PerLine<std::int16_t> bandSize;     // the height of the column headings, the width of the row headings
    int protectColour = 3;
    int gridLinesColour = 9;
    bool inited = true;
    bool virtualMode = false;
    bool gridLines = true;
    bool axesSwapped = false;
    bool isProtected = false;
    PerLine<bool> userMoves = {false, false};
    PerLine<bool> userSizes = {true, true};
    bool dirty = false;
    std::int32_t dirtyCells = 0;
    bool editing = false;
    std::int16_t editRow = -1, editCol = -1;
    eShtSelect selection = ShtSelectNone;
    std::int16_t selectTop = 0, selectLeft = 0, selectBottom = 0, selectRight = 0;
    PerLine<int> firstVisible;  // 0 is the top, not an element: it stays 0 whatever is inserted there

    // The sheet's own code of operations that it may do inline while they are not overridden.
    const void* ownCellGet = nullptr;
    const void* ownCellShow = nullptr;
    const void* ownProgCellChange = nullptr;

    SheetExtent extent() const { return {table.count(SheetLine::row), table.count(SheetLine::column)}; }

    /// A heading, to be read; null when there is no such row (column).
    const TShtCell* heading(SheetLine line, int n) {
        if (line == SheetLine::column) return table.column(n);
        const TShtRow* const row = table.row(n);
        if (row == nullptr) return nullptr;
        return row->heading() != nullptr ? row->heading() : &kBlankCell;
    }

    /// What a heading has besides, which may be missing.
    const CellExtras& headingExtras(SheetLine line, int n) {
        if (heading(line, n) == nullptr) return kNoExtras;
        const auto [row, number] = table.headingPlace(line, n);
        return row.heading() != nullptr ? row.extras(number) : kNoExtras;
    }

    // What a writer addresses, made if need be.
    TShtRow* makeRow(int r) { return inited ? table.makeRow(r, defaultSize.row) : nullptr; }
    TShtCell* makeColumn(int c) { return inited ? table.makeColumn(c, defaultSize.column) : nullptr; }
    bool make(SheetLine line, int n) {
        return line == SheetLine::row ? makeRow(n) != nullptr : makeColumn(n) != nullptr;
    }
    TShtCell* makeHeading(SheetLine line, int n) {
        if (line == SheetLine::column) return makeColumn(n);
        TShtRow* const row = makeRow(n);
        return row != nullptr ? table.makeHeading(*row) : nullptr;
    }
    // Null, with nothing made, when either number is none.
    TShtCell* makeCell(int r, int c) {
        if (!TShtTable::isNumber(r) || !TShtTable::isNumber(c)) return nullptr;
        TShtRow* const row = makeRow(r);
        return row != nullptr && makeColumn(c) != nullptr ? table.makeCell(*row, c) : nullptr;
    }

    void markDirty(TShtCell& cell) {
        if (cell.dirty) return;
        cell.dirty = true;
        ++dirtyCells;
    }
};

}  // namespace kora
