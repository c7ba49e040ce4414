#pragma once

#include <optional>

#include "geometry/RegionNodes.h"

namespace kora {

/// What regions that are copies of each other share.
class FreeArea {
public:
    /// Throws what the standard library throws for want of memory, as does subtract(); the area is then smaller.
    void add(const UtlPlatformRect& rect);
    void subtract(const UtlPlatformRect& area);

    std::optional<UtlPlatformRect> closest(std::int32_t width, std::int32_t height, std::int32_t h,
                                           std::int32_t v) const;
    std::optional<UtlPlatformRect> largest() const;

    long sharers = 1;

private:
    RegionNodes nodes_;
    std::uint64_t pushes_ = 0;
};

}  // namespace kora
