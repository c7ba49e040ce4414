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

void* mapMemory(std::size_t size) {
    // A large page begins at a multiple of its size.
    void* const found = mmap(nullptr, 2 * size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (found == MAP_FAILED) return nullptr;
    char* const memory = static_cast<char*>(found);
    const std::size_t before = (size - reinterpret_cast<std::uintptr_t>(memory) % size) % size;
    if (before > 0) munmap(memory, before);
    if (before < size) munmap(memory + before + size, size - before);
    madvise(memory + before, size, MADV_HUGEPAGE);
    return memory + before;
}

void unmapMemory(void* memory, std::size_t size) { munmap(memory, size); }

std::uint32_t processId() { return static_cast<std::uint32_t>(getpid()); }

void pause(std::uint32_t milliseconds) {
    timespec rest = {static_cast<time_t>(milliseconds / 1'000), static_cast<long>(milliseconds % 1'000) * 1'000'000};
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &rest, &rest) == EINTR) {
    }
}

}  // namespace kora::platform
