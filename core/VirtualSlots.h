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

/// The code that a call of a virtual operation without adjustment (single inheritance) runs on this object. In a
/// constructor it is that of the class itself, so a class that keeps it can tell later whether the operation has been
/// overridden, and do in a loop what it would otherwise ask of the slot.
template <class T, class Operation>
const void* slotCode(const T& object, Operation operation) {
    static_assert(std::is_member_function_pointer_v<Operation>);
    // The layout that all our compilers share: a member pointer holds the entry's offset, bit 0 marks it as virtual.
    std::uintptr_t words[2];
    static_assert(sizeof operation == sizeof words);
    std::memcpy(words, &operation, sizeof words);
    const void* code;
    std::memcpy(&code, slotTable(object) + (words[0] & ~std::uintptr_t{1}), sizeof code);
    return platform::calledCode(code);
}

}  // namespace kora
