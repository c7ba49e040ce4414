#include <kora/DoubleList.h>

#include <atomic>

#include "core/TraceRing.h"
#include "core/VirtualSlots.h"

namespace {

// What First() answers, for operations that do not go through its slot.
DoubleListElement* firstOf(const DoubleList& list) { return list.last != nullptr ? list.last->next : nullptr; }

DoubleListElement* stepForward(const DoubleList& list, DoubleListElement* cursor) {
    if (cursor == nullptr) return firstOf(list);
    return cursor == list.last ? nullptr : cursor->next;
}

DoubleListElement* stepBackward(const DoubleList& list, DoubleListElement* cursor) {
    if (cursor == nullptr) return list.last;
    return cursor == list.last->next ? nullptr : cursor->prev;
}

// In this order no compiler gathers the links of `e` into one wide store, for which the next call would have to wait.
void linkBetween(DoubleListElement* before, DoubleListElement* e, DoubleListElement* behind) {
    e->next = behind;
    before->next = e;
    e->prev = before;
    behind->prev = e;
}

// Every constructor writes the same.
constinit std::atomic<const char*> ownSlots = nullptr;

// No slot of an object of exactly this class is overridden, so what a call would do can be done in line.
bool isPlain(const DoubleList& list) { return kora::slotTable(list) == ownSlots.load(std::memory_order_relaxed); }

inline bool takeOut(DoubleList& list, DoubleListElement* e) {
    if (list.last == nullptr) return true;
    if (list.current == e) list.current = nullptr;
    DoubleListElement* const before = e->prev;
    DoubleListElement* const behind = e->next;
    if (list.last == e) list.last = before == e ? nullptr : before;
    // An element without links counts as detached all the same.
    if (before != nullptr) before->next = behind;
    if (behind != nullptr) behind->prev = before;
    e->next = e->prev = nullptr;
    --list.count;
    return false;
}

// Detaches what the cursor would step to.
inline DoubleListElement* handOver(DoubleList& list, DoubleListElement* e) {
    if (e == nullptr)
        list.current = nullptr;
    else if (isPlain(list)) [[likely]]
        takeOut(list, e);
    else
        list.Detach(e);
    return e;
}

// Appends the whole ring of `other` to that of `list`.
void splice(DoubleList& list, DoubleList& other) {
    if (other.last == nullptr) return;
    if (list.last != nullptr) {
        DoubleListElement* first = list.last->next;
        DoubleListElement* otherFirst = other.last->next;
        list.last->next = otherFirst;
        otherFirst->prev = list.last;
        other.last->next = first;
        first->prev = other.last;
    }
    list.last = other.last;
    list.count += other.count;
    other.last = nullptr;
    other.count = 0;
}

}  // namespace

DoubleListElement::DoubleListElement() : next(nullptr), prev(nullptr) {}

DoubleListElement::~DoubleListElement() = default;

DoubleList::DoubleList() : last(nullptr), current(nullptr), count(0) {
    ownSlots.store(kora::slotTable(*this), std::memory_order_relaxed);
}

DoubleList::DoubleList(DoubleListElement* e) : DoubleList() { DoubleList::AttachAtHead(e); }

DoubleList::~DoubleList() {
    kora::traceStep(kora::trace::kListDestructor);
    DoubleList::DestroyAll();
    kora::traceStep(kora::trace::kListDestructorEnd);
}

long DoubleList::NumberOfElements() { return count; }

void DoubleList::Reset() { current = nullptr; }

DoubleListElement* DoubleList::GoTo(DoubleListElement* e) { return current = e; }

DoubleListElement* DoubleList::GoToIndex(short n) {
    Reset();
    while (Next() != nullptr && n > 0) --n;
    return current;
}

DoubleListElement* DoubleList::Current() { return current; }

DoubleListElement* DoubleList::First() { return firstOf(*this); }

DoubleListElement* DoubleList::Last() { return last; }

DoubleListElement* DoubleList::Next(DoubleListElement*& cursor) {
    if (last == nullptr) return nullptr;
    return cursor = stepForward(*this, cursor);
}

DoubleListElement* DoubleList::Next() {
    if (last == nullptr) return nullptr;
    return current = stepForward(*this, current);
}

DoubleListElement* DoubleList::Prev() {
    if (last == nullptr) return nullptr;
    return current = stepBackward(*this, current);
}

DoubleListElement* DoubleList::PeekNext() {
    DoubleListElement* e = Next();
    Prev();
    return e;
}

DoubleListElement* DoubleList::PeekPrev() {
    DoubleListElement* e = Prev();
    Next();
    return e;
}

bool DoubleList::IsFirst(DoubleListElement* e) { return e == firstOf(*this); }

bool DoubleList::IsLast(DoubleListElement* e) { return e == last; }

bool DoubleList::AtFirst() { return current == firstOf(*this); }

bool DoubleList::AtLast() { return current == last; }

DoubleListElement* DoubleList::DetachNext() {
    if (last == nullptr) return nullptr;
    return handOver(*this, stepForward(*this, current));
}

DoubleListElement* DoubleList::DetachPrev() {
    if (last == nullptr) return nullptr;
    return handOver(*this, stepBackward(*this, current));
}

// True means the list was empty; a detached element answers false.
bool DoubleList::Detach(DoubleListElement* e) { return takeOut(*this, e); }

// The cursor is what elements that detach themselves or others while they are deleted act upon: whoever detaches the
// next one ends the loop.
void DoubleList::DestroyAll() {
    if (last == nullptr) return;
    kora::traceStep(kora::trace::kListDestroyAll);
    current = last->next;
    while (current != last) {
        DoubleListElement* e = current;
        if (e == nullptr) break;
        current = e->next;
        kora::traceStep(kora::trace::kElementDelete);
        delete e;
        kora::traceStep(kora::trace::kElementDeleted);
    }
    delete last;
    last = current = nullptr;
    count = 0;
    kora::traceStep(kora::trace::kListDestroyedAll);
}

void DoubleList::AttachAtHead(DoubleListElement* e) {
    if (last == nullptr)
        last = e->next = e->prev = e;
    else
        linkBetween(last, e, last->next);
    ++count;
}

void DoubleList::AttachAtTail(DoubleListElement* e) {
    // In a ring the first place is also the one behind the last.
    if (isPlain(*this)) [[likely]] {
        DoubleList::AttachAtHead(e);
        last = e;
        return;
    }
    AttachAtHead(e);
    if (last != nullptr) last = last->next;
}

void DoubleList::AttachBeforeCurrent(DoubleListElement* e) {
    if (current == nullptr) {
        AttachAtHead(e);
        return;
    }
    linkBetween(current->prev, e, current);
    ++count;
}

void DoubleList::AttachAfterCurrent(DoubleListElement* e) {
    if (current == nullptr || current == last) {
        AttachAtTail(e);
        return;
    }
    linkBetween(current, e, current->next);
    ++count;
}

void DoubleList::AttachListAtTail(DoubleList& other) {
    if (&other == this) return;
    if (isPlain(*this) && isPlain(other)) {
        splice(*this, other);
        current = other.current = nullptr;
        return;
    }
    other.Reset();
    while (DoubleListElement* e = other.Next()) {
        other.Detach(e);
        AttachAtTail(e);
    }
    Reset();
}
