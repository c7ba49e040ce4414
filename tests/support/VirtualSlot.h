#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace kora::test {

/// The slot of a virtual operation, read out of its member pointer, in a class whose destructor is slot 0 (this
/// compiler gives that one two entries of the table). -1 when the operation is not virtual.
template <class Operation>
int virtualSlot(Operation operation) {
    static_assert(std::is_member_function_pointer_v<Operation>);
    std::uintptr_t words[2];  // one more than the offset of the entry; the adjustment of the object's address
    static_assert(sizeof operation == sizeof words);
    std::memcpy(words, &operation, sizeof words);
    if (words[0] % 2 == 0 || words[1] != 0) return -1;
    return static_cast<int>((words[0] - 1) / sizeof(void*)) - 1;
}

/// The first of these operations that does not stand in its slot, counted from 1; 0 when they fill the slots from
/// @p slot on in this order.
template <class... Operations>
int firstOutOfSlotFrom(int slot, Operations... operations) {
    int place = 0, wrong = 0;
    ((++place, virtualSlot(operations) != slot++ && wrong == 0 ? wrong = place : 0), ...);
    return wrong;
}

/// The same behind the destructor.
template <class... Operations>
int firstOutOfSlot(Operations... operations) {
    return firstOutOfSlotFrom(1, operations...);
}

}  // namespace kora::test
