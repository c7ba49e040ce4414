#include <kora/Err.h>
#include <kora/File.h>
#include <kora/Tsk.h>

#include <algorithm>
#include <cstdio>
#include <exception>

#include "host/Listing.h"
#include "host/Places.h"
#include "host/Report.h"

// The thin host: start-up, the loop, exit. Everything else is the modules' business.
namespace kora::host {

namespace {

/// One idle pass; whether the next one should follow at once.
bool pass(long& count, RunRecord& record) {
    const Clock::time_point begin = Clock::now();
    if (TskMessagePump() > 0) count = 0;
    const bool more = Idle(count++) != 0;
    if (ErrReport()) TskExitCodeSet(1);
    const Clock::duration time = Clock::now() - begin;
    ++record.passes.count;
    record.passes.time += time;
    record.passes.longest = std::max(record.passes.longest, time);
    return more;
}

void loop(const Options& options, RunRecord& record) {
    TskApplication& application = *TskGetApp();
    bool agreed = false;
    for (long count = 0; !application.TskAppEnding();) {
        if (options.exit && record.passes.count >= options.idle) break;
        const bool more = pass(count, record) || record.passes.count < options.idle;
        if (more || options.exit || application.TskAppEnding()) continue;
        // A module that refuses is asked again after the next message.
        agreed = !options.stay && !application.TskAppBusy() && TskMessagePump() == 0 && application.TskAppQuit();
        if (agreed) break;
        application.TskAppWait();
    }
    record.agreed = agreed || application.TskAppEnding() || application.TskAppQuit();
    record.forced = !*record.agreed;
    if (!record.forced) return;
    TskExitCodeSet(1);
    std::fputs("kora-host: a module refused the exit; ending without the exit passes\n", stderr);
}

int run(const Options& options, RunRecord& record) {
    std::optional<Recorder> recorder;
    if (!options.report.empty()) recorder.emplace(record);
    const auto phase = [&](const char* name) {
        if (recorder) recorder->phaseSet(name);
    };
    if (record.error = usePlaces(options); !record.error.empty()) return 2;
    FileDocRootSearchSet(true);
    TskInterruptsAsQuit(true);
    Clock::time_point begin = Clock::now();
    record.started = Startup(nullptr, nullptr) != 0;
    record.startMicroseconds = microsecondsSince(begin);
    notePlaces(record);
    if (record.started) {
        phase("commandLine");
        TskCmdLine(options.forModules);
        phase("idle");
        loop(options, record);
    }
    phase("end");
    begin = Clock::now();
    const int code = ExitInstance();
    record.endMicroseconds = microsecondsSince(begin);
    return record.started && !ErrReport() ? code : 1;
}

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

}  // namespace

}  // namespace kora::host

int main(int count, char** arguments) try {
    using namespace kora::host;
    using Task = Options::Task;
    const std::optional<Options> options = readOptions(count, arguments);
    if (!options || options->task == Task::help) {
        std::fputs(kUsage, options ? stdout : stderr);
        return options ? 0 : 2;
    }
    if (options->task == Task::run) return reportedRun(*options, arguments[0]);
    const ModuleFile program = readModuleFile(programFile(arguments[0]));
    if (options->task == Task::why) return explainModule(program, options->why);
    if (const std::string wrong = usePlaces(*options); !wrong.empty()) {
        std::fprintf(stderr, "kora-host: %s\n", wrong.c_str());
        return 2;
    }
    return listModules(program, options->all);
} catch (const std::exception& failure) {
    std::fprintf(stderr, "kora-host: %s\n", failure.what());
    return 1;
}
