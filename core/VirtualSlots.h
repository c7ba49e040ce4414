#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "platform/Platform.h"

namespace kora {

/// The table in which calls of an object's virtual operations are looked up. In a constructor it is that of the class
/// itself, so a class that keeps it can tell later whether an object is of exactly this class, with nothing overridden.
template <class T>
const char* slotTable(const T& object) {
    static_assert(std::is_polymorphic_v<T>);
    const char* table;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
    return table;
}

/// What the table holds for an operation without adjustment (single inheritance): its code, or a stub that leads there.
template <class T, class Operation>
const void* slotEntry(const T& object, Operation operation) {
    static_assert(std::is_member_function_pointer_v<Operation>);
    // The layout that all our compilers share: a member pointer holds the entry's offset, bit 0 marks it as virtual.
    std::uintptr_t words[2];
    static_assert(sizeof operation == sizeof words);
    std::memcpy(words, &operation, sizeof words);
    const void* entry;
    std::memcpy(&entry, slotTable(object) + (words[0] & ~std::uintptr_t{1}), sizeof entry);
    return entry;
}

/// The code that a call of a virtual operation runs on this object. In a constructor it is that of the class itself, so
/// a class that keeps it can tell later whether the operation has been overridden, and do in a loop what it would
/// otherwise ask of the slot.
template <class T, class Operation>
const void* slotCode(const T& object, Operation operation) {
    return platform::calledCode(slotEntry(object, operation));
}

/// Whether such a call runs @p code, which slotCode() has answered.
template <class T, class Operation>
bool runsCode(const T& object, Operation operation, const void* code) {
    const void* const entry = slotEntry(object, operation);
    return entry == code || platform::calledCode(entry) == code;
}

}  // namespace kora
