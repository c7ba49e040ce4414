#pragma once

#include <cstdint>

#ifndef _WIN32
#include <time.h>
#endif

namespace kora::platform {

/// Milliseconds since the system started, wrapping at 32 bits. Timers ask at every poll, and most polls do nothing
/// else, so this stands beside the rest of the seam and is in line where the system does not offer just that.
#ifdef _WIN32
std::uint32_t tickCount();
#else
inline std::uint32_t tickCount() {
    // The coarse clock moves once in a few milliseconds and costs a fifth of the exact one.
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return static_cast<std::uint32_t>(std::uint64_t(now.tv_sec) * 1'000 + std::uint64_t(now.tv_nsec) / 1'000'000);
}
#endif

}  // namespace kora::platform
