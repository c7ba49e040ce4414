#include "tasks/Registry.h"

#include <new>

namespace kora {

constinit Registry registry{};

namespace {

TskKoraModule* following(TskKoraModule* module) {
    DoubleListElement* cursor = module;
    return static_cast<TskKoraModule*>(registry.modules->Next(cursor));
}

}  // namespace

bool registryStart() {
    if (registry.modules == nullptr) registry.modules = new (std::nothrow) DoubleList;
    return registry.modules != nullptr;
}

void registryStop() {
    if (registry.modules == nullptr) return;
    // One by one, since a module may delete others, or look some up, as it goes.
    while (DoubleListElement* module = registry.modules->First()) delete module;
    delete registry.modules;
    registry.modules = nullptr;
}

bool registryAttach(TskKoraModule& module) {
    if (!registryStart()) return false;
    registry.modules->AttachAtTail(&module);
    return true;
}

void registryDetach(TskKoraModule& module) {
    if (module.next == nullptr) return;
    for (ModuleWalk* walk = registry.walks; walk != nullptr; walk = walk->outer_) {
        if (walk->current_ == &module) {
            walk->current_ = nullptr;
            walk->after_ = following(&module);
        } else if (walk->current_ == nullptr && walk->after_ == &module) {
            walk->after_ = following(&module);
        }
    }
    registry.modules->Detach(&module);
    if (registry.active == &module) registry.active = nullptr;
}

bool registryHolds(const TskKoraModule* module) {
    if (module == nullptr) return false;
    ModuleWalk walk;
    while (TskKoraModule* held = walk.next())
        if (held == module) return true;
    return false;
}

void registryDeleteAfter(std::uint32_t serial) {
    ModuleWalk walk;
    while (TskKoraModule* module = walk.next())
        // The difference, so that the numbers may wrap.
        if (static_cast<std::int32_t>(ModuleAccess::serial(*module) - serial) > 0) delete module;
}

ModuleWalk::ModuleWalk() : outer_(registry.walks) {
    if (registry.modules != nullptr) after_ = static_cast<TskKoraModule*>(registry.modules->First());
    registry.walks = this;
}

ModuleWalk::~ModuleWalk() { registry.walks = outer_; }

TskKoraModule* ModuleWalk::next() {
    current_ = current_ != nullptr ? following(current_) : after_;
    after_ = nullptr;
    return current_;
}

TskKoraModule* ModuleWalk::nextSuccessful() {
    while (TskKoraModule* module = next())
        if (module->TskInitSuccessful() && holdsCurrent()) return module;
    return nullptr;
}

}  // namespace kora
