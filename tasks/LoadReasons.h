#pragma once

#include <cstdint>
#include <string>

namespace kora {

/// Why a module file could not be loaded, in the words that users see, from the system's error code.
std::string loadReason(std::uint32_t code);

}  // namespace kora
