#include "core/TraceRing.h"

#include <kora/Trace.h>

namespace kora {

constinit TraceRing traceRing{.recording = true, .toFile = false, .count = 0, .lastCode = 0, .trigger = 0, .words = {}};

void traceTriggered() { TraceDump(nullptr, false); }

}  // namespace kora
