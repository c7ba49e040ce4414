#pragma once

#include <kora/Kora.h>

class KORA_API DoubleListElement {
public:
    DoubleListElement();
    virtual ~DoubleListElement();

    DoubleListElement* next;
    DoubleListElement* prev;
};

class KORA_API DoubleList {
public:
    DoubleList();
    explicit DoubleList(DoubleListElement* e);
    virtual ~DoubleList();
    DoubleList(const DoubleList&) = delete;
    DoubleList& operator=(const DoubleList&) = delete;

    virtual long NumberOfElements();
    virtual void Reset();
    virtual DoubleListElement* GoTo(DoubleListElement* e);
    virtual DoubleListElement* GoToIndex(short n);
    virtual DoubleListElement* Current();
    virtual DoubleListElement* First();
    virtual DoubleListElement* Last();
    virtual DoubleListElement* Next(DoubleListElement*& cursor);
    virtual DoubleListElement* Next();
    virtual DoubleListElement* Prev();
    virtual DoubleListElement* PeekNext();
    virtual DoubleListElement* PeekPrev();
    virtual bool IsFirst(DoubleListElement* e);
    virtual bool IsLast(DoubleListElement* e);
    virtual bool AtFirst();
    virtual bool AtLast();
    virtual DoubleListElement* DetachNext();
    virtual DoubleListElement* DetachPrev();
    virtual bool Detach(DoubleListElement* e);
    virtual void DestroyAll();
    virtual void AttachAtHead(DoubleListElement* e);
    virtual void AttachAtTail(DoubleListElement* e);
    virtual void AttachBeforeCurrent(DoubleListElement* e);
    virtual void AttachAfterCurrent(DoubleListElement* e);
    virtual void AttachListAtTail(DoubleList& other);

    DoubleListElement* last;
    DoubleListElement* current;
    std::int32_t count;
};
