#include "host/Options.h"

#include <charconv>
#include <filesystem>
#include <string_view>
#include <utility>

namespace kora::host {

const char kUsage[] =
    "Usage: kora-host [--ini FILE] [--tools DIR] [--stay] [--idle N] [--exit] [--report FILE] [--trace]\n"
    "                 [OPTION FOR MODULES]...\n"
    "       kora-host --list [--all] [--ini FILE] [--tools DIR]\n"
    "       kora-host --why FILE\n\n"
    "Starts Kora System Services with the modules of the tools folder and passes them their options.\n\n"
    "  --ini FILE     use FILE as the main profile instead of looking for ts.ini\n"
    "  --tools DIR    load modules from DIR instead of the folder that the profile names\n"
    "  --stay         go on although nothing is left to do\n"
    "  --idle N       make N idle passes, without a rest between them, before looking whether anything is left to do\n"
    "  --exit         end then: ask the modules, and go whatever they answer\n"
    "  --report FILE  show no messages in windows; write what happened and how long it took to FILE as JSON, - is\n"
    "                 standard output\n"
    "  --trace        write dumps of the trace to its log, ts_error_log.txt in your documents folder; kora-trace shows "
    "it\n"
    "  --list         tell what the files of the tools folder are and export, without running them; --all names every\n"
    "                 export\n"
    "  --why FILE     tell whether the module FILE would load, why not, and what to do, without running it\n"
    "  --help         show this text and end\n\n"
    "Ends when a module asks to quit, on Ctrl+C, and when nothing is left to do: no timer runs, no message waits, and\n"
    "no module said that it stays. The modules are asked first, and may refuse.\n\n"
    "The exit code is 0 when everything went well, 1 when start-up or a module failed or refused --exit, or when the\n"
    "file of --why would not load, 2 when an option is wrong.\n";

namespace {

using Task = Options::Task;

bool readNumber(std::string_view text, long& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number >= 0;
}

// Relative to where the user stands, not to the program.
std::string whole(const std::string& path) { return std::filesystem::absolute(path).lexically_normal().string(); }

/// There is one task.
bool takeTask(Options& options, Task task) {
    if (options.task != Task::run) return false;
    options.task = task;
    return true;
}

/// Takes an option that has a value.
bool takeValue(Options& options, std::string_view option, const std::string& value) {
    if (value.empty()) return false;
    if (option == "--idle") return readNumber(value, options.idle);
    if (option == "--ini") options.ini = whole(value);
    if (option == "--tools") options.tools = whole(value);
    if (option == "--report") options.report = value == "-" ? value : whole(value);
    if (option == "--why") options.why = value;
    return option != "--why" || takeTask(options, Task::why);
}

bool takeSwitch(Options& options, std::string_view option) {
    if (option == "--stay") return options.stay = true;
    if (option == "--exit") return options.exit = true;
    if (option == "--all") return options.all = true;
    if (option == "--trace") return options.trace = true;
    if (option != "--help" && option != "--list") return false;
    return takeTask(options, option == "--help" ? Task::help : Task::list);
}

/// Whether everything that was given has a meaning for the task: of two files behind --why the second has none.
bool fits(const Options& options) {
    const bool forRun = options.exit || options.stay || options.trace || options.idle > 0 || !options.report.empty() ||
                        !options.forModules.empty();
    if (options.task == Task::help) return true;
    return (options.task == Task::run || !forRun) && (options.task == Task::list || !options.all);
}

}  // namespace

std::optional<Options> readOptions(int count, char** arguments) {
    Options options;
    for (int i = 1; i < count; ++i) {
        const std::string_view argument = arguments[i];
        bool understood = true;
        if (!argument.starts_with("--"))
            options.forModules.emplace_back(argument);
        else if (argument == "--ini" || argument == "--tools" || argument == "--report" || argument == "--idle" ||
                 argument == "--why")
            understood = i + 1 < count && takeValue(options, argument, arguments[++i]);
        else
            understood = takeSwitch(options, argument);
        if (!understood) return std::nullopt;
    }
    return fits(options) ? std::optional(std::move(options)) : std::nullopt;
}

}  // namespace kora::host
