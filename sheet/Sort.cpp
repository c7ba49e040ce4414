#include <kora/Sht.h>
#include <kora/SortTree.h>

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

struct RowElement : DoubleListElement {
    SortedRow sorted;
};

const TShtRow& rowOf(DoubleListElement* element) { return static_cast<RowElement*>(element)->sorted.row; }

// The first pair of cells that differs decides. A row that has no more cells is equal to every other.
class RowSortTree : public SortTree {
public:
    short Compare(DoubleListElement* a, DoubleListElement* b) override {
        const TShtRow &left = rowOf(a), &right = rowOf(b);
        const int both = std::min(left.count(), right.count());
        int order = 0;
        for (int c = 0; c < both && order == 0; ++c) order = compareCellTexts(left[c].view(), right[c].view());
        return static_cast<short>(order);
    }
};

// False, with nothing changed, without memory.
bool sortInTree(SortedRow* begin, SortedRow* end, SortTree&& tree) {
    const std::unique_ptr<RowElement[]> elements(new (std::nothrow) RowElement[static_cast<std::size_t>(end - begin)]);
    if (elements == nullptr) return false;
    RowElement* element = elements.get();
    std::for_each(begin, end, [&](const SortedRow& sorted) {
        element->sorted = sorted;
        tree.Insert(element++);
    });
    DoubleList list;
    tree.Flatten(list);
    while (DoubleListElement* next = list.DetachNext()) *begin++ = static_cast<RowElement*>(next)->sorted;
    return true;
}

// Sorts rows that are equal so far by one more text of each.
template <typename TextOf>
void sortTied(SortedRow* begin, SortedRow* end, TextOf textOf) {
    TextKeys keys;
    std::for_each(begin, end, [&](const SortedRow& sorted) { keys.add(textOf(sorted.row)); });
    std::for_each(begin, end, [&](SortedRow& sorted) { sorted.key = keys.key(textOf(sorted.row)); });
    const auto compare = [&textOf](const SortedRow& a, const SortedRow& b) {
        if (a.key != b.key) return a.key < b.key ? -1 : 1;
        return TextKeys::isWhole(a.key) ? 0 : compareCellTexts(textOf(a.row), textOf(b.row));
    };
    std::stable_sort(begin, end, [&](const SortedRow& a, const SortedRow& b) { return compare(a, b) < 0; });
    begin->isTied = false;
    for (SortedRow* sorted = begin + 1; sorted != end; ++sorted) sorted->isTied = compare(sorted[-1], *sorted) == 0;
}

// The tree's order, without its n * n / 2 comparisons for rows that are in order already, where the comparison cannot
// contradict itself: by the first @p howMany texts of each, equal rows in reverse. Answers whether there are such.
template <typename TextOf>
bool sortByTexts(SortedRow* begin, SortedRow* end, int howMany, TextOf textOf) {
    const auto isTied = [](const SortedRow& sorted) { return sorted.isTied; };
    std::reverse(begin, end);
    for (int nth = 0; nth < howMany; ++nth) {
        for (SortedRow *first = begin, *behind; first != end; first = behind) {
            behind = std::find_if_not(first + 1, end, isTied);
            if (behind - first > 1) sortTied(first, behind, [&](const TShtRow& row) { return textOf(row, nth); });
        }
    }
    return std::any_of(begin, end, isTied);
}

bool sortByCells(SortedRow* begin, SortedRow* end) {
    const auto [shortest, longest] = std::minmax_element(
        begin, end, [](const SortedRow& a, const SortedRow& b) { return a.row.count() < b.row.count(); });
    const int fewest = shortest->row.count();
    const bool isRagged = fewest < longest->row.count();
    const auto textOf = [](const TShtRow& row, int c) { return row[c].view(); };
    // A row that runs out of cells is equal to rows that differ from each other. That is no contradiction as long as it
    // never comes to it, because the cells that all rows have tell them apart.
    if (!sortByTexts(begin, end, fewest, textOf) || !isRagged) return true;
    std::sort(begin, end, [](const SortedRow& a, const SortedRow& b) { return a.number < b.number; });
    return sortInTree(begin, end, RowSortTree());
}

// Answers where a row is afterwards. Without memory all stay where they are.
int sortRows(TShtTable& table, eShtSort by, int followed) {
    const int count = table.rowCount();
    if (count == 0) return followed;
    const std::unique_ptr<SortedRow[]> rows(new (std::nothrow) SortedRow[static_cast<std::size_t>(count)]);
    if (rows == nullptr) return followed;
    SortedRow* const end = std::transform(table.rowsBegin(), table.rowsEnd(), rows.get(), [&](const TShtRow& row) {
        return SortedRow{row, static_cast<std::int32_t>(&row - table.rowsBegin()), /*isTied=*/true, 0};
    });
    if (by == ShtSortHeadings)
        sortByTexts(rows.get(), end, 1, [](const TShtRow& row, int) { return headingOf(row); });
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
        const int first = state_->firstRow;
        const int follows = kora::sortRows(table, by, first);
        if (first > 0) state_->firstRow = follows;  // at the top of the sheet it stays there
        for (int advances = table.rowCount(); advances > 0; --advances) cursor.next();
    }
    redrawSheet();
    ShtCellShow(0, 0, ShtCellShowFirst, ShtCellShowFirst);
    ShtSheetDirtySet(true);
}
