#include <kora/Err.h>
#include <kora/Trace.h>

#include <cstdint>
#include <string>

#include "core/FiledFaults.h"
#include "core/OwnStrings.h"
#include "core/TraceRing.h"
#include "strings/Format.h"

namespace {

struct SevereFault {
    bool filed = false;
    std::uint32_t code = 0;
    void* data = nullptr;
    int textId = 0;
};

constinit SevereFault severest;

// The fields are not masked: one that is too large spills into its neighbour.
std::uint32_t packed(std::uint32_t top, unsigned shift, unsigned long module, unsigned long file,
                     unsigned long location) {
    return ((top << shift | static_cast<std::uint32_t>(module)) << 6 | static_cast<std::uint32_t>(file)) << 12 |
           static_cast<std::uint32_t>(location);
}

std::string faultText(int& textId, unsigned long module, unsigned long file, unsigned long location) {
    std::string text;
    if (textId != 0) text = kora::ownString(textId);
    if (text.empty()) {
        textId = 0;
        text = kora::formatText("Error dump module %x file %x loc %x", static_cast<unsigned>(module),
                                static_cast<unsigned>(file), static_cast<unsigned>(location));
    }
    return text;
}

}  // namespace

void ERR(eErrorLevel level, unsigned long module, unsigned long file, unsigned long location, void* data, int textId) {
    const std::uint32_t severity = static_cast<std::uint32_t>(level);
    kora::traceCode(packed((data ? 1U : 0U) | severity << 4, 6, module, file, location));
    kora::traceData(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(data)));
    kora::traceData(0);
    try {
        TraceDump(faultText(textId, module, file, location).c_str(), false);
    } catch (const std::bad_alloc&) {
        textId = 0;
        TraceDump(nullptr, false);
    }
    if (severity >= severest.code >> 28) severest = {true, packed(severity, 10, module, file, location), data, textId};
}

namespace kora {

void fileFault(trace::Place place) {
    constexpr std::uint32_t kFileMask = 0x3F, kLocationMask = 0xFFF;
    ERR(ErrLevelLowest, trace::kModule, place >> 12 & kFileMask, place & kLocationMask, nullptr, 0);
}

}  // namespace kora

bool ErrSevereGet(unsigned long& code, void*& data, int& textId) {
    code = severest.code;
    data = severest.data;
    textId = severest.textId;
    return severest.filed;
}
