#include "platform/Ticks.h"
#include "platform/win32/Win32.h"

namespace kora::platform {

std::uint32_t tickCount() { return GetTickCount(); }

std::uint64_t freeMemory() {
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof memory;
    return GlobalMemoryStatusEx(&memory) ? memory.ullAvailPhys : 0;
}

void* mapMemory(std::size_t size) {
    // Large pages take a privilege that programs do not have.
    return VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void unmapMemory(void* memory, std::size_t) { VirtualFree(memory, 0, MEM_RELEASE); }

std::uint32_t processId() { return GetCurrentProcessId(); }

void pause(std::uint32_t milliseconds) { Sleep(milliseconds); }

}  // namespace kora::platform
