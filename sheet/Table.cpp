#include "sheet/Table.h"

#include <algorithm>

namespace kora {

namespace {

// A new row has room for this many cells, or for as many as the sheet has columns.
constexpr int kCellsAhead = 16;

}  // namespace

bool TShtTable::growRows(int r, std::int16_t height) {
    const int had = rows_.count();
    if (r < 0 || !rows_.extend(r + 1)) return false;
    for (int made = had; made <= r; ++made) rows_[made].size = height;
    return true;
}

bool TShtTable::growColumns(int c, std::int16_t width) {
    const int had = widths_.count();
    if (c < 0 || !columns_.reserve(store, c + 1, kCellsAhead) || !widths_.extend(c + 1)) return false;
    columns_.extend(c + 1);
    for (int made = had; made <= c; ++made) widths_[made] = width;
    return true;
}

bool TShtTable::growCells(TShtRow& row, int c) {
    if (!row.reserve(store, c + 1, std::min(columns_.count(), kCellsAhead))) return false;
    row.extend(c + 1);
    widest_ = std::max(widest_, row.count());
    return true;
}

bool TShtTable::insertRow(int r, std::int16_t height) {
    if (!rows_.reserve(rows_.count() + 1)) return false;
    rows_.insert(r);
    rows_[r].size = height;
    return true;
}

bool TShtTable::insertColumn(int c, std::int16_t width) {
    if (!widths_.reserve(widths_.count() + 1) || !columns_.reserve(store, columns_.count() + 1, kCellsAhead))
        return false;
    const bool hasCells = widest_ > c;
    if (hasCells)
        for (TShtRow& row : rows_)
            if (row.count() > c && !row.reserve(store, row.count() + 1, 0)) return false;
    columns_.insert(c);
    widths_.insert(c);
    widths_[c] = width;
    if (!hasCells) return true;
    for (TShtRow& row : rows_)
        if (row.count() > c) row.insert(c);
    ++widest_;
    return true;
}

int TShtTable::removeCell(TShtRow& row, int c) {
    const int dirty = row[c].dirty ? 1 : 0;
    row.release(store, c);
    return dirty;
}

int TShtTable::removeCells(TShtRow& row, int first, int howMany) {
    howMany = std::min(howMany, row.count() - first);
    if (howMany <= 0) return 0;
    int dirty = 0;
    for (int c = first; c < first + howMany; ++c) dirty += removeCell(row, c);
    row.remove(first, howMany);
    return dirty;
}

int TShtTable::removeRows(int first, int howMany) {
    int dirty = 0;
    for (int r = first; r < first + howMany; ++r) {
        TShtRow& row = rows_[r];
        if (row.heading() != nullptr) dirty += removeCell(row, TShtRow::kHeading);
        dirty += removeCells(row, 0, row.count());
        row.destroy(store);
    }
    rows_.remove(first, howMany);
    return dirty;
}

int TShtTable::removeColumns(int first, int howMany) {
    int dirty = removeCells(columns_, first, howMany);
    widths_.remove(first, howMany);
    if (widest_ <= first) return dirty;
    for (TShtRow& row : rows_) dirty += removeCells(row, first, howMany);
    widest_ = std::max(first, widest_ - howMany);
    return dirty;
}

bool TShtTable::moveColumn(int from, int to) {
    const auto [first, last] = std::minmax(from, to);
    for (TShtRow& row : rows_)
        if (row.count() > first && !row.reserve(store, last + 1, 0)) return false;
    for (TShtRow& row : rows_) {
        if (row.count() <= first) continue;
        row.extend(last + 1);
        widest_ = std::max(widest_, row.count());
        row.move(from, to);
    }
    columns_.move(from, to);
    widths_.move(from, to);
    return true;
}

void TShtTable::clear() {
    rows_.clear();
    columns_ = {};
    widths_.clear();
    widest_ = 0;
    store.clear();
}

}  // namespace kora
