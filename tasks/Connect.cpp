#include <kora/Err.h>
#include <kora/Tsk.h>

#include <string>

#include "platform/Platform.h"

void* TskKoraConnect(unsigned long handle, const char* module, const char* function) {
    if (handle == 0) {
        TskError("DLL Failure: Couldn't find Kora Module '%s'", module);
        return nullptr;
    }
    void* found = function != nullptr ? kora::platform::moduleFunction(handle, function) : nullptr;
    if (found == nullptr) TskError("DLL Failure: Couldn't find function '%s' in Kora Module '%s'", function, module);
    return found;
}

unsigned long TskGetOurInstance() { return kora::platform::ownModule(); }
