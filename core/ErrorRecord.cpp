#include <kora/Err.h>

#include <cstdint>

#include "strings/ModuleInterface.h"

namespace {

struct ErrorRecord {
    bool pending = false;
    bool reporting = false;
    TskKoraModule* module = nullptr;
    std::int32_t number = 0;
    std::int32_t location = 0;
    void* reference = nullptr;
};

constinit ErrorRecord record;

constexpr std::int32_t kOutOfMemory = -2;
constexpr std::int32_t kLowMemory = -1;

// A value as messages print it, in hexadecimal and in decimal: 32 bits wide wherever that loses nothing, so that the
// text is the same on every platform.
struct Printed {
    explicit Printed(std::int64_t value)
        : hexadecimal(static_cast<unsigned long>(value)), decimal(static_cast<long>(value)) {
        if (value >= INT32_MIN && value <= UINT32_MAX) {
            hexadecimal = static_cast<std::uint32_t>(value);
            decimal = static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
        }
    }
    unsigned long hexadecimal;
    long decimal;
};

void showLocated(eMsgIcon icon, const char* title, const char* format, const char* name) {
    const Printed location(record.location);
    const Printed reference(reinterpret_cast<std::intptr_t>(record.reference));
    MsgAlert(icon, MsgButtonOk, 1, title, format, name, location.hexadecimal, location.decimal, reference.hexadecimal,
             reference.decimal);
}

void showPending() {
    if (kora::moduleHandlesError(record.module)) return;
    const char* name = kora::moduleName(record.module);
    switch (record.number) {
        case kOutOfMemory:
            showLocated(MsgIconNone, "Out of Memory",
                        "Unable to complete operation as system memory has been exhausted. Kora Module '%s'  "
                        "Location 0x%lx (%ld)  Reference 0x%lx (%ld)",
                        name);
            break;
        case kLowMemory:
            MsgAlert(MsgIconExclamation, MsgButtonOk, 1, "Low Memory", "Available memory is getting low.");
            break;
        default:
            showLocated(MsgIconExclamation, "Internal Error",
                        "Unknown error occurred. Kora Module '%s'  Location 0x%lx (%ld)  Reference 0x%lx (%ld)", name);
            break;
    }
}

}  // namespace

bool ErrSet(TskKoraModule* module, long number, long location, void* reference) {
    // The diagnostic line about it is discarded, but modules count on being asked for their name here.
    kora::moduleName(module);
    if (record.pending) return true;
    record.module = module;
    record.number = static_cast<std::int32_t>(number);
    record.location = static_cast<std::int32_t>(location);
    record.reference = reference;
    record.pending = true;
    return false;
}

bool ErrGet(TskKoraModule*& module, long& number, long& location, void*& reference) {
    module = record.module;
    number = record.number;
    location = record.location;
    reference = record.reference;
    return record.pending;
}

bool ErrReport() {
    if (!record.pending) return false;
    if (record.reporting) return true;
    // Also when the presenter or the module's handler throws.
    struct Done {
        Done() { record.reporting = true; }
        ~Done() { record.pending = record.reporting = false; }
    } done;
    showPending();
    return true;
}
