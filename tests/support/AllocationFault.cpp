#include "tests/support/AllocationFault.h"

#include <new>

void* operator new(std::size_t size) {
    if (void* block = kora::test::AllocationFault::allocate(size)) return block;
    throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return kora::test::AllocationFault::allocate(size);
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
