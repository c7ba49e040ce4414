#include "net/Command.h"

#include <mutex>
#include <new>
#include <unordered_set>

#include "net/Codes.h"
#include "net/Completion.h"
#include "net/Driver.h"
#include "strings/Guarded.h"
#include "tasks/Mailbox.h"
#include "tasks/PeerMessaging.h"

namespace kora {

namespace {

struct Commands {
    std::mutex mutex;
    std::unordered_set<NetCommand*>* all = nullptr;  // made for the first command, and never deleted
    int lost = 0;
    std::uint32_t box = 0;  // opened once, and never closed
};

/// Never destroyed: a driver may post until the process has ended. Made at the first call, since not every compiler
/// knows a mutex as a constant.
Commands& commands() {
    alignas(Commands) static constinit std::byte room[sizeof(Commands)] = {};
    static Commands* const made = new (room) Commands;
    return *made;
}

// Finds a command of the table in that state, whatever the address may be worth.
NetCommand* find(void* address, NetCommand::State state) {
    if (commands().all == nullptr) return nullptr;
    const auto found = commands().all->find(static_cast<NetCommand*>(address));
    return found != commands().all->end() && (*found)->state == state ? *found : nullptr;
}

void delivered(void*, std::uintptr_t address) {
    NetCommand* command;
    {
        const std::lock_guard lock(commands().mutex);
        command = find(reinterpret_cast<void*>(address), NetCommand::State::posted);
        if (command == nullptr) return;
        command->state = NetCommand::State::ours;
    }
    NetCompletion::run(*command);
}

platform::SharedBlock blockMake(NetCounters& counters, std::size_t size) {
    const platform::SharedBlock block = platform::network().allocate(size);
    ++(block.memory != nullptr ? counters.blocksAllocated : counters.allocationFailures);
    return block;
}

void blockFree(NetCounters* counters, const platform::SharedBlock& block) {
    if (block.memory == nullptr) return;
    platform::network().release(block);
    if (counters != nullptr) ++counters->blocksFreed;
}

void blocksFree(const NetCommand& command) {
    NetCounters* const counters = command.counters;
    const platform::SharedBlock self = command.self;  // which the command is in
    blockFree(counters, command.data);
    blockFree(counters, self);
    if (counters != nullptr) ++counters->wrappersFreed;
}

bool enter(NetCommand* command) {
    const std::lock_guard lock(commands().mutex);
    return guarded([&] {
        if (commands().all == nullptr) commands().all = new std::unordered_set<NetCommand*>;
        commands().all->insert(command);
    });
}

// Frees every command that @p unused says it of.
template <class Unused>
void sweep(Unused unused) {
    NetCommand* first = nullptr;
    {
        const std::lock_guard lock(commands().mutex);
        if (commands().all == nullptr) return;
        std::erase_if(*commands().all, [&](NetCommand* command) {
            if (!unused(*command)) return false;
            if (command->state == NetCommand::State::lost) --commands().lost;
            command->next = first;
            first = command;
            return true;
        });
    }
    while (first != nullptr) {
        NetCommand* const next = first->next;
        blocksFree(*first);
        first = next;
    }
}

void sweepLost() {
    {
        const std::lock_guard lock(commands().mutex);
        if (commands().lost == 0) return;
    }
    sweep([](const NetCommand& command) { return command.state == NetCommand::State::lost; });
}

}  // namespace

std::uint32_t netCompletionBox() {
    if (!mailboxesStart()) return 0;
    if (commands().box == 0) commands().box = mailboxOpen(delivered, nullptr);
    return commands().box;
}

NetCommand* netCommandMake(NetBIOS& owner, NetCounters& counters, platform::StatusWindow window, std::size_t size) {
    sweepLost();
    const platform::SharedBlock self = blockMake(counters, sizeof(NetCommand));
    if (self.memory == nullptr) return nullptr;
    auto* const command = ::new (self.memory) NetCommand{};
    command->window = window;
    command->self = self;
    command->owner = &owner;
    command->counters = &counters;
    ++counters.wrappersAllocated;
    if (size == 0 || netDataMake(*command, size)) {
        if (enter(command)) return command;
        ++counters.allocationFailures;
    }
    blocksFree(*command);
    return nullptr;
}

bool netDataMake(NetCommand& command, std::size_t size) {
    command.data = blockMake(*command.counters, size);
    command.capacity = command.data.memory != nullptr ? static_cast<std::uint16_t>(size) : std::uint16_t{0};
    command.block.ncb_buffer = static_cast<unsigned char*>(command.data.memory);
    command.block.ncb_length = command.capacity;
    return command.data.memory != nullptr;
}

void netDataFree(NetCommand& command) {
    blockFree(command.counters, command.data);
    command.data = {};
    command.capacity = 0;
}

void netCommandFree(NetCommand& command) {
    {
        const std::lock_guard lock(commands().mutex);
        commands().all->erase(&command);
    }
    blocksFree(command);
}

unsigned char netCommandIssue(NetCommand& command) {
    command.block.ncb_command |= net::command::kAsynchronous;
    {
        const std::lock_guard lock(commands().mutex);
        command.state = NetCommand::State::issued;
    }
    const unsigned char code = netDriverCall(command.block);
    if (code == 0) return 0;
    // A driver that refuses a command posts nothing; if it has, the message finds nothing that waits for it.
    const std::lock_guard lock(commands().mutex);
    command.state = NetCommand::State::ours;
    return code;
}

void netCommandPost(NetNcb* block) {
    const std::lock_guard lock(commands().mutex);
    NetCommand* const command = find(block, NetCommand::State::issued);
    if (command == nullptr) return;
    command->state = NetCommand::State::posted;
    const auto value = reinterpret_cast<std::uintptr_t>(command);
    if (command->window != 0 ? platform::statusWindowPost(command->window, value) : mailboxPost(commands().box, value))
        return;
    command->state = NetCommand::State::lost;
    ++commands().lost;
}

void netCommandsOrphan(const NetBIOS& owner) {
    {
        const std::lock_guard lock(commands().mutex);
        if (commands().all == nullptr) return;
        for (NetCommand* command : *commands().all) {
            if (command->owner != &owner) continue;
            command->owner = nullptr;
            command->counters = nullptr;
            command->window = 0;
        }
    }
    sweepLost();
}

void netStop() {
    platform::networkStop();
    sweep([](const NetCommand& command) {
        return command.state == NetCommand::State::posted || command.state == NetCommand::State::lost;
    });
}

}  // namespace kora
