#pragma once

#include <kora/DoubleList.h>

/// @file
/// Objects found by number or by name.

namespace kora {
struct DicNumeric;
struct DicString;
template <class Entry>
class DictionaryIndex;
}  // namespace kora

/// Two independent maps to untyped pointers: one by number, one by text.
///
/// The dictionary never owns the values. Of a text key it keeps a copy.
///
/// A key may have several entries. Each map is a list of its entries, the newest first, with a cursor on the entry that
/// was found last, which decides which of several is found. Of numbers its neighbours do so too:
///
///     dictionary.Insert(7, older);
///     dictionary.Find(7);             // older, and the cursor is there
///     dictionary.Insert(7, newer);
///     dictionary.Find(7);             // older still
///     dictionary.Find(8);             // null, and there is no cursor
///     dictionary.Find(7);             // newer: the first of all, which is a neighbour of no cursor
///     dictionary.Find(8);
///     dictionary.Insert(9, another);
///     dictionary.Find(7);             // older: the last of all, which is the other neighbour of no cursor
///
/// Insert(), Find() and Detach() cost about the same however many entries there are, without a walk along them. Where
/// memory for that is missing they walk, with the same results.
///
/// The order of the virtual operations is the interface; new ones go at the end. Detach() calls Find() with the same
/// key through the virtual table and removes the entry at the cursor then; where that leaves none, nothing is removed
/// and the answer is null.
class KORA_API Dictionary {
public:
    Dictionary();
    /// Leaves the values alone.
    virtual ~Dictionary();
    Dictionary(const Dictionary&) = delete;
    Dictionary& operator=(const Dictionary&) = delete;

    /// Adds an entry in front of all others, whether the key has entries or not. Null is a key of its own, which no
    /// text equals. The cursor stays.
    /// @return false when memory ran out; nothing has changed then.
    virtual bool Insert(const char* key, void* value);
    /// The same by number; every bit of @p key counts.
    virtual bool Insert(long key, void* value);
    /// The value of the entry at the cursor if its key equals @p key, byte for byte, else that of the newest entry with
    /// this key; null when there is none. The cursor goes to the entry found; there is none when nothing was.
    virtual void* Find(const char* key);
    /// The same by number, but before the newest entry with this key come the neighbours of the cursor: first the next
    /// older entry, then the next newer one. Those of no cursor are the newest of all and the oldest of all; those
    /// beyond either end are none.
    virtual void* Find(long key);
    /// Finds an entry as Find() does, removes it and answers its value; no entry is at the cursor then. An entry whose
    /// value is null is found, so the cursor goes there, but it stays and the answer is null.
    virtual void* Detach(const char* key);
    virtual void* Detach(long key);  ///< the same by number

private:
    DoubleList numbers;  // of kora::DicNumeric
    DoubleList names;    // of kora::DicString
    // Null while a walk along a few entries is as quick, and while memory is short.
    kora::DictionaryIndex<kora::DicNumeric>* numberIndex_;
    kora::DictionaryIndex<kora::DicString>* nameIndex_;
};
