#pragma once

#include <kora/Kora.h>

/// @file
/// Points and rectangles, and what kind of system this is.

/// A point: vertical first, then horizontal.
struct LPNT {
    std::int32_t v, h;
};

/// A rectangle. Empty when top >= bottom or left >= right.
struct LRCT {
    std::int32_t top, left, bottom, right;
};

// Modules hold and store both as they lie in memory.
static_assert(sizeof(LPNT) == 8);
static_assert(sizeof(LRCT) == 16);

/// A rectangle as the platform has it: horizontal first.
struct UtlPlatformRect {
    std::int32_t left, top, right, bottom;
};
static_assert(sizeof(UtlPlatformRect) == 16);

namespace kora {
class FreeArea;
}

/// A free area: where there is still room, and where a box would go.
///
/// The area is a list of rectangles, its nodes, in Qz units or any other. They may overlap: what a piece taken out
/// leaves of a node are the largest rectangles that remain free, not a partition, so whatever fits beside the pieces
/// fits into one of the nodes.
///
/// Add() and Sub() put nodes in front of the others, and the first node wins wherever two are equally good. Equal and
/// contained nodes are kept, as are empty ones and those turned inside out. Sub() takes time for the nodes near its
/// area, GetClosest() and GetLargest() look at every node.
///
/// Arguments are taken as 32 bits whatever the width of a long. Distances, sizes and areas are exact for all of them; a
/// place beyond 32 bits, which only a box of negative size can have, wraps.
///
/// A copy is shallow: both then stand for the same nodes, and what is done through one is seen through the other. The
/// nodes go with the last of them. A region that has never held a node has nothing to share, and its copy goes its own
/// way. Regions that share are used by one thread at a time.
///
/// When memory runs out, free area that cannot be kept is lost without a word: room may then be missing, but nothing
/// that was taken out is ever reported free.
class KORA_API UtlRectRegion {
public:
    /// No free area; allocates nothing.
    UtlRectRegion();
    ~UtlRectRegion();
    UtlRectRegion(const UtlRectRegion& other);
    UtlRectRegion& operator=(const UtlRectRegion& other);

    /// Puts a node in front, whatever the area holds already.
    void Add(LRCT& r);
    void Add(UtlPlatformRect& r);
    void Add(long left, long top, long right, long bottom);

    /// Takes an area out. Each node that overlaps it (a common edge is not enough), from the first to the last, is
    /// replaced by what is left of it: the parts above, left of, below and right of the area, each put in front in this
    /// order. Those above and below are as wide as the node, those at the sides as high.
    void Sub(LRCT& r);
    void Sub(UtlPlatformRect& r);
    void Sub(long left, long top, long right, long bottom);

    /// Finds the place for a box of @p width by @p height whose centre is nearest to the point (@p h, @p v), and writes
    /// the box there to @p r. Where the box fits nowhere, @p r becomes the node of GetLargest().
    /// @return false when it fits nowhere and every node is empty; @p r is left alone.
    bool GetClosest(LRCT& r, long width, long height, long h, long v);
    bool GetClosest(UtlPlatformRect& r, long width, long height, long h, long v);

    /// Writes the node of largest area to @p r.
    /// @return false when there is no node, or only empty ones; @p r is left alone.
    bool GetLargest(LRCT& r);
    bool GetLargest(UtlPlatformRect& r);

private:
    kora::FreeArea* area_;  // null until there is a node; counts who shares it
};

static_assert(sizeof(UtlRectRegion) == sizeof(void*));

/// The kind of system the library runs on: 3 on Windows, 0 on POSIX.
KORA_API int UtlOS();
