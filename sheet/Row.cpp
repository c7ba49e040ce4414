#include "sheet/Row.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <utility>

#include "sheet/NumberedList.h"

namespace kora {

namespace {

TShtCell* blankCells(CellStore& store, std::size_t howMany) {
    char* const memory = store.allocate(howMany * sizeof(TShtCell));
    if (memory == nullptr) return nullptr;
    auto* const cells = reinterpret_cast<TShtCell*>(memory);
    std::uninitialized_value_construct_n(cells, howMany);
    return cells;
}

// In a first block, beside the cells: the heading, and the place for a pointer, which keeps blocks multiples of a cell.
constexpr std::size_t kBesides = 2;

// A copy of a table with more room; null when there is no memory.
template <class Pointer>
Pointer* grown(CellStore& store, const Pointer* held, int room, int wanted) {
    char* const memory = store.allocate(static_cast<std::size_t>(wanted) * sizeof(Pointer));
    if (memory == nullptr) return nullptr;
    auto* const table = reinterpret_cast<Pointer*>(memory);
    std::fill(std::copy_n(held, room, table), table + wanted, nullptr);
    return table;
}

template <class Pointer>
void giveBackTable(CellStore& store, Pointer* table, int room) {
    if (table != nullptr) store.giveBack(table, static_cast<std::size_t>(room) * sizeof(Pointer));
}

}  // namespace

CellExtras* TShtRow::makeExtras(CellStore& store, int c) {
    TShtCell& cell = (*this)[c];
    if (cell.hasExtras) return more()->extras[c + 1];
    if (!makeMore(store) || !reserveExtras(store, room() + 1)) return nullptr;
    char* const place = store.allocate(sizeof(CellExtras));
    if (place == nullptr) return nullptr;
    cell.hasExtras = true;
    return more()->extras[c + 1] = new (place) CellExtras;
}

void TShtRow::release(CellStore& store, int c) {
    TShtCell& cell = (*this)[c];
    if (cell.hasExtras) store.giveBack(std::exchange(more()->extras[c + 1], nullptr), sizeof(CellExtras));
    store.release(cell);
}

// Cells that are not held are blank, so making them is counting them.
bool TShtRow::reserve(CellStore& store, int wanted, int ahead) {
    if (wanted > NumberedList<TShtCell>::kMost) return false;
    if (first_ == nullptr) {
        const int cells = std::min(std::max(wanted, ahead), UINT8_MAX);
        first_ = blankCells(store, static_cast<std::size_t>(cells) + kBesides);
        if (first_ == nullptr) return false;
        firstRoom_ = static_cast<std::uint8_t>(cells);
        new (&first_[firstRoom_ + 1]) More* {nullptr};
    }
    while (room() < wanted)
        if (!addBlock(store)) return false;
    return true;
}

TShtCell& TShtRow::far(int c) const {
    const auto place = static_cast<unsigned>(c - firstRoom_);
    const auto block = static_cast<unsigned>(std::bit_width(place / kBlock + 1)) - 1;
    return more()->blocks[block][place - before(block)];
}

void TShtRow::setCount(int count) {
    count_ = static_cast<std::int16_t>(count);
    near_ = static_cast<std::uint16_t>(std::min<int>(count, firstRoom_));
}

bool TShtRow::makeMore(CellStore& store) {
    if (more() != nullptr) return true;
    char* const memory = store.allocate(sizeof(More));
    if (memory != nullptr) more() = new (memory) More{};
    return memory != nullptr;
}

bool TShtRow::addBlock(CellStore& store) {
    const int cells = static_cast<int>(kBlock << blocks_);
    if (!makeMore(store) || (more()->extras != nullptr && !reserveExtras(store, room() + cells + 1))) return false;
    TShtCell** const table = grown(store, more()->blocks, blocks_, blocks_ + 1);
    TShtCell* const block = table != nullptr ? blankCells(store, static_cast<std::size_t>(cells)) : nullptr;
    if (block == nullptr) {
        giveBackTable(store, table, blocks_ + 1);
        return false;
    }
    giveBackTable(store, more()->blocks, blocks_);
    more()->blocks = table;
    more()->blocks[blocks_++] = block;
    return true;
}

bool TShtRow::reserveExtras(CellStore& store, int wanted) {
    if (wanted <= more()->extrasRoom) return true;
    CellExtras** const table = grown(store, more()->extras, more()->extrasRoom, wanted);
    if (table == nullptr) return false;
    giveBackTable(store, more()->extras, more()->extrasRoom);
    more()->extras = table;
    more()->extrasRoom = wanted;
    return true;
}

void TShtRow::insert(int c) {
    extend(count_ + 1);
    for (int i = count_ - 1; i > c; --i) (*this)[i] = (*this)[i - 1];
    (*this)[c] = TShtCell{};
    if (CellExtras** const extras = cellExtras()) {
        std::copy_backward(extras + c, extras + count_ - 1, extras + count_);
        extras[c] = nullptr;
    }
}

void TShtRow::remove(int first, int howMany) {
    for (int i = first; i + howMany < count_; ++i) (*this)[i] = (*this)[i + howMany];
    for (int i = count_ - howMany; i < count_; ++i) (*this)[i] = TShtCell{};
    if (CellExtras** const extras = cellExtras())
        std::fill(std::copy(extras + first + howMany, extras + count_, extras + first), extras + count_, nullptr);
    setCount(count_ - howMany);
}

void TShtRow::move(int from, int to) {
    const TShtCell moved = (*this)[from];
    const int step = from < to ? 1 : -1;
    for (int i = from; i != to; i += step) (*this)[i] = (*this)[i + step];
    (*this)[to] = moved;
    CellExtras** const extras = cellExtras();
    if (extras == nullptr) return;
    if (from < to)
        std::rotate(extras + from, extras + from + 1, extras + to + 1);
    else
        std::rotate(extras + to, extras + from, extras + from + 1);
}

void TShtRow::destroy(CellStore& store) {
    if (first_ == nullptr) return;
    if (More* const held = more()) {
        for (unsigned block = 0; block < blocks_; ++block)
            store.giveBack(held->blocks[block], (kBlock << block) * sizeof(TShtCell));
        giveBackTable(store, held->blocks, blocks_);
        giveBackTable(store, held->extras, held->extrasRoom);
        store.giveBack(held, sizeof *held);
    }
    store.giveBack(first_, (firstRoom_ + kBesides) * sizeof *first_);
}

}  // namespace kora
