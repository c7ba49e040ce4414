#include <kora/Tsk.h>

#include "tasks/Registry.h"

void TskActiveModuleSet(TskKoraModule* module) {
    TskKoraModule* before = kora::registry.active;
    if (module == before) return;
    // Remembered first, so that a hook sees the new state, and may make yet another module active.
    kora::registry.active = module;
    if (before != nullptr) before->TskSuspend();
    if (module != nullptr && kora::registry.active == module) module->TskResume();
}

TskKoraModule* TskActiveModuleGet() { return kora::registry.active; }

bool TskIsSuspended() { return kora::registry.suspended; }

void TskSuspendSet(bool on) {
    if (kora::registry.suspended == on) return;
    kora::registry.suspended = on;
    kora::ModuleWalk walk;
    while (TskKoraModule* module = walk.nextSuccessful()) {
        if (on)
            module->TskKoraSuspend();
        else
            module->TskKoraResume();
    }
}
