#include <kora/Dictionary.h>
#include <kora/Str.h>

#include <new>

#include "containers/DictionaryIndex.h"

namespace {

// A walk along so many entries costs no more than an index would.
constexpr std::int32_t kWalked = 16;

template <class Entry>
Entry* withKey(DoubleListElement* e, typename Entry::Key key) {
    auto* entry = static_cast<Entry*>(e);
    return entry != nullptr && entry->hasKey(key) ? entry : nullptr;
}

template <class Entry>
Entry* neighbour(DoubleList& list, typename Entry::Key key) {
    if (!Entry::kNeighboursCount) return nullptr;
    if (auto* entry = withKey<Entry>(list.PeekNext(), key)) return entry;
    return withKey<Entry>(list.PeekPrev(), key);
}

template <class Entry>
[[gnu::noinline]] void* findByWalk(DoubleList& list, typename Entry::Key key) {
    Entry* entry = withKey<Entry>(list.current, key);
    if (entry != nullptr) return entry->value;
    entry = neighbour<Entry>(list, key);
    for (DoubleListElement* e = list.last; e != nullptr && entry == nullptr;) {
        entry = withKey<Entry>(e = e->next, key);
        if (e == list.last) break;
    }
    list.GoTo(entry);
    return entry != nullptr ? entry->value : nullptr;
}

// One of several entries of a key, with none at the cursor.
template <class Entry>
[[gnu::noinline]] void* findAmong(DoubleList& list, kora::DictionaryIndex<Entry>& index, Entry* newest,
                                  typename Entry::Key key) {
    Entry* entry = neighbour<Entry>(list, key);
    if (entry == nullptr) entry = newest;
    list.GoTo(entry);
    index.currentMark = kora::DictionaryIndex<Entry>::Record::of(entry).mark;
    return entry->value;
}

// The same entry as by a walk. What is inlined and what is not keeps the way to a key with one entry free of calls.
template <class Entry>
[[gnu::always_inline]] inline void* findByIndex(DoubleList& list, kora::DictionaryIndex<Entry>& index,
                                                typename Entry::Key key) {
    const typename Entry::Sought sought(key);
    if (index.currentMark == sought.mark && list.current != nullptr) {
        auto* entry = static_cast<Entry*>(list.current);
        if (sought.isKeyOf(entry, index.currentMark)) return entry->value;
    }
    const auto& record = index.find(sought);
    if (Entry::kNeighboursCount && !index.isPlain() && record.entry != nullptr && record.entry->older != nullptr)
        return findAmong(list, index, record.entry, key);
    index.currentMark = record.mark;
    list.current = record.entry;
    return record.value;
}

template <class Entry>
[[gnu::always_inline]] inline void* find(DoubleList& list, kora::DictionaryIndex<Entry>* index,
                                         typename Entry::Key key) {
    return index != nullptr ? findByIndex(list, *index, key) : findByWalk<Entry>(list, key);
}

template <class Entry>
void drop(kora::DictionaryIndex<Entry>*& index) {
    delete index;
    index = nullptr;
}

// Without memory for the index walks find the same entries; a later entry tries again.
template <class Entry>
void attach(DoubleList& list, kora::DictionaryIndex<Entry>*& index, Entry* entry) {
    list.AttachAtHead(entry);
    if (index != nullptr) {
        if (!index->add(entry)) drop(index);
    } else if (list.count > kWalked) {
        index = kora::DictionaryIndex<Entry>::make(list);
    }
}

// The current element, out of list and index.
template <class Entry>
Entry* detachCurrent(DoubleList& list, kora::DictionaryIndex<Entry>*& index) {
    auto* entry = static_cast<Entry*>(list.Current());
    if (entry == nullptr) return nullptr;
    if (index != nullptr) index->remove(entry);
    list.Detach(entry);
    if (list.NumberOfElements() == 0) drop(index);
    return entry;
}

}  // namespace

Dictionary::Dictionary() : numberIndex_(nullptr), nameIndex_(nullptr) {}

Dictionary::~Dictionary() {
    names.Reset();
    while (DoubleListElement* e = names.Next()) ::operator delete(static_cast<kora::DicString*>(e)->key);
    delete numberIndex_;
    delete nameIndex_;
}

bool Dictionary::Insert(const char* key, void* value) {
    char* copy = StrNew(key);
    if (copy == nullptr && key != nullptr) return false;
    auto* entry = new (std::nothrow) kora::DicString(copy, value);
    if (entry == nullptr) {
        ::operator delete(copy);
        return false;
    }
    attach(names, nameIndex_, entry);
    return true;
}

bool Dictionary::Insert(long key, void* value) {
    auto* entry = new (std::nothrow) kora::DicNumeric(key, value);
    if (entry == nullptr) return false;
    attach(numbers, numberIndex_, entry);
    return true;
}

void* Dictionary::Find(const char* key) { return find(names, nameIndex_, key); }

void* Dictionary::Find(long key) { return find(numbers, numberIndex_, key); }

void* Dictionary::Detach(const char* key) {
    void* value = Find(key);
    kora::DicString* entry = value != nullptr ? detachCurrent(names, nameIndex_) : nullptr;
    if (entry == nullptr) return nullptr;
    ::operator delete(entry->key);
    delete entry;
    return value;
}

void* Dictionary::Detach(long key) {
    void* value = Find(key);
    kora::DicNumeric* entry = value != nullptr ? detachCurrent(numbers, numberIndex_) : nullptr;
    if (entry == nullptr) return nullptr;
    delete entry;
    return value;
}
