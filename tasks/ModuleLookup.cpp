#include <kora/Tsk.h>

#include <cstring>

#include "tasks/Registry.h"

TskKoraModule* TskKoraModuleGet(const char* name) {
    if (name == nullptr) return nullptr;
    kora::ModuleWalk walk;
    while (TskKoraModule* module = walk.nextSuccessful())
        if (const char* own = module->TskKoraName(); own != nullptr && std::strcmp(own, name) == 0) return module;
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
