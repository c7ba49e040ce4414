#pragma once

#include <istream>

#include "tools/kora-trace/LastDumps.h"

namespace kora::tracelog {

/// Reads a log to its end and has @p page show it, or the newest @p dumps of it and what belongs to them.
Summary readLog(std::istream& log, Page& page, std::size_t dumps);

}  // namespace kora::tracelog
