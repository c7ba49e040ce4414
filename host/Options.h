#pragma once

#include <kora/Kora.h>

#include <optional>
#include <string>

namespace kora::host {

/// What the host was asked for.
struct Options {
    enum class Task { run, list, why, help };

    Task task = Task::run;
    std::string ini, tools;  ///< whole paths; empty when not given
    std::string report;      ///< where to, "-" for standard output; empty for no report
    std::string why;         ///< the file to look at
    long idle = 0;           ///< so many passes at least
    bool exit = false;       ///< end after them
    bool stay = false, all = false;
    bool trace = false;  ///< to its log
    CStringArray forModules;
};

extern const char kUsage[];

/// Nothing when the command line cannot be understood.
std::optional<Options> readOptions(int count, char** arguments);

}  // namespace kora::host
