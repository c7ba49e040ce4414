#pragma once

#include <cstddef>

namespace kora {

/// Room for a message text: 1023 characters and the terminator. Longer messages are cut.
inline constexpr std::size_t kMessageSize = 1024;

}  // namespace kora
