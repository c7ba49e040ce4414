#include "tasks/Observer.h"

#include <utility>

namespace kora {

namespace {

constinit TskObserver* observer = nullptr;

}  // namespace

void stepBegin(eTskStep step, TskKoraModule* module, const char* file) {
    if (observer == nullptr) return;
    if (file == nullptr) file = module->TskFileName();
    observer->TskStepBegin(step, module, file != nullptr ? file : "");
}

void stepEnd(eTskStepResult result, const char* reason) {
    if (observer != nullptr) observer->TskStepEnd(result, reason);
}

}  // namespace kora

void TskObserver::TskStepBegin(eTskStep, TskKoraModule*, const char*) {}

void TskObserver::TskStepEnd(eTskStepResult, const char*) {}

TskObserver* TskObserverSet(TskObserver* observer) { return std::exchange(kora::observer, observer); }
