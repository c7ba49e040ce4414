#include "strings/ModuleInterface.h"

#include <kora/Tsk.h>

#include "tasks/Registry.h"

namespace kora {

// A pending error may outlive the module that set it: one that has gone is not asked.
const char* moduleName(TskKoraModule* module) {
    const char* name = registryHolds(module) ? module->TskKoraName() : nullptr;
    return name != nullptr ? name : "";
}

bool moduleHandlesError(TskKoraModule* module) { return registryHolds(module) && module->TskErrHandler(); }

unsigned long moduleHandleByName(const char* name) { return TskKoraHandleGet(name); }

}  // namespace kora
