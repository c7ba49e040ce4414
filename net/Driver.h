#pragma once

#include <kora/Net.h>

namespace kora {

/// Has the driver in force execute a block. An exception that it throws is code 64.
unsigned char netDriverCall(NetNcb& block) noexcept;

}  // namespace kora
