#include <kora/Trace.h>
#include <kora/Tsk.h>

#include "core/TraceRing.h"
#include "paths/SharedDirectories.h"
#include "settings/Store.h"
#include "tasks/ApplicationState.h"
#include "tasks/Mailbox.h"
#include "tasks/ModuleStart.h"
#include "tasks/Running.h"
#include "tasks/Timers.h"

namespace kora {

namespace {

// One part of module start-up: what a module throws ends that part and no more.
void runModules(void (*part)()) {
    try {
        part();
    } catch (...) {
        exceptionNote("Exception in TskInit");
    }
}

bool start(void* hostStart) {
    if (applicationState.prepareOnce) {
        applicationState.prepareOnce = false;
        TskGetApp()->TskAppPrepareOnce();
    }
    TraceInit();
    traceStep(trace::kStartBegins);
    applicationState.ending = false;
    applicationState.exitCode = 0;
    if (!mailboxesStart() || !timersStart()) return false;
    pathsStart();
    traceStep(trace::kStartPrepares);
    TskGetApp()->TskAppPrepare();
    settingsStart();
    TraceNoteDate("Hello!", false);
    workingDirectoryRemember();
    traceStep(trace::kStartInitialises);
    if (!TskGetApp()->TskAppInit()) return false;
    applicationState.started = true;
    traceStep(trace::kStartModules);
    runModules(modulesStart);
    traceStep(trace::kStartSecondStage);
    if (!TskGetApp()->TskAppStart(hostStart)) return false;
    runModules(modulesFinish);
    traceStep(trace::kStartDone);
    return true;
}

}  // namespace

}  // namespace kora

int Startup(void* start, void*) {
    const kora::Running running;
    if (kora::applicationState.started) return 1;
    try {
        return kora::start(start) ? 1 : 0;
    } catch (...) {
        kora::exceptionNote("Exception in Startup");
        return 0;
    }
}

int Idle(long count) {
    const kora::Running running;
    kora::traceStep(kora::trace::kIdlePass);
    try {
        return TskGetApp()->TskAppIdle(count);
    } catch (...) {
        kora::exceptionNote("Exception in theApp.OnIdle");
        return 0;
    }
}

int PreTranslateMessage(tagMSG* message) {
    const kora::Running running;
    kora::traceStep(kora::trace::kPreTranslate);
    try {
        return TskGetApp()->TskAppPreTranslate(message);
    } catch (...) {
        kora::exceptionNote("Exception in theApp.PreTranslateMessage");
        return 0;
    }
}

int ExitInstance() {
    const kora::Running running;
    kora::traceStep(kora::trace::kExitBegins);
    TskExit();
    kora::applicationState.started = false;
    kora::traceStep(kora::trace::kExitDone);
    TraceDump("Exit Trace", false);
    TraceNoteDate("Goodbye!", false);
    try {
        return TskGetApp()->TskAppExit();
    } catch (...) {
        kora::exceptionNote("Exception in theApp.ExitInstance");
        return 1;
    }
}
