#pragma once

#include <kora/Utl.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

#include "strings/Guarded.h"

namespace kora {

/// Every node of a region that has this rectangle. A place in the region's list is the number of the push that put the
/// node there: the highest stands first. Places between the first and the last of equal nodes are not kept.
struct RegionNode {
    UtlPlatformRect rect;
    std::uint64_t newest;
    std::uint64_t oldest;
};

/// What Sub() calls overlapping.
inline bool overlaps(const UtlPlatformRect& a, const UtlPlatformRect& b) {
    return a.left < b.right && a.right > b.left && a.top < b.bottom && a.bottom > b.top;
}

/// The same, where a common edge or corner is enough.
inline bool touches(const UtlPlatformRect& a, const UtlPlatformRect& b) {
    return a.left <= b.right && a.right >= b.left && a.top <= b.bottom && a.bottom >= b.top;
}

/// The nodes of a region, in no order, found by where they are.
///
/// New nodes are loose. File() puts them into blocks of neighbours, each with bounds that everything in it lies within;
/// whoever looks for nodes passes over the blocks whose bounds are elsewhere. A few nodes are simply left loose.
class RegionNodes {
public:
    /// The nodes that are in no block. Nodes may be changed in their places and added at the end.
    std::vector<RegionNode>& loose() { return loose_; }

    /// Puts the loose nodes into blocks, if there are enough of them. What finds no memory stays loose.
    void file();

    /// Hands every node that overlaps @p area to @p take and forgets it. Needs no memory.
    template <class Take>
    void takeOverlapping(const UtlPlatformRect& area, Take&& take) {
        const auto taken = [&](const RegionNode& node) {
            if (!overlaps(area, node.rect)) return false;
            take(node);
            return true;
        };
        std::erase_if(loose_, taken);
        takeFromBlocks(area, taken);
    }

    /// Makes every node that touches @p area loose. What finds no memory stays where it is.
    void loosenTouching(const UtlPlatformRect& area);

    template <class Visit>
    void forEach(Visit&& visit) const {
        for (const RegionNode& node : loose_) visit(node);
        for (std::size_t at = 0; at < bounds_.size(); ++at)
            for (std::size_t i = 0; i < blocks_[at]->count; ++i) visit(blocks_[at]->nodes[i]);
    }

private:
    static constexpr std::size_t kBlockSize = 128;

    struct Block {
        std::size_t count;
        RegionNode nodes[kBlockSize];
    };

    template <class Take>
    void takeFromBlocks(const UtlPlatformRect& area, const Take& taken) {
        // From the last, since another may take the place of a block that is given up.
        for (std::size_t at = bounds_.size(); at-- > 0;) {
            if (!touches(area, bounds_[at])) continue;
            Block& block = *blocks_[at];
            RegionNode* end = std::remove_if(block.nodes, block.nodes + block.count, taken);
            const auto count = static_cast<std::size_t>(end - block.nodes);
            if (count == block.count) continue;
            block.count = count;
            tidy(at);
        }
    }

    bool loosen(const RegionNode& node) {
        return guarded([&] { loose_.push_back(node); });
    }
    void fileFrom(std::size_t begin);
    void addBlock(std::size_t begin);
    void tidy(std::size_t at);

    std::vector<RegionNode> loose_;
    std::vector<UtlPlatformRect> bounds_;         // of the blocks in use: those in front
    std::vector<std::unique_ptr<Block>> blocks_;  // the others wait to be used again
};

}  // namespace kora
