#pragma once

#include <cstddef>

#include "sheet/Cell.h"

namespace kora {

/// Writes the cells of a sheet and owns their memory and what does not fit into them. Small pieces lie in slabs,
/// without any overhead of their own; what is given back serves pieces of the same size until everything is.
class CellStore {
public:
    static constexpr std::size_t kLargestSlab = 1U << 21;  ///< what a large page holds

    CellStore() = default;
    ~CellStore() { clear(); }
    CellStore(const CellStore&) = delete;
    CellStore& operator=(const CellStore&) = delete;

    /// Stores @p text in @p cell: as a copy, or by reference without @p copyText, or when it is empty. @p text may lie
    /// in the cell's own. Answers whether anything was changed: not, if it is the very text that the cell has.
    bool assign(TShtCell& cell, char* text, long length, bool copyText) {
        return (copyText && text != cell.bytes_ && assignInside(cell, text, length)) ||
               assignAny(cell, text, length, copyText);
    }
    /// The usual case of it: a copy that stands in a cell which has no text outside. False, with nothing done, in
    /// others.
    static bool assignInside(TShtCell& cell, const char* text, long length) {
        const auto size = static_cast<std::size_t>(length);
        if (size - 1 >= TShtCell::kLongestInside || text == nullptr || holdsNul(text, size)) return false;
        if (cell.length_ == 0 && cell.outside().length != 0) return false;
        cell.setInside(text, size);
        return true;
    }
    /// Has the cell's own text stand outside, for a cell that is moved while somebody may have read its text. Without
    /// memory it stays inside.
    void keepOutside(TShtCell& cell);
    /// The cell gets a copy of @p text, no text if it is empty.
    void copy(TShtCell& cell, const char* text, std::size_t length);
    /// The same for a text without a NUL.
    void copyWhole(TShtCell& cell, const char* text, std::size_t length);
    /// Gives back the text that the cell owns; it is blank then.
    void release(TShtCell& cell);
    /// Gives back everything at once: there are no cells any more.
    void clear();

    /// Memory for cells and what belongs to them, as aligned as a pointer; null when there is none.
    char* allocate(std::size_t size) { return size > kLargest ? allocateLarge(size) : allocateSmall(size); }
    void giveBack(void* piece, std::size_t size);

private:
    static constexpr std::size_t kStep = 8;       // sizes are rounded up to this
    static constexpr std::size_t kLargest = 512;  // in the slabs
    static constexpr std::size_t kFirstSlab = 1U << 12;

    struct Slab {
        Slab* before;
        std::size_t size;
    };
    struct Free {
        Free* next;
    };
    // In front of a large piece.
    struct Large {
        Large* next;
        Large** link;  // what points at this one
    };

    bool addSlab();
    bool assignAny(TShtCell& cell, char* text, long length, bool copyText);
    char* allocateSmall(std::size_t size);
    char* allocateLarge(std::size_t size);
    void releaseText(TShtCell& cell);
    char* keepOwnText(TShtCell& cell, char* part);
    static void setOwned(TShtCell& cell, char* text, std::size_t length);
    static std::size_t ownedOutside(const TShtCell& cell);

    Slab* newest_ = nullptr;
    char* place_ = nullptr;  // the unused rest of the newest slab
    std::size_t left_ = 0;
    std::size_t nextSlab_ = kFirstSlab;
    Free* free_[kLargest / kStep] = {};  // by size
    Large* large_ = nullptr;
};

}  // namespace kora
