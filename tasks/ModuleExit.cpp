#include <kora/Tsk.h>

#include "core/TraceRing.h"
#include "paths/SharedDirectories.h"
#include "settings/KnownKeys.h"
#include "settings/Store.h"
#include "tasks/ApplicationState.h"
#include "tasks/CommandLine.h"
#include "tasks/Mailbox.h"
#include "tasks/ModuleStart.h"
#include "tasks/Observer.h"
#include "tasks/PeerMessaging.h"
#include "tasks/Registry.h"
#include "tasks/Running.h"
#include "tasks/Timers.h"

namespace kora {

namespace {

// What the last query found.
constinit bool allAgreed = false;

void endPass(eTskStep step, TskKoraModule* module, void (TskKoraModule::*exit)()) {
    observed(step, module, [&] { return (module->*exit)(), true; });
}

void exitPasses() {
    for (ModuleWalk walk; TskKoraModule* module = walk.nextSuccessful();) {
        traceStep(trace::kExitPass1);
        endPass(TskStepExit1, module, &TskKoraModule::TskExit1);
    }
    for (ModuleWalk walk; TskKoraModule* module = walk.nextSuccessful();) {
        traceStep(trace::kExitPass2);
        endPass(TskStepExit2, module, &TskKoraModule::TskExit2);
    }
}

}  // namespace

}  // namespace kora

bool TskExitKoraQuery() {
    const kora::Running running;
    kora::allAgreed = false;
    try {
        kora::ModuleWalk walk;
        while (TskKoraModule* module = walk.nextSuccessful()) {
            kora::traceStep(kora::trace::kExitQuery);
            if (!kora::observed(TskStepExitRequest, module, [&] { return module->TskExitRequest(); })) return false;
        }
    } catch (...) {
        kora::exceptionNote("Exception in TskExitKoraQuery");
        return false;
    }
    kora::allAgreed = true;
    return true;
}

void TskExit() {
    if (!kora::allAgreed) return;
    kora::allAgreed = false;
    const kora::Running running;
    try {
        kora::exitPasses();
    } catch (...) {
        kora::exceptionNote("Exception in TskExit");
    }
    kora::traceStep(kora::trace::kServicesEnd);
    kora::timersStop();
    kora::commandLineStop();
    kora::registryStop();
    kora::modulesEnded();
    kora::applicationState.started = false;
    kora::applicationState.staying = 0;
    kora::netStop();
    kora::mailboxesStop();
    kora::settingsStop();
    kora::knownKeysStop();
    kora::pathsStop();
    kora::librariesRelease();
    kora::traceStep(kora::trace::kServicesEnded);
}
