#pragma once

#include <kora/Net.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "platform/Platform.h"

/// The commands of all NetBIOS objects. Each is in one table from its making until it is freed, so that a completion
/// is believed only for an address at which a command waits for one: who posts twice, or posts what it refused, finds
/// none as a rule. The table has a lock, since drivers post on threads of their own; everything else is on the
/// user-interface thread.
namespace kora {

/// A command with what it needs until it has completed. The block stands first, so that its address is the command's.
struct NetCommand {
    enum class State : std::uint8_t {
        ours,    ///< not under way
        issued,  ///< with the driver
        posted,  ///< completed, and a message says so
        lost     ///< completed, and no message could be posted
    };

    NetNcb block;
    platform::StatusWindow window;  ///< which is told; 0 once the object has gone
    platform::SharedBlock self, data;
    std::uint16_t capacity;  ///< of the data, in bytes
    State state;
    NetBIOS* owner;         ///< null once the object has gone
    NetCounters* counters;  ///< the owner's
    NetCommand* next;       ///< while several are freed
};
static_assert(std::is_standard_layout_v<NetCommand> && offsetof(NetCommand, block) == 0);

/// The box that completions go to; opens it, and 0 where that is not possible.
std::uint32_t netCompletionBox();

/// A command with a zeroed block and @p size bytes of zeroed data, which the block names; null when there is no memory.
NetCommand* netCommandMake(NetBIOS& owner, NetCounters& counters, platform::StatusWindow window, std::size_t size);
void netCommandFree(NetCommand& command);
/// Gives a command without data a zeroed buffer, which its block then names; false when there is no memory.
bool netDataMake(NetCommand& command, std::size_t size);
void netDataFree(NetCommand& command);

/// Issues a command that completes through netCommandPost(). 0: the driver has it, and it may be gone already. Any
/// other code: it is the caller's as before.
unsigned char netCommandIssue(NetCommand& command);
/// The post routine.
void netCommandPost(NetNcb* block);

/// What is under way for @p owner finds nobody from now on, and its window is told nothing.
void netCommandsOrphan(const NetBIOS& owner);

}  // namespace kora
