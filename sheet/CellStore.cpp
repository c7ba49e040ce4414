#include "sheet/CellStore.h"

#include <kora/Str.h>

#include <algorithm>
#include <climits>
#include <new>
#include <utility>

#include "platform/Platform.h"

namespace kora {

namespace {

constexpr std::size_t roundedUp(std::size_t size, std::size_t step) { return (size + step - 1) / step * step; }

// Large slabs are mapped, which spares their pages from being cut up by what else is in the heap.
void* makeSlab(std::size_t size) {
    return size == CellStore::kLargestSlab ? platform::mapMemory(size) : ::operator new(size, std::nothrow);
}

void deleteSlab(void* slab, std::size_t size) {
    if (size == CellStore::kLargestSlab)
        platform::unmapMemory(slab, size);
    else
        ::operator delete(slab);
}

bool liesIn(std::string_view text, const char* place) {
    return reinterpret_cast<std::uintptr_t>(place) - reinterpret_cast<std::uintptr_t>(text.data()) < text.size();
}

}  // namespace

bool CellStore::assignAny(TShtCell& cell, char* text, long length, bool copyText) {
    const auto length32 = static_cast<std::int32_t>(std::clamp<long>(length, INT32_MIN, INT32_MAX));
    if (text == cell.text() && copyText != cell.isBorrowed() && length32 == cell.length()) return false;
    if (copyText && text != nullptr && length32 != 0) {
        copyWhole(cell, text, static_cast<std::size_t>(StrLength(text, length32)));
        return true;
    }
    if (!cell.isBorrowed() && liesIn(cell.view(), text))
        text = keepOwnText(cell, text);
    else
        releaseText(cell);
    cell.setOutside({text, length32, /*isBorrowed=*/true});
    return true;
}

void CellStore::copy(TShtCell& cell, const char* text, std::size_t length) {
    assign(cell, const_cast<char*>(text), static_cast<long>(std::min<std::size_t>(length, INT32_MAX)),
           /*copyText=*/true);
    // Nobody keeps what an empty text points at.
    if (cell.isBorrowed()) cell.setOutside({nullptr, 0, /*isBorrowed=*/true});
}

void CellStore::copyWhole(TShtCell& cell, const char* text, std::size_t length) {
    const std::size_t held = ownedOutside(cell);
    if (length == 0) return releaseText(cell);
    if (length <= TShtCell::kLongestInside) {
        char* const before = cell.text();
        cell.setInside(text, length);
        if (held > 0) giveBack(before, held);
    } else if (held > 0 && length <= kLargest && roundedUp(held, kStep) == roundedUp(length, kStep)) {
        moveText(cell.text(), text, length);
        setOwned(cell, cell.text(), length);
    } else {
        char* const place = allocate(length);
        if (place != nullptr) moveText(place, text, length);
        releaseText(cell);
        if (place != nullptr) setOwned(cell, place, length);
    }
}

void CellStore::keepOutside(TShtCell& cell) {
    const std::size_t length = cell.length_;
    if (length == 0) return;
    char* const place = allocate(length);
    if (place == nullptr) return;
    moveShort(place, cell.bytes_, length);
    setOwned(cell, place, length);
}

void CellStore::setOwned(TShtCell& cell, char* text, std::size_t length) {
    cell.setOutside({text, static_cast<std::int32_t>(length), /*isBorrowed=*/false});
}

// A cell that refers to a part of its own text keeps the whole of it from being reused. Answers where the part is then.
char* CellStore::keepOwnText(TShtCell& cell, char* part) {
    if (ownedOutside(cell) > 0) return part;
    const auto length = static_cast<std::size_t>(cell.length());
    char* const kept = allocate(length);
    if (kept == nullptr) return nullptr;
    moveText(kept, cell.text(), length);
    return kept + (part - cell.text());
}

std::size_t CellStore::ownedOutside(const TShtCell& cell) {
    return cell.length_ > 0 || cell.outside().isBorrowed ? 0 : static_cast<std::size_t>(cell.outside().length);
}

void CellStore::releaseText(TShtCell& cell) {
    if (const std::size_t held = ownedOutside(cell)) giveBack(cell.text(), held);
    setOwned(cell, nullptr, 0);
}

void CellStore::release(TShtCell& cell) {
    releaseText(cell);
    cell = TShtCell{};
}

char* CellStore::allocateSmall(std::size_t size) {
    Free*& head = free_[(size - 1) / kStep];
    if (head != nullptr) return reinterpret_cast<char*>(std::exchange(head, head->next));
    size = roundedUp(size, kStep);
    if (size > left_ && !addSlab()) return nullptr;
    left_ -= size;
    return std::exchange(place_, place_ + size);
}

bool CellStore::addSlab() {
    void* const memory = makeSlab(nextSlab_);
    if (memory == nullptr) return false;
    newest_ = new (memory) Slab{newest_, nextSlab_};
    constexpr std::size_t kHeader = roundedUp(sizeof(Slab), kStep);
    place_ = static_cast<char*>(memory) + kHeader;
    left_ = nextSlab_ - kHeader;
    nextSlab_ = std::min(2 * nextSlab_, kLargestSlab);
    return true;
}

char* CellStore::allocateLarge(std::size_t size) {
    void* const memory = ::operator new(sizeof(Large) + size, std::nothrow);
    if (memory == nullptr) return nullptr;
    large_ = new (memory) Large{large_, &large_};
    if (large_->next != nullptr) large_->next->link = &large_->next;
    return static_cast<char*>(memory) + sizeof(Large);
}

void CellStore::giveBack(void* piece, std::size_t size) {
    if (size <= kLargest) {
        Free*& head = free_[(size - 1) / kStep];
        head = new (piece) Free{head};
        return;
    }
    Large* const entry = static_cast<Large*>(piece) - 1;
    *entry->link = entry->next;
    if (entry->next != nullptr) entry->next->link = entry->link;
    ::operator delete(entry);
}

void CellStore::clear() {
    while (Slab* slab = newest_) {
        newest_ = slab->before;
        deleteSlab(slab, slab->size);
    }
    while (Large* piece = large_) {
        large_ = piece->next;
        ::operator delete(piece);
    }
    place_ = nullptr;
    left_ = 0;
    nextSlab_ = kFirstSlab;
    std::fill(std::begin(free_), std::end(free_), nullptr);
}

}  // namespace kora
