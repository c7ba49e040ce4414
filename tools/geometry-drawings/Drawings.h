#pragma once

#include <string>

#include "Svg.h"

/// The drawings of docs/geometry.md. Every point that they show of the library's is asked of the library.
namespace kora::drawings {

std::string anchors();
std::string orientations();
std::string rotation();
std::string arc();
std::string lineHit();
std::string region();

/// What the drawings ask for more than once.
LPNT anchorPoint(LRCT r, eUtlAnchor anchor);
LPNT turned(LPNT p, LPNT centre, short angle);
inline LPNT moved(LPNT p, std::int32_t down, std::int32_t right) { return {p.v + down, p.h + right}; }

}  // namespace kora::drawings
