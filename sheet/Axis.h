#pragma once

#include <algorithm>

#include "sheet/State.h"

namespace kora {

/// Where the rows (columns) of a sheet lie on the screen: from the first visible one on, behind the band of headings,
/// to the end of the client rectangle.
///
/// Walks end where the client rectangle does, however many elements there are.
class SheetAxis {
public:
    SheetAxis(SheetState& state, SheetLine line, const LRCT& client)
        : table_(state.table),
          line_(line),
          first_(state.firstVisible[line]),
          count_(state.table.count(line)),
          clientBegin_(line == SheetLine::row ? client.top : client.left),
          begin_(clientBegin_ + state.bandSize[line]),
          end_(line == SheetLine::row ? client.bottom : client.right) {}

    bool exists(int n) const { return n >= 0 && n < count_; }
    std::int64_t room() const { return end_ - begin_; }

    /// How many elements from the first visible one on are visible whole.
    int whole() const {
        std::int64_t place = begin_;
        int n = first_;
        while (n < count_ && (place += size(n)) <= end_) ++n;
        return n - first_;
    }

    struct Span {
        std::int64_t begin, end;
    };
    /// Where elements @p first to @p last are seen. -1 to -1 is the band; -1 alone and kToEnd reach to that end.
    Span span(int first, int last) const {
        if (first < 0 && last < 0) return {clientBegin_, edge(0)};
        return {first < 0 ? clientBegin_ : edge(first), last < 0 || last >= kToEnd ? end_ : edge(last + 1)};
    }

    /// What to begin with so that element @p n is shown; the first visible one as it is when nothing is to be done, or
    /// there is no such element.
    int scrolled(int n, eShtCellShow show) const {
        if (!exists(n) || (n >= first_ && n < first_ + whole())) return first_;
        if (show == ShtCellShowFirst) return n;
        if (show == ShtCellShowMiddle) return (n + firstIfLast(n)) / 2;
        if (show == ShtCellShowLast) return firstIfLast(n);
        return first_;
    }

private:
    std::int16_t size(int n) const { return table_.size(line_, n); }

    // Where element n begins, within the cells' area.
    std::int64_t edge(int n) const {
        std::int64_t place = begin_;
        for (int i = first_; i < std::min(n, count_) && place < end_; ++i) place += size(i);
        return std::clamp(place, std::min(begin_, end_), end_);
    }

    int firstIfLast(int n) const {
        std::int64_t left = room() - size(n);
        while (n > 0 && (left -= size(n - 1)) >= 0) --n;
        return n;
    }

    TShtTable& table_;
    SheetLine line_;
    int first_, count_;
    std::int64_t clientBegin_, begin_, end_;
};

}  // namespace kora
