#pragma once

#include <kora/Ram.h>

namespace kora {

/// The blocks of a memory array without a call for each. For arrays of no derived class: a derived one may answer other
/// bytes than its blocks hold.
class RamView : private RamArray {
public:
    /// The byte at @p index, and in @p count how many stand together from there on in its block; null where the array
    /// has no such block. Holds until the array is allocated anew.
    static const unsigned char* at(const RamArray& array, std::uint32_t index, std::uint32_t& count) {
        const unsigned shift = array.*&RamView::blockShift;
        const std::uint32_t block = index >> shift;
        if (block >= static_cast<std::uint32_t>(array.*&RamView::numBlocks)) return nullptr;
        const std::uint32_t offset = index & ((1U << shift) - 1);
        count = (1U << shift) - offset;
        return (array.*&RamView::blocks)[block] + offset;
    }
};

}  // namespace kora
