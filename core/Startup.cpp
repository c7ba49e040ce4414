#include <kora/Trace.h>
#include <kora/Tsk.h>

#include "core/TraceCodes.h"
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

constexpr std::uint32_t kStart = trace::code(trace::kStartup, 0x010);
constexpr std::uint32_t kPrepare = trace::code(trace::kStartup, 0x020);
constexpr std::uint32_t kInit = trace::code(trace::kStartup, 0x030);
constexpr std::uint32_t kModulesStart = trace::code(trace::kStartup, 0x040);
constexpr std::uint32_t kSecondStage = trace::code(trace::kStartup, 0x050);
constexpr std::uint32_t kStarted = trace::code(trace::kStartup, 0x05F);
constexpr std::uint32_t kIdle = trace::code(trace::kStartup, 0x100);
constexpr std::uint32_t kPreTranslate = trace::code(trace::kStartup, 0x110);
constexpr std::uint32_t kExit = trace::code(trace::kStartup, 0x200);
constexpr std::uint32_t kExited = trace::code(trace::kStartup, 0x20F);

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
    traceCode(kStart);
    applicationState.ending = false;
    applicationState.exitCode = 0;
    if (!mailboxesStart() || !timersStart()) return false;
    pathsStart();
    traceCode(kPrepare);
    TskGetApp()->TskAppPrepare();
    settingsStart();
    TraceNoteDate("Hello!", false);
    workingDirectoryRemember();
    traceCode(kInit);
    if (!TskGetApp()->TskAppInit()) return false;
    applicationState.started = true;
    traceCode(kModulesStart);
    runModules(modulesStart);
    traceCode(kSecondStage);
    if (!TskGetApp()->TskAppStart(hostStart)) return false;
    runModules(modulesFinish);
    traceCode(kStarted);
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
    kora::traceCode(kora::kIdle);
    try {
        return TskGetApp()->TskAppIdle(count);
    } catch (...) {
        kora::exceptionNote("Exception in theApp.OnIdle");
        return 0;
    }
}

int PreTranslateMessage(tagMSG* message) {
    const kora::Running running;
    kora::traceCode(kora::kPreTranslate);
    try {
        return TskGetApp()->TskAppPreTranslate(message);
    } catch (...) {
        kora::exceptionNote("Exception in theApp.PreTranslateMessage");
        return 0;
    }
}

int ExitInstance() {
    const kora::Running running;
    kora::traceCode(kora::kExit);
    TskExit();
    kora::applicationState.started = false;
    kora::traceCode(kora::kExited);
    TraceDump("Exit Trace", false);
    TraceNoteDate("Goodbye!", false);
    try {
        return TskGetApp()->TskAppExit();
    } catch (...) {
        kora::exceptionNote("Exception in theApp.ExitInstance");
        return 1;
    }
}
