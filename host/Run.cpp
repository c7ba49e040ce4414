#include "host/Run.h"

#include <kora/Err.h>
#include <kora/File.h>
#include <kora/Trace.h>
#include <kora/Tsk.h>

#include <algorithm>
#include <cstdio>

#include "host/Places.h"

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

}  // namespace

int run(const Options& options, RunRecord& record) {
    std::optional<Recorder> recorder;
    if (!options.report.empty()) recorder.emplace(record);
    const auto phase = [&](const char* name) {
        if (recorder) recorder->phaseSet(name);
    };
    if (record.error = usePlaces(options); !record.error.empty()) return 2;
    if (options.trace) TraceToFileSet(true);
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

}  // namespace kora::host
