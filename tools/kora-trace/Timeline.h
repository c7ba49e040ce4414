#pragma once

#include <string>

#include "tools/kora-trace/Decode.h"

namespace kora::tracelog {

/// The dump as a drawing: a lane for each file, the oldest word on the left and the newest on the right, faults marked
/// by level. The classes of its parts get their colours from the page.
std::string timeline(const Dump& dump, const std::vector<Item>& items, const NameTable& names);

}  // namespace kora::tracelog
