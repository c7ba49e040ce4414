#include <kora/Net.h>

#include <new>

#include "platform/Platform.h"

namespace kora::platform {

SharedBlock Network::allocate(std::size_t size) {
    auto* const bytes = new (std::nothrow) unsigned char[size]();
    return {bytes, reinterpret_cast<std::uintptr_t>(bytes)};
}

void Network::release(const SharedBlock& block) { delete[] static_cast<unsigned char*>(block.memory); }

unsigned char Network::execute(NetNcb& block, NetworkSettings (*)()) {
    constexpr unsigned char kNotLoaded = 251;
    return block.ncb_retcode = block.ncb_cmd_cplt = kNotLoaded;
}

void networkStop() {}

std::optional<std::string> registeredComputerName() { return std::nullopt; }

}  // namespace kora::platform
