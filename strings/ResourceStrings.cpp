#include <kora/Str.h>

#include "platform/Platform.h"
#include "strings/ModuleInterface.h"

using namespace kora;

char* StrRes(TskKoraModule* module, int id) {
    if (!module) return nullptr;
    const platform::ModuleHandle handle = moduleHandleByName(moduleName(module));
    if (handle == 0) return nullptr;
    char text[512];
    if (platform::moduleString(handle, id, text, sizeof text) <= 0) return nullptr;
    return StrNew(text);
}
