#pragma once

#include <cstdint>

/// Messages that other threads, completions and the system post to the user-interface thread. Each receiver opens a
/// box of its own; what is posted to a box that has been closed is dropped.
namespace kora {

using MailboxHandler = void (*)(void* context, std::uintptr_t value);

/// Receiver 0 is never handed out: what is posted there asks the application to quit.
inline constexpr std::uint32_t kQuitMailbox = 0;

/// Makes the calling thread the user-interface thread, when none is yet.
bool mailboxesStart();
/// Drops what waits. Open boxes stay open.
void mailboxesStop();

/// Opens a box whose messages go to @p handler, and answers its number; 0 when memory ran out. User-interface thread
/// only, as closing.
std::uint32_t mailboxOpen(MailboxHandler handler, void* context);
void mailboxClose(std::uint32_t id);
/// Safe on every thread. False when messages are not started.
bool mailboxPost(std::uint32_t id, std::uintptr_t value);

}  // namespace kora
