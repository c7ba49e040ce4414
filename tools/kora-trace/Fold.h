#pragma once

#include <cstddef>
#include <vector>

#include "tools/kora-trace/Decode.h"

namespace kora::tracelog {

/// A sequence of items that stands there @p times times in a row.
struct Fold {
    std::size_t first = 0, period = 1, times = 1;
};

/// All items in order, repeated ones and repeated short sequences folded. Items are equal when all their words are.
std::vector<Fold> fold(const Dump& dump, const std::vector<Item>& items);

}  // namespace kora::tracelog
