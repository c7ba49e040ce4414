#pragma once

#include <cstddef>

namespace kora {

using RamAllocator = void* (*)(std::size_t size);

/// For tests: puts @p allocator in place of std::malloc wherever memory arrays get their memory, and answers the one
/// before; null restores std::malloc. What it answers is given to std::free.
RamAllocator ramAllocatorSet(RamAllocator allocator);

}  // namespace kora
