#include "tasks/ModuleStart.h"

#include <kora/Err.h>
#include <kora/Ini.h>
#include <kora/Tsk.h>

#include <string>
#include <vector>

#include "core/Presenter.h"
#include "core/TraceRing.h"
#include "strings/Format.h"
#include "strings/ModuleInterface.h"
#include "tasks/ApplicationState.h"
#include "tasks/ModuleLoading.h"
#include "tasks/Observer.h"
#include "tasks/Registry.h"
#include "tasks/ToolsFolder.h"

namespace kora {

namespace {

struct Phase {
    trace::Place place;
    const char* progress;
    eTskStep step;
    bool (TskKoraModule::*run)();
};

constexpr Phase kPhases[] = {
    {trace::kPhase1, "Phase 1 initialization of %s", TskStepInit1, &TskKoraModule::TskInit1},
    {trace::kPhase2, "Phase 2 initialization of %s", TskStepInit2, &TskKoraModule::TskInit2},
    {trace::kPhase3, "Phase 3 initialization of %s", TskStepInit3, &TskKoraModule::TskInit3},
    {trace::kPhase4, "Phase 4 initialization of %s", TskStepInit4, &TskKoraModule::TskInit4},
};

struct ModuleStart {
    bool begun;
    bool phasesDone;
    short nugPinNameDisplayUp;
};

constinit ModuleStart moduleStart{};

void showProgress(const char* format, const char* name) { presenter().Progress(formatText(format, name).c_str()); }

void loadAll() {
    traceStep(trace::kToolsFolder);
    const std::string folder = toolsFolder();
    const std::vector<std::string> files = moduleFiles(folder);
    for (const std::string& name : files) {
        showProgress("Loading %s", name.c_str());
        moduleLoad(folder, name);
    }
    if (files.empty())
        MsgAlert(MsgIconExclamation, MsgButtonOk, 1, "No Modules",
                 "There are no code modules in the specified tools directory '%s'", folder.c_str());
}

void run(const Phase& phase) {
    ModuleWalk walk;
    while (TskKoraModule* module = walk.nextSuccessful()) {
        showProgress(phase.progress, moduleName(module));
        traceStep(phase.place);
        const bool succeeded = observed(phase.step, module, [&] { return (module->*phase.run)(); });
        if (!succeeded) failureNote();
        if (walk.holdsCurrent()) ModuleAccess::andInitSuccessful(*module, succeeded);
    }
}

}  // namespace

void modulesStart() {
    if (moduleStart.begun) return;
    moduleStart = {.begun = true, .phasesDone = false, .nugPinNameDisplayUp = 0};
    registryStart();
    loadAll();
    for (const Phase& phase : kPhases) run(phase);
    presenter().Progress("Loading Files ...");
    moduleStart.phasesDone = true;
    IniGetShort(eIniMain, "System", "NugPinNameDisplayUp", 0, moduleStart.nugPinNameDisplayUp);
}

void modulesFinish() {
    if (!moduleStart.phasesDone) return;
    moduleStart.phasesDone = false;  // once
    ModuleWalk walk;
    while (TskKoraModule* module = walk.nextSuccessful()) {
        traceStep(trace::kFinalPhase);
        observed(TskStepInitFinal, module, [&] { return module->TskInitFinal(); });
    }
}

void modulesEnded() { moduleStart = {}; }

}  // namespace kora

short TskNugPinNameDisplayUp() { return kora::moduleStart.nugPinNameDisplayUp; }

const char* TskVersionGet() { return KORA_VERSION; }
