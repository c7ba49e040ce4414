#pragma once

#include <istream>
#include <ostream>

#include "tools/kora-trace/Options.h"

namespace kora::tracelog {

/// Where a run reads and writes what has no file.
struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& messages;
    bool inIsTerminal, outIsTerminal;
};

/// The program without its arguments; answers the exit code.
int run(const Options& options, const Streams& streams);

}  // namespace kora::tracelog
