#pragma once

#include <algorithm>

#include "sheet/CellStore.h"
#include "sheet/Lines.h"
#include "sheet/NumberedList.h"
#include "sheet/Row.h"

namespace kora {

/// The rows and column headings of a sheet with everything in them.
///
/// Pointers to rows and sizes hold until rows (columns) are made, removed or moved; those to cells and headings as long
/// as these exist and no column is inserted, removed or moved.
class TShtTable {
public:
    TShtTable() = default;
    ~TShtTable() { clear(); }
    TShtTable(const TShtTable&) = delete;
    TShtTable& operator=(const TShtTable&) = delete;

    static constexpr int kLast = NumberedList<TShtRow>::kMost - 1;
    /// Whether there can be a row (column) of this number.
    static constexpr bool isNumber(int n) { return n >= 0 && n <= kLast; }

    int count(SheetLine line) const { return line == SheetLine::row ? rows_.count() : columns_.count(); }
    int rowCount() const { return rows_.count(); }
    int colCount() const { return columns_.count(); }

    // Null when there is none.
    TShtRow* row(int r) { return rows_.holds(r) ? &rows_[r] : nullptr; }
    TShtCell* column(int c) { return columns_.cell(c); }
    TShtCell* cell(int r, int c) { return rows_.holds(r) ? rows_[r].cell(c) : nullptr; }
    /// As far as the row's first block goes. Numbers below 0 are beyond all rows and cells here.
    TShtCell* near(std::uint16_t r, std::uint16_t c) { return rows_.holds(r) ? rows_[r].near(c) : nullptr; }
    /// What a cell has besides, which may be missing.
    const CellExtras& extras(int r, int c) const {
        return rows_.holds(r) && rows_[r].cell(c) != nullptr ? rows_[r].extras(c) : kNoExtras;
    }
    /// The row and the number in it under which the heading of a row (column) that exists is found.
    struct Place {
        TShtRow& row;
        int number;
    };
    Place headingPlace(SheetLine line, int n) {
        return line == SheetLine::column ? Place{columns_, n} : Place{rows_[n], TShtRow::kHeading};
    }
    /// The height of a row (width of a column) that exists.
    std::int16_t& size(SheetLine line, int n) { return line == SheetLine::row ? rows_[n].size : widths_[n]; }

    // The same, making what is missing up to it. Null when there is no memory or the number is none; what was made
    // stays.
    TShtRow* makeRow(int r, std::int16_t height) {
        if (rows_.holds(r)) return &rows_[r];
        return growRows(r, height) ? &rows_[r] : nullptr;
    }
    TShtCell* makeColumn(int c, std::int16_t width) {
        if (TShtCell* const held = columns_.cell(c)) return held;
        return growColumns(c, width) ? &columns_[c] : nullptr;
    }
    /// In a row that exists, under a column that exists.
    TShtCell* makeCell(TShtRow& in, int c) {
        if (TShtCell* const held = in.cell(c)) return held;
        if (TShtCell* const made = append(in, c)) return made;
        return growCells(in, c) ? &in[c] : nullptr;
    }
    /// The same where it takes nothing but counting one cell more: when the row has the cells in front of it, and room.
    TShtCell* appendCell(int r, int c) {
        return rows_.holds(r) && c < columns_.count() ? append(rows_[r], c) : nullptr;
    }
    TShtCell* makeHeading(TShtRow& of) { return of.heading() != nullptr || growCells(of, -1) ? of.heading() : nullptr; }

    /// Sets one of the extras of a cell or heading that exists. False, with nothing changed, when there is no memory.
    template <class Value>
    bool set(Place of, Value CellExtras::*which, Value value) {
        if (of.row.extras(of.number).*which == value) return true;
        CellExtras* const extras = of.row.makeExtras(store, of.number);
        if (extras != nullptr) extras->*which = value;
        return extras != nullptr;
    }
    void clearMark(Place of) {
        if (!of.row[of.number].hasExtras) return;
        set(of, &CellExtras::mark, '\0');
        set(of, &CellExtras::markValue, 0);
    }
    /// Stores a text as CellStore::assign() does, and the data. @p changed says whether either is other than before.
    /// False, with nothing done, when there is no memory for the data.
    bool setContents(Place of, bool copyText, char* text, long length, void* data, bool& changed) {
        TShtCell& cell = of.row[of.number];
        const bool other = (cell.hasExtras ? of.row.extras(of.number).data : nullptr) != data;
        if (other && !set(of, &CellExtras::data, data)) return false;
        changed = store.assign(cell, text, length, copyText) || other;
        return true;
    }

    /// Inserts a row (column) in front of an existing one, a column with its cells. False, with nothing changed, when
    /// there is no memory.
    bool insert(SheetLine line, int n, std::int16_t size) {
        return line == SheetLine::row ? insertRow(n, size) : insertColumn(n, size);
    }
    /// Removes existing rows (columns). The answer is how many dirty cells and headings went with them.
    int remove(SheetLine line, int first, int howMany) {
        return line == SheetLine::row ? removeRows(first, howMany) : removeColumns(first, howMany);
    }
    /// Both numbers exist. False, with no column moved, when there is no memory for the cells that are missing between.
    bool move(SheetLine line, int from, int to) {
        if (line == SheetLine::column) return moveColumn(from, to);
        rows_.move(from, to);
        return true;
    }

    // All rows, in order: whoever sorts them writes them back.
    TShtRow* rowsBegin() { return rows_.begin(); }
    TShtRow* rowsEnd() { return rows_.end(); }

    void clear();

    CellStore store;

private:
    TShtCell* append(TShtRow& row, int c) {
        TShtCell* const made = row.append(c);
        if (made != nullptr) widest_ = std::max(widest_, row.count());
        return made;
    }
    bool insertRow(int r, std::int16_t height);
    bool insertColumn(int c, std::int16_t width);
    int removeRows(int first, int howMany);
    int removeColumns(int first, int howMany);
    bool moveColumn(int from, int to);
    bool growRows(int r, std::int16_t height);
    bool growColumns(int c, std::int16_t width);
    bool growCells(TShtRow& row, int c);
    int removeCell(TShtRow& row, int c);
    int removeCells(TShtRow& row, int first, int howMany);

    NumberedList<TShtRow> rows_;
    TShtRow columns_{};
    NumberedList<std::int16_t> widths_;
    int widest_ = 0;  // no row has more cells
};

}  // namespace kora
