#pragma once

#include <algorithm>
#include <cstdint>

namespace kora {

/// Where the elements along one direction of a sheet lie on the screen: from the first visible one on, behind the band
/// of headings, to the end of the client rectangle. @p SizeOf answers the size of element n, which exists.
///
/// Walks end where the client rectangle does, however many elements there are.
template <class SizeOf>
class SheetAxis {
public:
    SheetAxis(int first, int count, std::int64_t begin, std::int64_t end, SizeOf sizeOf)
        : first_(first), count_(count), begin_(begin), end_(end), sizeOf_(sizeOf) {}

    /// Where element @p n begins, within the cells' area.
    std::int64_t edge(int n) const {
        std::int64_t place = begin_;
        for (int i = first_; i < std::min(n, count_) && place < end_; ++i) place += sizeOf_(i);
        return std::clamp(place, std::min(begin_, end_), end_);
    }

    /// How many elements from the first visible one on are visible whole.
    int whole() const {
        std::int64_t place = begin_;
        int i = first_;
        while (i < count_ && (place += sizeOf_(i)) <= end_) ++i;
        return i - first_;
    }

    bool exists(int n) const { return n < count_; }
    bool isWhole(int n) const { return n >= first_ && n < first_ + whole(); }

    /// The element to begin with so that @p n is the last one that is visible whole.
    int firstIfLast(int n) const {
        std::int64_t left = end_ - begin_ - sizeOf_(n);
        int i = n;
        while (i > 0 && (left -= sizeOf_(i - 1)) >= 0) --i;
        return i;
    }

private:
    int first_, count_;
    std::int64_t begin_, end_;
    SizeOf sizeOf_;
};

}  // namespace kora
