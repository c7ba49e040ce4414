#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

#include "containers/DictionaryEntries.h"

namespace kora {

/// Finds the newest entry of a key. Older entries of the key hang behind it, each older than the one before.
///
/// The keys stand in one row without gaps, and a hash table with open addressing holds their places in it. The table is
/// kept so thin that nearly every key is found at its first slot: a wrong guess of the processor costs more than the
/// rest of a search.
template <class Entry>
class DictionaryIndex {
public:
    using Sought = typename Entry::Sought;

    /// A key with all that a search needs of its newest entry, which most searches do not touch.
    struct Record {
        typename Entry::Mark mark;
        void* value;
        Entry* entry;

        static Record of(Entry* entry) { return {Sought(entry->key).mark, entry->value, entry}; }
        bool has(const Sought& sought) const { return sought.isKeyOf(entry, mark); }
    };

    /// An index of all entries of @p list, which is not empty. Null when memory ran out.
    static DictionaryIndex* make(const DoubleList& list) {
        std::unique_ptr<DictionaryIndex> index(new (std::nothrow) DictionaryIndex);
        if (index == nullptr || !index->makeRoom(static_cast<std::uint32_t>(list.count))) return nullptr;
        // From the last, which is the oldest.
        DoubleListElement* e = list.last;
        do index->add(static_cast<Entry*>(e));
        while ((e = e->prev) != list.last);
        if (list.current != nullptr) index->currentMark = Record::of(static_cast<Entry*>(list.current)).mark;
        return index.release();
    }

    /// Whether every key has just one entry.
    bool isPlain() const { return repeated_ == 0; }

    /// That of no key, without entry and value, when there is none.
    const Record& find(const Sought& sought) const {
        for (std::size_t slot = home(sought);; slot = next(slot)) {
            const Record& record = records_[slots_[slot]];
            if (record.has(sought) || record.entry == nullptr) return record;
        }
    }

    /// Puts in an entry newer than all others. False when memory ran out; the index is of no use then.
    bool add(Entry* entry) {
        const Sought key(entry->key);
        std::uint32_t place = slots_[slotOf(key)];
        entry->newer = nullptr;
        entry->older = records_[place].entry;
        if (entry->older != nullptr) {
            entry->older->newer = entry;
            ++repeated_;
        } else {
            if (!makeRoom(keys_ + 1)) return false;
            slots_[slotOf(key)] = place = ++keys_;
        }
        records_[place] = Record::of(entry);
        return true;
    }

    void remove(Entry* entry) {
        if (entry->older != nullptr) entry->older->newer = entry->newer;
        if (entry->older != nullptr || entry->newer != nullptr) --repeated_;
        if (entry->newer != nullptr) {
            entry->newer->older = entry->older;
            return;
        }
        const std::size_t slot = slotOf(Sought(entry->key));
        const std::uint32_t place = slots_[slot];
        if (entry->older != nullptr) {
            records_[place] = Record::of(entry->older);
            return;
        }
        // The last key of the row takes the place.
        slots_[slotOf(Sought(records_[keys_].entry->key))] = place;
        records_[place] = records_[keys_];
        closeGap(slot);
        --keys_;
    }

    /// Of the entry at the cursor, for the caller; without meaning when there is none.
    typename Entry::Mark currentMark{};

private:
    static constexpr std::uint32_t kSlotsPerKey = 8;  // at least
    // The table never outgrows what a hash can tell apart, nor the address space.
    static constexpr auto kMostKeys = static_cast<std::uint32_t>(std::min<std::size_t>(1U << 28, PTRDIFF_MAX / 64));

    std::size_t home(const Sought& sought) const { return sought.hash() >> shift_; }
    std::size_t next(std::size_t slot) const { return (slot + 1) & (size_ - 1); }

    /// Where the key's slot is, or would be.
    std::size_t slotOf(const Sought& sought) const {
        std::size_t slot = home(sought);
        while (slots_[slot] != 0 && !records_[slots_[slot]].has(sought)) slot = next(slot);
        return slot;
    }

    /// Moves slots behind an emptied one as far forward as they belong, so that no search ends early.
    void closeGap(std::size_t gap) {
        for (std::size_t slot = next(gap); slots_[slot] != 0; slot = next(slot)) {
            const std::size_t wanted = home(Sought(records_[slots_[slot]].entry->key));
            if (((slot - wanted) & (size_ - 1)) < ((slot - gap) & (size_ - 1))) continue;
            slots_[gap] = slots_[slot];
            gap = slot;
        }
        slots_[gap] = 0;
    }

    /// False, with nothing changed, when memory ran out.
    bool makeRoom(std::uint32_t keys) {
        if (keys <= size_ / kSlotsPerKey) return true;
        if (keys > kMostKeys) return false;
        std::size_t size = 64;
        unsigned shift = 32 - 6;
        for (; size / kSlotsPerKey < keys; size *= 2) --shift;
        std::unique_ptr<std::uint32_t[]> slots(new (std::nothrow) std::uint32_t[size]());
        std::unique_ptr<Record[]> records(new (std::nothrow) Record[size / kSlotsPerKey + 1]);
        if (slots == nullptr || records == nullptr) return false;
        records[0] = {};
        if (keys_ > 0) std::copy_n(&records_[1], keys_, &records[1]);
        slots_ = std::move(slots);
        records_ = std::move(records);
        size_ = size;
        shift_ = shift;
        for (std::uint32_t place = 1; place <= keys_; ++place) {
            std::size_t slot = home(Sought(records_[place].entry->key));
            while (slots_[slot] != 0) slot = next(slot);
            slots_[slot] = place;
        }
        return true;
    }

    std::unique_ptr<std::uint32_t[]> slots_;  // places in the row; 0 is none
    std::unique_ptr<Record[]> records_;       // the row, from 1 on; 0 is of no key
    unsigned shift_ = 0;                      // leaves of a hash the slot where the key belongs
    std::uint32_t keys_ = 0;
    std::uint32_t repeated_ = 0;  // entries beyond the first of their key
    std::size_t size_ = 0;        // of the table, a power of two
};

}  // namespace kora
