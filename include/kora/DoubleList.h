#pragma once

#include <kora/Kora.h>

/// @file
/// The intrusive list on which every other collection of the library is built.

/// What a DoubleList holds: an item class derives from it and is allocated with the ordinary heap. An element is in at
/// most one list at a time; both links of a detached element are null.
class KORA_API DoubleListElement {
public:
    DoubleListElement();
    /// Leaves the links alone: destroying an element that is still attached leaves its neighbours pointing at it.
    virtual ~DoubleListElement();

    DoubleListElement* next;  ///< the one behind; behind the last stands the first
    DoubleListElement* prev;  ///< the one in front; in front of the first stands the last
};

/// A circular, doubly linked list of elements with one cursor and a count.
///
/// The list owns its elements: DestroyAll() and the destructor delete them. The detaching operations hand an element
/// back to the caller. The list itself never allocates.
///
/// A null cursor is the place before the first and behind the last element at once, so walking starts at Reset() and
/// has ended when the cursor is null again:
///
///     list.Reset();
///     while (DoubleListElement* element = list.Next()) ...
///
/// No operation checks that an element belongs to this list (or, when attaching, to none).
///
/// The order of the virtual operations is the interface; new ones go at the end. Operations that are made of others
/// call them through the virtual table, as each says, so a derived list that overrides Detach() or AttachAtHead() sees
/// every element that passes.
class KORA_API DoubleList {
public:
    DoubleList();
    /// A list of one element.
    explicit DoubleList(DoubleListElement* e);
    /// DestroyAll().
    virtual ~DoubleList();
    DoubleList(const DoubleList&) = delete;
    DoubleList& operator=(const DoubleList&) = delete;

    virtual long NumberOfElements();  ///< how many elements the list has
    /// Sets the cursor to null.
    virtual void Reset();
    /// Sets the cursor to @p e and answers @p e.
    virtual DoubleListElement* GoTo(DoubleListElement* e);
    /// Sets the cursor to element @p n, counted from 0, and answers it: Reset(), then Next() n + 1 times. A negative
    /// @p n is the first element; at or beyond the count the cursor ends null and so is the answer.
    virtual DoubleListElement* GoToIndex(short n);
    virtual DoubleListElement* Current();  ///< the cursor
    virtual DoubleListElement* First();    ///< null when the list is empty; the cursor stays
    virtual DoubleListElement* Last();     ///< null when the list is empty; the cursor stays
    /// Next() for a cursor that the caller holds; the list's own stays.
    virtual DoubleListElement* Next(DoubleListElement*& cursor);
    /// Moves the cursor one forward and answers it: from null to the first element, from the last to null.
    virtual DoubleListElement* Next();
    /// Moves the cursor one backward and answers it: from null to the last element, from the first to null.
    virtual DoubleListElement* Prev();
    /// What Next() would answer; the cursor stays. Next(), then Prev().
    virtual DoubleListElement* PeekNext();
    /// What Prev() would answer; the cursor stays. Prev(), then Next().
    virtual DoubleListElement* PeekPrev();
    /// An empty list has null as its first and last element, in these four.
    virtual bool IsFirst(DoubleListElement* e);
    virtual bool IsLast(DoubleListElement* e);  ///< see IsFirst()
    virtual bool AtFirst();                     ///< the cursor is on the first element
    virtual bool AtLast();                      ///< the cursor is on the last element
    /// Takes out the element that Next() would step to, through Detach(), and hands it over. The cursor stays, except
    /// that on the last element it becomes null and nothing is detached (null is the answer).
    virtual DoubleListElement* DetachNext();
    /// Takes out the element that Prev() would step to, through Detach(), and hands it over. The cursor stays, except
    /// that on the first element it becomes null and nothing is detached (null is the answer).
    virtual DoubleListElement* DetachPrev();
    /// Takes @p e out and hands it over; a cursor on it becomes null.
    /// @return true when the list was empty and nothing was done, false when @p e was detached.
    virtual bool Detach(DoubleListElement* e);
    /// Deletes every element, first to last, without detaching them first: an element's destructor must neither walk
    /// the list nor attach to it.
    virtual void DestroyAll();
    /// No attaching operation moves the cursor, but AttachListAtTail().
    virtual void AttachAtHead(DoubleListElement* e);
    /// AttachAtHead(), then the new element is made the last.
    virtual void AttachAtTail(DoubleListElement* e);
    /// AttachAtHead() when there is no current element.
    virtual void AttachBeforeCurrent(DoubleListElement* e);
    /// AttachAtTail() when there is no current element or when it is the last.
    virtual void AttachAfterCurrent(DoubleListElement* e);
    /// Moves all elements of @p other behind those of this list, in their order: Reset() on @p other, then for each
    /// element Next() and Detach() there and AttachAtTail() here, then Reset() here. Both cursors end null. Nothing
    /// happens when @p other is this list.
    virtual void AttachListAtTail(DoubleList& other);

    DoubleListElement* last;     ///< null when the list is empty; the first element is last->next
    DoubleListElement* current;  ///< the cursor
    std::int32_t count;          ///< how many elements are attached
};
