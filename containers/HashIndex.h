#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kora {

/// Finds places in an array by hash: open addressing over hashes and indexes, the elements stay with the caller.
class HashIndex {
public:
    static constexpr std::uint32_t kNone = UINT32_MAX;

    /// The index of the element with @p hash that @p isEqual(index) accepts; kNone when there is none.
    template <class IsEqual>
    std::uint32_t find(std::uint32_t hash, IsEqual&& isEqual) const {
        return slots_.empty() ? kNone : slots_[place(hash, isEqual)].index;
    }

    /// The same; where there is none, an element at @p index is entered.
    template <class IsEqual>
    std::uint32_t findOrAdd(std::uint32_t hash, IsEqual&& isEqual, std::uint32_t index) {
        if (used_ >= slots_.size() / 4 * 3) resize(slots_.empty() ? kFewest : slots_.size() * 4);
        Slot& slot = slots_[place(hash, isEqual)];
        if (slot.index != kNone) return slot.index;
        slot = {hash, index};
        ++used_;
        return kNone;
    }

    std::size_t size() const { return used_; }
    /// Makes room for so many elements at once.
    void reserve(std::size_t count) {
        if (count > slots_.size() / 4 * 3) resize(std::max(kFewest, std::bit_ceil((count * 4 + 2) / 3)));
    }

private:
    static constexpr std::size_t kFewest = 16;

    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t index = kNone;
    };

    /// Where the element is, or would be.
    template <class IsEqual>
    std::size_t place(std::uint32_t hash, IsEqual&& isEqual) const {
        const std::size_t mask = slots_.size() - 1;
        std::size_t at = hash & mask;
        while (slots_[at].index != kNone && (slots_[at].hash != hash || !isEqual(slots_[at].index)))
            at = (at + 1) & mask;
        return at;
    }

    void resize(std::size_t size) {
        std::vector<Slot> before(size);
        before.swap(slots_);
        for (const Slot& slot : before)
            if (slot.index != kNone) slots_[place(slot.hash, [](std::uint32_t) { return false; })] = slot;
    }

    std::vector<Slot> slots_;  // a power of two, at most three quarters of them used
    std::size_t used_ = 0;
};

}  // namespace kora
