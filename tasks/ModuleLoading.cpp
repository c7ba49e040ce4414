#include "tasks/ModuleLoading.h"

#include <kora/Err.h>
#include <kora/Trace.h>
#include <kora/Tsk.h>

#include <typeinfo>

#include "core/TraceRing.h"
#include "platform/Platform.h"
#include "settings/KnownKeys.h"
#include "tasks/ApplicationState.h"
#include "tasks/CommandLine.h"
#include "tasks/LoadReasons.h"
#include "tasks/Observer.h"
#include "tasks/Registry.h"
#include "tasks/Running.h"

namespace kora {

namespace {

using Entry = decltype(&TskKoraMain);

// The entry's name as the compiler decorates it: the name with its length, then the parameters as they stand in the
// decorated function type, "F", result "v", parameters, "E".
std::string entryName() {
    const std::string plain = "TskKoraMain";
    const std::string type = typeid(decltype(TskKoraMain)).name();
    return "_Z" + std::to_string(plain.size()) + plain + type.substr(2, type.size() - 3);
}

/// How the loading of a file went; without success what the user was told, and what the loader says on a line below.
struct Outcome {
    eTskStepResult result = TskStepDone;
    std::string reason;
};

/// What an entry made of its call: the module object that it connected, or null.
struct Connection {
    TskKoraModule* module = nullptr;
    bool threw = false;
};

Connection connect(Entry entry) {
    eTskKoraModule status = TskKoraModuleFailed;
    TskKoraModule* module = nullptr;
    try {
        entry(status, &module, 0.0);
    } catch (...) {
        // The exception may be of the module's own make, and so has to end before the library goes.
        return {.threw = true};
    }
    // An object that deleted itself meanwhile is none.
    return {.module = status != TskKoraModuleFailed && registryHolds(module) ? module : nullptr};
}

Outcome unloadable(const std::string& path, const platform::LoadFailure& failure) {
    const std::string text = "Error \"" + loadReason(failure.code) + "\" loading module " + path;
    TraceDump(text.c_str(), false);
    if (!failure.detail.empty()) TraceNote(failure.detail.c_str());
    TskError("%s", text.c_str());
    failureNote();
    return {TskStepFailed, failure.detail.empty() ? text : text + '\n' + failure.detail};
}

Outcome load(const std::string& folder, const std::string& name) {
    traceStep(trace::kModuleLoad);
    const std::string path = folder + (folder.ends_with('\\') ? "" : "\\") + name;
    // Taken before the library is loaded: an object may also be made while its statics are.
    const std::uint32_t before = registry.lastSerial;
    platform::LoadFailure failure;
    const platform::ModuleHandle library = platform::loadModule(path, failure);
    if (library == 0) return unloadable(path, failure);
    const auto entry = reinterpret_cast<Entry>(platform::moduleFunction(library, entryName().c_str()));
    traceStep(trace::kModuleEntry);
    CommandLineAttempt subscriptions;
    const std::uint32_t knownBefore = knownKeysMark();
    const Connection connection = entry != nullptr ? connect(entry) : Connection{};
    traceStep(trace::kModuleEntryDone);
    TskKoraModule* const module = connection.module;
    if (module == nullptr) {
        const std::string text = entry == nullptr ? "Module " + name + " is not compatible with this version."
                                                  : "The Kora Module " + name + " did not connect to System Services";
        TskError("%s", text.c_str());
        subscriptions.undo();
        knownKeysUndo(knownBefore);
        registryDeleteAfter(before);
        platform::unloadModule(library);
        failureNote();
        return {connection.threw ? TskStepThrew : TskStepFailed, text};
    }
    libraryKeep(library);
    ModuleAccess::setFileName(*module, name.c_str());
    module->TskHandleSet(library);
    if (registryHolds(module)) ModuleAccess::setInitSuccessful(*module);
    traceStep(trace::kModuleLoaded);
    return {};
}

}  // namespace

void moduleLoad(const std::string& folder, const std::string& name) {
    stepBegin(TskStepLoad, nullptr, name.c_str());
    Outcome outcome;
    try {
        outcome = load(folder, name);
    } catch (...) {
        stepEnd(TskStepThrew, "");
        throw;
    }
    stepEnd(outcome.result, outcome.reason.c_str());
}

}  // namespace kora
