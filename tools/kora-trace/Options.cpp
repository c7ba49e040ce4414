#include "tools/kora-trace/Options.h"

#include <charconv>

namespace kora::tracelog {

const char kUsage[] =
    "Usage: kora-trace [OPTION]... [FILE]\n\n"
    "Shows what the trace log of Kora System Services says: its notes, and its dumps step by step.\n"
    "FILE is a log, \"-\" standard input. Without FILE standard input is read; where that is a terminal, and for a\n"
    "bundle, your own log, ts_error_log.txt in your documents folder.\n\n"
    "  --json            one JSON document for programs\n"
    "  --html            one page for a browser, with timelines; the newest 20 dumps unless --last says otherwise\n"
    "  --output FILE     write to FILE instead of standard output\n"
    "  --last N          show only the newest N dumps, and what stands between and behind them\n"
    "  --table FILE      names of a module's files and places, or a folder with *.trace files; may be given several "
    "times\n"
    "  --color WHEN      always, never, or auto (on a terminal, unless NO_COLOR is set)\n\n"
    "  --bundle OUT.zip  pack log, what it says, settings and the list of modules, without home paths\n"
    "  --settings FILE   the main profile for it, instead of looking for ts.ini as the library does\n"
    "  --list-only       only say what would be in it\n"
    "  --yes             do not ask, as it does where somebody sits at a terminal\n"
    "  --force           replace OUT.zip if it is there\n\n"
    "  --help            show this text and end\n"
    "  --version         show the version and end\n\n"
    "The exit code is 0 when something was read, 1 when nothing could be, 2 when an option is wrong.\n";

namespace {

bool readNumber(const std::string& text, std::size_t& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() && number > 0;
}

bool readColour(const std::string& text, Colour& colour) {
    if (text == "auto")
        colour = Colour::automatic;
    else if (text == "always")
        colour = Colour::always;
    else if (text == "never")
        colour = Colour::never;
    else
        return false;
    return true;
}

bool readFlag(const std::string& argument, Options& options) {
    if (argument == "--json")
        options.format = Format::json;
    else if (argument == "--html")
        options.format = Format::html;
    else if (argument == "--list-only")
        options.listOnly = true;
    else if (argument == "--force")
        options.force = true;
    else if (argument == "--yes")
        options.yes = true;
    else if (argument == "--help")
        options.help = true;
    else if (argument == "--version")
        options.version = true;
    else
        return false;
    return true;
}

// Whether it is an option that takes a value, and @p value one that it takes.
bool readValue(const std::string& argument, const std::string& value, Options& options) {
    if (value.empty()) return false;
    if (argument == "--last") return readNumber(value, options.last);
    if (argument == "--color") return readColour(value, options.colour);
    if (argument == "--table")
        options.tables.push_back(value);
    else if (argument == "--output")
        options.output = value;
    else if (argument == "--bundle")
        options.bundle = value;
    else if (argument == "--settings")
        options.settings = value;
    else
        return false;
    return true;
}

}  // namespace

bool readOptions(const std::vector<std::string>& arguments, Options& options, std::string& problem) {
    bool fileGiven = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "-" || !argument.starts_with('-')) {
            if (fileGiven || argument.empty()) {
                problem = "one log at a time";
                return false;
            }
            options.file = argument;
            fileGiven = true;
        } else if (!readFlag(argument, options)) {
            if (i + 1 == arguments.size() || !readValue(argument, arguments[i + 1], options)) {
                problem = argument + " cannot be understood";
                return false;
            }
            ++i;
        }
    }
    if (options.bundle.empty() && (options.listOnly || options.force || options.yes || !options.settings.empty())) {
        problem = "--settings, --list-only, --yes and --force are for --bundle";
        return false;
    }
    return true;
}

}  // namespace kora::tracelog
