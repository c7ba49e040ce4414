#include <sys/mman.h>
#include <sys/sysinfo.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

#include "platform/Platform.h"

namespace kora::platform {

std::uint64_t freeMemory() {
    struct sysinfo memory;
    return sysinfo(&memory) == 0 ? std::uint64_t{memory.freeram} * memory.mem_unit : 0;
}

void preferLargePages(void* memory, std::size_t size) { madvise(memory, size, MADV_HUGEPAGE); }

std::uint32_t processId() { return static_cast<std::uint32_t>(getpid()); }

void pause(std::uint32_t milliseconds) {
    timespec rest = {static_cast<time_t>(milliseconds / 1'000), static_cast<long>(milliseconds % 1'000) * 1'000'000};
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &rest, &rest) == EINTR) {
    }
}

}  // namespace kora::platform
