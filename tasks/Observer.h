#pragma once

#include <kora/Tsk.h>

/// Telling the host's observer of the steps that modules are taken through. Without an observer nothing happens.
namespace kora {

/// @p module is null while a file is loaded, and @p file null for the one that the module names itself.
void stepBegin(eTskStep step, TskKoraModule* module, const char* file);
void stepEnd(eTskStepResult result, const char* reason);

/// Takes a module through a step, and answers what that answered. The step may throw.
template <class Deed>
bool observed(eTskStep step, TskKoraModule* module, Deed deed) {
    stepBegin(step, module, nullptr);
    bool succeeded = false;
    try {
        succeeded = deed();
    } catch (...) {
        stepEnd(TskStepThrew, "");
        throw;
    }
    stepEnd(succeeded ? TskStepDone : TskStepFailed, "");
    return succeeded;
}

}  // namespace kora
