#include "geometry/RegionNodes.h"

#include <iterator>

namespace kora {
namespace {

using Edge = std::int32_t UtlPlatformRect::*;
constexpr Edge kEdges[] = {&UtlPlatformRect::left, &UtlPlatformRect::top, &UtlPlatformRect::right,
                           &UtlPlatformRect::bottom};

/// The edge in which the nodes differ most.
Edge widestEdge(const RegionNode* begin, const RegionNode* end) {
    Edge widest = kEdges[0];
    std::int64_t most = -1;
    for (const Edge edge : kEdges) {
        std::int64_t least = INT32_MAX, greatest = INT32_MIN;
        for (const RegionNode* node = begin; node != end; ++node) {
            least = std::min<std::int64_t>(least, node->rect.*edge);
            greatest = std::max<std::int64_t>(greatest, node->rect.*edge);
        }
        if (greatest - least <= most) continue;
        most = greatest - least;
        widest = edge;
    }
    return widest;
}

/// Whatever touches one of the nodes touches this, those turned inside out included.
UtlPlatformRect boundsOf(const RegionNode* begin, const RegionNode* end) {
    UtlPlatformRect bounds = begin->rect;
    for (const RegionNode* node = begin + 1; node < end; ++node) {
        bounds.left = std::min(bounds.left, node->rect.left);
        bounds.top = std::min(bounds.top, node->rect.top);
        bounds.right = std::max(bounds.right, node->rect.right);
        bounds.bottom = std::max(bounds.bottom, node->rect.bottom);
    }
    return bounds;
}

}  // namespace

void RegionNodes::file() {
    if (loose_.size() <= kBlockSize) return;
    guarded([this] { fileFrom(0); });
}

// The nodes behind `begin` are halved until they fit a block, the further half first, so that what is still to be done
// is always the end of the loose ones.
void RegionNodes::fileFrom(std::size_t begin) {
    for (std::size_t count; (count = loose_.size() - begin) > kBlockSize;) {
        RegionNode* first = loose_.data() + begin;
        RegionNode* end = first + count;
        const Edge edge = widestEdge(first, end);
        std::nth_element(first, first + count / 2, end,
                         [edge](const RegionNode& a, const RegionNode& b) { return a.rect.*edge < b.rect.*edge; });
        fileFrom(begin + count / 2);
    }
    addBlock(begin);
}

// Makes the loose nodes behind `begin` a block.
void RegionNodes::addBlock(std::size_t begin) {
    if (bounds_.size() == blocks_.size()) blocks_.push_back(std::make_unique_for_overwrite<Block>());
    const RegionNode* first = loose_.data() + begin;
    const RegionNode* end = loose_.data() + loose_.size();
    Block& block = *blocks_[bounds_.size()];
    bounds_.push_back(boundsOf(first, end));
    block.count = loose_.size() - begin;
    std::copy(first, end, block.nodes);
    loose_.resize(begin);
}

void RegionNodes::loosenTouching(const UtlPlatformRect& area) {
    takeFromBlocks(area, [&](const RegionNode& node) { return touches(area, node.rect) && loosen(node); });
}

// A block that has lost nodes gets closer bounds; one with few left is given up.
void RegionNodes::tidy(std::size_t at) {
    Block& block = *blocks_[at];
    if (block.count <= kBlockSize / 4)
        while (block.count > 0 && loosen(block.nodes[block.count - 1])) --block.count;
    if (block.count > 0) {
        bounds_[at] = boundsOf(block.nodes, block.nodes + block.count);
        return;
    }
    std::swap(blocks_[at], blocks_[bounds_.size() - 1]);
    bounds_[at] = bounds_.back();
    bounds_.pop_back();
}

}  // namespace kora
