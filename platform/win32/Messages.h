#pragma once

#include <cstdint>

namespace kora::platform {

/// Whether messages can be posted; on every thread.
bool messagesStarted() noexcept;
/// Hands a value that came to a window of the library's to the sink of messagesStart(), on the user-interface thread.
/// It is dropped while messages are not started.
void deliverMessage(std::uint32_t receiver, std::uintptr_t value) noexcept;
/// Keeps the exception that is being handled for the next pump: none may pass through the system out of a window's
/// procedure. The first one is kept.
void holdException() noexcept;

}  // namespace kora::platform
