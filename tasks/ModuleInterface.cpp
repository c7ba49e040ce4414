#include "strings/ModuleInterface.h"

#include <kora/Tsk.h>

namespace kora {

const char* moduleName(TskKoraModule* module) {
    const char* name = module != nullptr ? module->TskKoraName() : nullptr;
    return name != nullptr ? name : "";
}

bool moduleHandlesError(TskKoraModule* module) { return module != nullptr && module->TskErrHandler(); }

unsigned long moduleHandleByName(const char* name) { return TskKoraHandleGet(name); }

}  // namespace kora
