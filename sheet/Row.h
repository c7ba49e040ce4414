#pragma once

#include <cstdint>

#include "sheet/CellStore.h"

namespace kora {

/// A heading, the cells up to the highest column that was ever written, and a size. Rows are moved as bytes; their
/// table owns what they hold.
///
/// Cells lie in blocks, so that none moves when others come behind it: texts stand in their cells, and who has read one
/// may write another. The heading is the first element of the first block, number -1 where both are meant.
class TShtRow {
public:
    static constexpr int kHeading = -1;

    int count() const { return count_; }
    /// Null when there is none.
    TShtCell* cell(int c) const {
        if (static_cast<unsigned>(c) < near_) return first_ + c + 1;
        return c >= near_ && c < count_ ? &far(c) : nullptr;
    }
    /// The same, as far as the first block goes.
    TShtCell* near(std::uint16_t c) const { return c < near_ ? first_ + c + 1 : nullptr; }
    /// @p c must be held, or the heading.
    TShtCell& operator[](int c) const { return c < near_ ? first_[c + 1] : far(c); }
    /// Null as long as nothing was written in the row.
    TShtCell* heading() const { return first_; }

    /// What a cell has besides; @p c must be held, or the heading.
    const CellExtras& extras(int c) const { return (*this)[c].hasExtras ? *more()->extras[c + 1] : kNoExtras; }
    /// The same, made if need be; null when there is no memory.
    CellExtras* makeExtras(CellStore& store, int c);
    /// Gives back everything that the cell owns; it is blank then.
    void release(CellStore& store, int c);

    /// Makes room for @p wanted cells and the heading; @p ahead is how many to make room for at once if it is the first
    /// time. False, with no cell changed, when there is no memory or they would be too many.
    bool reserve(CellStore& store, int wanted, int ahead);
    /// Blank cells behind the last up to @p wanted, for which there must be room.
    void extend(int wanted) {
        if (wanted > count_) setCount(wanted);
    }
    /// The cell behind the last, if there is room for it in the first block, blank; null otherwise.
    TShtCell* append(int c) {
        if (c != count_ || c >= firstRoom_) return nullptr;
        ++count_;
        ++near_;
        return first_ + c + 1;
    }
    /// A blank cell in front of cell @p c; there must be room.
    void insert(int c);
    /// The cells must have been released.
    void remove(int first, int howMany);
    /// Cell @p from becomes cell @p to; those between move up.
    void move(int from, int to);
    /// Gives everything back; the cells and the heading must have been released.
    void destroy(CellStore& store);

    std::int16_t size;  ///< the row's height

private:
    static constexpr unsigned kBlock = 16;  // the first further block; each one holds twice as many as the one before

    // What most rows do without. Where it is stands behind the cells of the first block, so that all rows together
    // stay in a processor's own memory while they are read at random.
    struct More {
        TShtCell** blocks;    // further ones
        CellExtras** extras;  // the heading's and those of all cells that there is room for, null where there are none
        int extrasRoom;
    };

    static constexpr unsigned before(unsigned block) { return kBlock * ((1U << block) - 1); }
    int room() const { return firstRoom_ + static_cast<int>(before(blocks_)); }
    TShtCell& far(int c) const;
    void setCount(int count);
    More*& more() const { return *reinterpret_cast<More**>(first_ + firstRoom_ + 1); }
    bool makeMore(CellStore& store);
    bool addBlock(CellStore& store);
    bool reserveExtras(CellStore& store, int wanted);
    // The cells', null when no cell ever had any.
    CellExtras** cellExtras() const {
        return first_ != nullptr && more() != nullptr && more()->extras != nullptr ? more()->extras + 1 : nullptr;
    }

    std::int16_t count_;
    std::uint16_t near_;      // how many of them stand in the first block
    std::uint8_t firstRoom_;  // for how many there is room in it
    std::uint8_t blocks_;     // further ones
    TShtCell* first_;
};

}  // namespace kora
