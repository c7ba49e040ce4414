#pragma once

#include <string>
#include <vector>

#include "tools/kora-trace/LastDumps.h"

namespace kora::tracelog {

extern const char kUsage[];

enum class Format : std::uint8_t { text, json, html };
enum class Colour : std::uint8_t { automatic, always, never };

struct Options {
    std::string file;  ///< empty: standard input, or the user's own log; "-": standard input
    Format format = Format::text;
    Colour colour = Colour::automatic;
    std::size_t last = 0;  ///< newest dumps to show; 0: as many as the format shows by itself
    std::vector<std::string> tables;
    std::string output;                                 ///< empty: standard output
    std::string bundle, settings;                       ///< empty: none; those that the library finds
    bool listOnly = false, force = false, yes = false;  ///< of a bundle
    bool help = false, version = false;
};

/// False when the arguments cannot be understood; @p problem says why.
bool readOptions(const std::vector<std::string>& arguments, Options& options, std::string& problem);

}  // namespace kora::tracelog
