#pragma once

#include <cstdint>

namespace kora {

/// Makes the registries of timers; false, without any of them, when memory ran out. The first timer makes them too.
bool timersStart();

/// Deletes every timer and the registries. Timers that are owned elsewhere are stopped and keep their registries.
void timersStop();

/// How long it takes from now until a running timed timer fires. False when none runs, and within a pass over them,
/// since none fires before its end.
bool timersNextDue(std::uint32_t& milliseconds);

}  // namespace kora
