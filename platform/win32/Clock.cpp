#include "platform/Ticks.h"
#include "platform/win32/Win32.h"

namespace kora::platform {

std::uint32_t tickCount() { return GetTickCount(); }

std::uint64_t freeMemory() {
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof memory;
    return GlobalMemoryStatusEx(&memory) ? memory.ullAvailPhys : 0;
}

// Large pages take a privilege that programs do not have.
void preferLargePages(void*, std::size_t) {}

std::uint32_t processId() { return GetCurrentProcessId(); }

void pause(std::uint32_t milliseconds) { Sleep(milliseconds); }

}  // namespace kora::platform
