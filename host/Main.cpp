#include <cstdio>
#include <exception>

#include "host/Listing.h"
#include "host/Places.h"
#include "host/Report.h"
#include "host/Run.h"

namespace kora::host {

namespace {

int reportedRun(const Options& options, const char* called) {
    RunRecord record;
    std::optional<Report> report;
    if (!options.report.empty()) report.emplace(options.report);
    int code = 1;
    try {
        code = run(options, record);
        if (report) adviseOnModules(readModuleFile(programFile(called)), record);
    } catch (const std::exception& failure) {
        record.error = failure.what();
    }
    if (!record.error.empty()) std::fprintf(stderr, "kora-host: %s\n", record.error.c_str());
    // Where a process's code has eight bits, 256 would be success.
    if (code != 0 && code % 256 == 0) code = 1;
    return report && !report->write(record, code) && code == 0 ? 1 : code;
}

/// The tasks for which no module runs.
int tell(const Options& options, const char* called) {
    if (options.task == Options::Task::help) return std::fputs(kUsage, stdout), 0;
    const ModuleFile program = readModuleFile(programFile(called));
    if (options.task == Options::Task::why) return explainModule(program, options.why);
    if (const std::string wrong = usePlaces(options); !wrong.empty()) {
        std::fprintf(stderr, "kora-host: %s\n", wrong.c_str());
        return 2;
    }
    return listModules(program, options.all);
}

}  // namespace

}  // namespace kora::host

int main(int count, char** arguments) try {
    using namespace kora::host;
    const std::optional<Options> options = readOptions(count, arguments);
    if (!options) return std::fputs(kUsage, stderr), 2;
    if (options->task == Options::Task::run) return reportedRun(*options, arguments[0]);
    const int code = tell(*options, arguments[0]);
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return code;
    std::fputs("kora-host: standard output cannot be written\n", stderr);
    return 1;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "kora-host: %s\n", failure.what());
    return 1;
}
