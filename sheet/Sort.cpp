#include <kora/Sht.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string_view>

#include "sheet/BusyCursor.h"
#include "sheet/State.h"
#include "sheet/TextOrder.h"

namespace kora {

namespace {

struct SortedRow {
    TShtRow row;
    std::int32_t number;  // before
    bool isTied;          // equal to the one in front, as far as they were compared
    std::uint64_t key;
};

std::string_view headingOf(const TShtRow& row) {
    return row.heading() != nullptr ? row.heading()->view() : std::string_view();
}

// Calls `each` with the ends of every run of rows of which each belongs to the one in front.
template <typename Belongs, typename Each>
void eachRun(SortedRow* begin, SortedRow* end, Belongs belongs, Each each) {
    for (SortedRow *first = begin, *behind; first != end; first = behind) {
        behind = first + 1;
        while (behind != end && belongs(behind[-1], *behind)) ++behind;
        each(first, behind);
    }
}

// Sorts rows that are equal so far by one more text of each: by keys, where these are equal but not the whole texts by
// keys of what follows, and in the end by the texts.
template <typename TextOf>
void sortTied(SortedRow* begin, SortedRow* end, TextOf textOf, int rounds = 4) {
    if (rounds == 0) {
        const auto compare = [&](const SortedRow& a, const SortedRow& b) {
            return compareCellTexts(textOf(a.row), textOf(b.row));
        };
        std::stable_sort(begin, end, [&](const SortedRow& a, const SortedRow& b) { return compare(a, b) < 0; });
        begin->isTied = false;
        for (SortedRow* sorted = begin + 1; sorted != end; ++sorted) sorted->isTied = compare(sorted[-1], *sorted) == 0;
        return;
    }
    TextKeys keys;
    std::for_each(begin, end, [&](const SortedRow& sorted) { keys.add(textOf(sorted.row)); });
    std::for_each(begin, end, [&](SortedRow& sorted) { sorted.key = keys.key(textOf(sorted.row)); });
    std::stable_sort(begin, end, [](const SortedRow& a, const SortedRow& b) { return a.key < b.key; });
    const auto sameKey = [](const SortedRow& a, const SortedRow& b) { return a.key == b.key; };
    eachRun(begin, end, sameKey, [&](SortedRow* first, SortedRow* behind) {
        if (behind - first > 1 && !TextKeys::isWhole(first->key)) return sortTied(first, behind, textOf, rounds - 1);
        first->isTied = false;
        std::for_each(first + 1, behind, [](SortedRow& sorted) { sorted.isTied = true; });
    });
}

// Rows that are equal to each other until some of them run out of cells: those first, then the others. Each part keeps
// its order, from the last row before to the first, until the others are sorted.
struct Ragged {
    SortedRow *first, *others, *behind;
};

// A row that has run out is equal to all others, which may differ from each other. A tree puts it in front of what it
// holds by then, and what comes later in front of it, but for what belongs behind an older row. So it comes out in
// front of the first row that is older.
void mergeRagged(const Ragged& rows, SortedRow* buffer) {
    SortedRow* const end = std::copy(rows.first, rows.others, buffer);
    SortedRow *to = rows.first, *other = rows.others;
    while (buffer != end) {
        const bool isOlder = other == rows.behind || other->number < buffer->number;
        *to++ = isOlder ? *buffer++ : *other++;
    }
}

// Rows that are equal in front of a column.
struct Tied {
    SortedRow *first, *behind;
    int column;
};

// What a tree of rows makes of them, without its n * n / 2 comparisons of rows that are in order already. It puts
// groups of rows that differ where all of them have cells in order, equal ones in reverse, and a group's rows among
// themselves as if it held no others. False, with rows in any order, without memory.
bool sortByCells(SortedRow* begin, SortedRow* end) {
    const auto count = static_cast<std::size_t>(end - begin);
    // Groups that wait have two rows at least, and each ragged one takes a row at least that is in no later one.
    const std::unique_ptr<Tied[]> waiting(new (std::nothrow) Tied[count / 2 + 1]);
    std::unique_ptr<Ragged[]> ragged;
    if (waiting == nullptr) return false;
    std::size_t waits = 0, runs = 0;
    std::reverse(begin, end);
    waiting[waits++] = {begin, end, 0};
    while (waits > 0) {
        const auto [first, behind, column] = waiting[--waits];
        const auto hasRunOut = [c = column](const SortedRow& sorted) { return sorted.row.count() <= c; };
        SortedRow* others = first;
        if (std::any_of(first, behind, hasRunOut)) {
            others = std::stable_partition(first, behind, hasRunOut);
            if (others == behind) continue;
            if (ragged == nullptr) ragged.reset(new (std::nothrow) Ragged[count]);
            if (ragged == nullptr) return false;
            ragged[runs++] = {first, others, behind};
        }
        sortTied(others, behind, [c = column](const TShtRow& row) { return row[c].view(); });
        const auto isTied = [](const SortedRow&, const SortedRow& next) { return next.isTied; };
        eachRun(others, behind, isTied, [&, next = column + 1](SortedRow* tied, SortedRow* behindTied) {
            if (behindTied - tied > 1) waiting[waits++] = {tied, behindTied, next};
        });
    }
    if (runs == 0) return true;
    const std::unique_ptr<SortedRow[]> buffer(new (std::nothrow) SortedRow[count]);
    // Groups within a group have been found after it.
    while (buffer != nullptr && runs > 0) mergeRagged(ragged[--runs], buffer.get());
    return buffer != nullptr;
}

void sortByHeadings(SortedRow* begin, SortedRow* end) {
    std::reverse(begin, end);
    sortTied(begin, end, headingOf);
}

int compareHeadings(const TShtRow& a, const TShtRow& b) { return compareCellTexts(headingOf(a), headingOf(b)); }

// By the first pair of cells that differs; 0 when one of the rows has no cells left.
int compareCells(const TShtRow& a, const TShtRow& b) {
    const int both = std::min(a.count(), b.count());
    for (int c = 0; c < both; ++c)
        if (const int order = compareCellTexts(a[c].view(), b[c].view()); order != 0) return order;
    return 0;
}

// Whether each row compares with the next one like this, other than equal: then all rows do with all behind them, those
// that run out of cells too, since what tells neighbours apart stands in both.
bool isInOrder(TShtTable& table, eShtSort by, int order) {
    const auto compare = by == ShtSortHeadings ? compareHeadings : compareCells;
    const auto differs = [=](const TShtRow& row, const TShtRow& next) { return compare(row, next) != order; };
    return std::adjacent_find(table.rowsBegin(), table.rowsEnd(), differs) == table.rowsEnd();
}

// Answers where a row is afterwards. Without memory all stay where they are.
int sortRows(TShtTable& table, eShtSort by, int followed) {
    const int count = table.rowCount();
    // Rows that nobody has changed since they were sorted are found so at a fraction of what sorting takes.
    if (count == 0 || isInOrder(table, by, -1)) return followed;
    if (isInOrder(table, by, 1)) {
        std::reverse(table.rowsBegin(), table.rowsEnd());
        return count - 1 - followed;
    }
    const std::unique_ptr<SortedRow[]> rows(new (std::nothrow) SortedRow[static_cast<std::size_t>(count)]);
    if (rows == nullptr) return followed;
    SortedRow* const end = std::transform(table.rowsBegin(), table.rowsEnd(), rows.get(), [&](const TShtRow& row) {
        return SortedRow{row, static_cast<std::int32_t>(&row - table.rowsBegin()), /*isTied=*/false, 0};
    });
    if (by == ShtSortHeadings)
        sortByHeadings(rows.get(), end);
    else if (!sortByCells(rows.get(), end))
        return followed;
    std::transform(rows.get(), end, table.rowsBegin(), [](const SortedRow& sorted) { return sorted.row; });
    const auto isFollowed = [followed](const SortedRow& sorted) { return sorted.number == followed; };
    return static_cast<int>(std::find_if(rows.get(), end, isFollowed) - rows.get());
}

}  // namespace

}  // namespace kora

void ShtSheet::ShtSheetSort(eShtSort by) {
    endEdit();
    ShtSheetSelectSet(ShtSelectNone, 0, 0, 0, 0);
    kora::TShtTable& table = state_->table;
    {
        kora::BusyCursor cursor(*this);
        // Whoever overrides the cursor may look at the sheet and change it, so the rows stay in the table all the time.
        for (int advances = table.rowCount(); advances > 0; --advances) cursor.next();
        const int first = state_->firstVisible.row;
        const int follows = kora::sortRows(table, by, first);
        if (first > 0) state_->firstVisible.row = follows;  // at the top of the sheet it stays there
        for (int advances = table.rowCount(); advances > 0; --advances) cursor.next();
    }
    redrawSheet();
    ShtCellShow(0, 0, ShtCellShowFirst, ShtCellShowFirst);
    ShtSheetDirtySet(true);
}
