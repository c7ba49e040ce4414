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

// Rows in the order in which a tree gets them. False, with nothing changed, without memory.
bool sortInTree(SortedRow* begin, SortedRow* end) {
    const std::unique_ptr<RowElement[]> elements(new (std::nothrow) RowElement[static_cast<std::size_t>(end - begin)]);
    if (elements == nullptr) return false;
    RowSortTree tree;
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

// A tree of rows would take n * n / 2 comparisons for rows that are in order already. It puts groups of rows that
// differ where all of them have cells in order, equal ones in reverse, and a group's rows among themselves as if it
// held no others. So it is needed for those rows alone that are equal until some, not all, of them run out of cells:
// such a row is equal to rows that differ from each other, and the order depends on who met whom.
bool sortByCells(SortedRow* begin, SortedRow* end) {
    std::reverse(begin, end);
    bool goesOn = true, hasMemory = true;
    for (int c = 0; goesOn && hasMemory; ++c) {
        goesOn = false;
        const auto isTied = [](const SortedRow&, const SortedRow& next) { return next.isTied; };
        eachRun(begin, end, isTied, [&](SortedRow* first, SortedRow* behind) {
            if (behind - first == 1) return;
            const auto [shortest, longest] = std::minmax_element(
                first, behind, [](const SortedRow& a, const SortedRow& b) { return a.row.count() < b.row.count(); });
            const int fewest = shortest->row.count(), most = longest->row.count();
            if (fewest > c) {
                goesOn = true;
                return sortTied(first, behind, [c](const TShtRow& row) { return row[c].view(); });
            }
            if (fewest < most) {
                std::reverse(first, behind);
                if (!sortInTree(first, behind)) hasMemory = false;
            }
            std::for_each(first, behind, [](SortedRow& sorted) { sorted.isTied = false; });
        });
    }
    return hasMemory;
}

void sortByHeadings(SortedRow* begin, SortedRow* end) {
    std::reverse(begin, end);
    sortTied(begin, end, headingOf);
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
