#pragma once

#include <kora/Not.h>

// What other modules hear of this one. They ask for the broadcasts in their TskInit2() or later, and detach in their
// TskExit1():
//
//     const unsigned long module = TskKoraHandleGet("pulse");
//     if (void* found = module != 0 ? TskKoraConnect(module, "pulse", kPulseNotifyGet) : nullptr)
//         reinterpret_cast<PulseNotifyGetter>(found)()->Attach(0, 0, pulseHeard, 0, PulseBeat | PulseDone);

/// The events; a broadcast's argument is how many beats there were.
enum ePulseEvent : unsigned long {
    PulseBeat = 1,  ///< a beat
    PulseDone = 2   ///< it was the last one
};

/// The name and the type of the exported function that answers the broadcasts; they stand while the module does.
inline constexpr char kPulseNotifyGet[] = "PulseNotifyGet";
typedef NotNotify* (*PulseNotifyGetter)();
