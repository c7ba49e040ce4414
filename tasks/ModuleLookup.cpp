#include <kora/Tsk.h>

#include <cstring>

#include "strings/ModuleInterface.h"
#include "tasks/Registry.h"

TskKoraModule* TskKoraModuleGet(const char* name) {
    if (name == nullptr) return nullptr;
    kora::ModuleWalk walk;
    while (TskKoraModule* module = walk.nextSuccessful())
        if (std::strcmp(kora::moduleName(module), name) == 0) return module;
    return nullptr;
}

unsigned long TskKoraHandleGet(const char* name) {
    TskKoraModule* module = TskKoraModuleGet(name);
    return module != nullptr ? module->TskHandleGet() : 0;
}

bool TskModuleExists(const char* name) { return TskKoraModuleGet(name) != nullptr; }

bool TskModuleIsVisible(const char* name) {
    TskKoraModule* module = TskKoraModuleGet(name);
    return module != nullptr && module->TskVisible();
}

bool TskKoraWakeUpByName(const char* name, const char* argument, bool toggle) {
    TskKoraModule* module = TskKoraModuleGet(name);
    if (module == nullptr) return false;
    if (toggle && module->TskVisible()) {
        module->TskHide();
        return true;
    }
    if (argument != nullptr) return module->TskWakeUp(argument);
    module->TskWakeUp();
    return true;
}

bool TskModulesInitialized() { return kora::registry.modules != nullptr; }

void TskActiveModuleSet(TskKoraModule* module) {
    TskKoraModule* before = kora::registry.active;
    if (module == before) return;
    // Remembered first, so that a hook sees the new state, and may make yet another module active.
    kora::registry.active = module;
    if (before != nullptr) before->TskSuspend();
    if (module != nullptr && kora::registry.active == module) module->TskResume();
}

TskKoraModule* TskActiveModuleGet() { return kora::registry.active; }
