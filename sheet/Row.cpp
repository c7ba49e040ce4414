#include "sheet/Row.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>

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

}  // namespace

// Cells that are not held are blank, so making them is counting them.
bool TShtRow::reserve(CellStore& store, int wanted, int ahead) {
    if (wanted > NumberedList<TShtCell>::kMost) return false;
    if (first_ == nullptr) {
        const int cells = std::min(std::max(wanted, ahead), UINT8_MAX);
        first_ = blankCells(store, static_cast<std::size_t>(cells) + 1);
        if (first_ == nullptr) return false;
        firstRoom_ = static_cast<std::uint8_t>(cells);
    }
    while (room() < wanted)
        if (!addBlock(store)) return false;
    return true;
}

TShtCell& TShtRow::far(int c) const {
    const auto place = static_cast<unsigned>(c - firstRoom_);
    const auto block = static_cast<unsigned>(std::bit_width(place / kBlock + 1)) - 1;
    return more_[block][place - before(block)];
}

void TShtRow::setCount(int count) {
    count_ = static_cast<std::int16_t>(count);
    near_ = static_cast<std::uint16_t>(std::min<int>(count, firstRoom_));
}

bool TShtRow::addBlock(CellStore& store) {
    const std::size_t held = blocks_ * sizeof *more_;
    char* const table = store.allocate(held + sizeof *more_);
    if (table == nullptr) return false;
    TShtCell* const block = blankCells(store, kBlock << blocks_);
    if (block == nullptr) {
        store.giveBack(table, held + sizeof *more_);
        return false;
    }
    if (held > 0) {
        std::memcpy(table, more_, held);
        store.giveBack(more_, held);
    }
    more_ = reinterpret_cast<TShtCell**>(table);
    more_[blocks_++] = block;
    return true;
}

void TShtRow::insert(int c) {
    extend(count_ + 1);
    for (int i = count_ - 1; i > c; --i) (*this)[i] = (*this)[i - 1];
    (*this)[c] = TShtCell{};
}

void TShtRow::remove(int first, int howMany) {
    for (int i = first; i + howMany < count_; ++i) (*this)[i] = (*this)[i + howMany];
    for (int i = count_ - howMany; i < count_; ++i) (*this)[i] = TShtCell{};
    setCount(count_ - howMany);
}

void TShtRow::move(int from, int to) {
    const TShtCell moved = (*this)[from];
    const int step = from < to ? 1 : -1;
    for (int i = from; i != to; i += step) (*this)[i] = (*this)[i + step];
    (*this)[to] = moved;
}

void TShtRow::destroy(CellStore& store) {
    if (first_ != nullptr) store.giveBack(first_, (firstRoom_ + std::size_t{1}) * sizeof *first_);
    for (unsigned block = 0; block < blocks_; ++block) store.giveBack(more_[block], (kBlock << block) * sizeof **more_);
    if (more_ != nullptr) store.giveBack(more_, blocks_ * sizeof *more_);
}

}  // namespace kora
