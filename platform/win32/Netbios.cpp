#include <kora/Net.h>

#include "platform/win32/Win32.h"

namespace kora::platform {

SharedBlock Network::allocate(std::size_t size) {
    const HGLOBAL handle = GlobalAlloc(GMEM_SHARE | GMEM_ZEROINIT | GMEM_MOVEABLE, size);
    if (!handle) return {};
    void* const memory = GlobalLock(handle);
    if (!memory) {
        GlobalFree(handle);
        return {};
    }
    return {memory, reinterpret_cast<std::uintptr_t>(handle)};
}

void Network::release(const SharedBlock& block) {
    const auto handle = reinterpret_cast<HGLOBAL>(block.handle);
    GlobalUnlock(handle);
    GlobalFree(handle);
}

unsigned char Network::execute(NetNcb& block, NetworkSettings (*)()) {
    constexpr unsigned char kNotLoaded = 251;
    return block.ncb_retcode = block.ncb_cmd_cplt = kNotLoaded;
}

void networkStop() {}

std::optional<std::string> registeredComputerName() { return std::nullopt; }

}  // namespace kora::platform
