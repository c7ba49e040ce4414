#include "tasks/ModuleLoading.h"

#include <kora/Err.h>
#include <kora/Trace.h>
#include <kora/Tsk.h>

#include <typeinfo>

#include "core/TraceCodes.h"
#include "core/TraceRing.h"
#include "platform/Platform.h"
#include "tasks/ApplicationState.h"
#include "tasks/CommandLine.h"
#include "tasks/LoadReasons.h"
#include "tasks/Registry.h"
#include "tasks/Running.h"

namespace kora {

namespace {

constexpr std::uint32_t kLoad = trace::code(trace::kModules, 0x100);
constexpr std::uint32_t kEntry = trace::code(trace::kModules, 0x110);
constexpr std::uint32_t kEntryDone = trace::code(trace::kModules, 0x11F);
constexpr std::uint32_t kLoaded = trace::code(trace::kModules, 0x1FF);

using Entry = decltype(&TskKoraMain);

// The entry's name as the compiler decorates it: the name with its length, then the parameters as they stand in the
// decorated function type, "F", result "v", parameters, "E".
std::string entryName() {
    const std::string plain = "TskKoraMain";
    const std::string type = typeid(decltype(TskKoraMain)).name();
    return "_Z" + std::to_string(plain.size()) + plain + type.substr(2, type.size() - 3);
}

// Calls the entry; the module object that it connected, or null.
TskKoraModule* connect(Entry entry) {
    eTskKoraModule status = TskKoraModuleFailed;
    TskKoraModule* module = nullptr;
    try {
        entry(status, &module, 0.0);
    } catch (...) {
        // The exception may be of the module's own make, and so has to end before the library goes.
        return nullptr;
    }
    // An object that deleted itself meanwhile is none.
    return status != TskKoraModuleFailed && registryHolds(module) ? module : nullptr;
}

void reportUnloadable(const std::string& path, const platform::LoadFailure& failure) {
    const std::string text = "Error \"" + loadReason(failure.code) + "\" loading module " + path;
    TraceDump(text.c_str(), false);
    if (!failure.detail.empty()) TraceNote(failure.detail.c_str());
    TskError("%s", text.c_str());
    failureNote();
}

}  // namespace

void moduleLoad(const std::string& folder, const std::string& name) {
    traceCode(kLoad);
    const std::string path = folder + (folder.ends_with('\\') ? "" : "\\") + name;
    // Taken before the library is loaded: an object may also be made while its statics are.
    const std::uint32_t before = registry.lastSerial;
    platform::LoadFailure failure;
    const platform::ModuleHandle library = platform::loadModule(path, failure);
    if (library == 0) {
        reportUnloadable(path, failure);
        return;
    }
    const auto entry = reinterpret_cast<Entry>(platform::moduleFunction(library, entryName().c_str()));
    traceCode(kEntry);
    CommandLineAttempt subscriptions;
    TskKoraModule* module = entry != nullptr ? connect(entry) : nullptr;
    traceCode(kEntryDone);
    if (module == nullptr) {
        if (entry == nullptr)
            TskError("Module %s is not compatible with this version.", name.c_str());
        else
            TskError("The Kora Module %s did not connect to System Services", name.c_str());
        subscriptions.undo();
        registryDeleteAfter(before);
        platform::unloadModule(library);
        failureNote();
        return;
    }
    libraryKeep(library);
    ModuleAccess::setFileName(*module, name.c_str());
    module->TskHandleSet(library);
    if (registryHolds(module)) ModuleAccess::setInitSuccessful(*module);
    traceCode(kLoaded);
}

}  // namespace kora
