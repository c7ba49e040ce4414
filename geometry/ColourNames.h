#pragma once

#include <cstdint>
#include <string_view>

#include "geometry/ColourValue.h"

namespace kora {

struct NamedColour {
    std::string_view name;
    std::uint32_t value;
};

/// The names by which texts call colours. Of two for one colour the first is the one that is written.
inline constexpr NamedColour kColourNames[] = {
    {"red", 1},
    {"green", 2},
    {"blue", 3},
    {"cyan", 4},
    {"magenta", 5},
    {"yellow", 6},
    {"black", 7},
    {"dkgray", 8},
    {"gray", 9},
    {"ltgray", 10},
    {"white", 11},
    {"vltgray", 12},
    {"ltblue", 13},
    {"ltgreen", 14},
    {"ltred", 15},
    {"pink", 15},
    {"dkblue", 16},
    {"dkgreen", 17},
    {"dkred", 18},
    {"violet", 19},
    {"orange", 20},
    {"xltgray", 21},
    {"foreground", kForeground},
    {"background", kBackground},
    {"none", kNone},
    {"netset", 0},
};

}  // namespace kora
