#include "platform/posix/netbios/Node.h"

#include <kora/Net.h>

#include <algorithm>
#include <atomic>

#include "platform/NetbiosCodes.h"

namespace kora::platform::netbios {

namespace {

constexpr int kRequests = 3;
constexpr Time kBetweenRequests = 250;

/// The commands that may wait for others.
bool mayPend(unsigned char command) {
    return claims(command) || command == command::kSendDatagram || command == command::kReceiveDatagram ||
           command == command::kReceiveBroadcast || command == command::kAdapterStatus;
}

bool isCancellable(unsigned char command) { return !claims(command) && command != command::kSendDatagram; }

}  // namespace

bool claims(unsigned char command) { return command == command::kAddName || command == command::kAddGroupName; }

bool isLegal(const Name& name) { return name[0] != '*' && name[0] != 0; }

void writeCode(NetNcb& block, unsigned char code) {
    std::atomic_ref(block.ncb_retcode).store(code, std::memory_order_release);
    std::atomic_ref(block.ncb_cmd_cplt).store(code, std::memory_order_release);
}

unsigned char refuse(NetNcb& block, unsigned char code) {
    writeCode(block, code);
    return code;
}

Node::Node(Wire& wire, const Scope& scope, std::uint16_t datagramPort, Time now)
    : wire_(wire),
      scope_(scope),
      datagramPort_(datagramPort),
      began_(now),
      now_(now),
      lastTransaction_(static_cast<std::uint16_t>(now)) {
    pending_.reserve(kMaxCommands);
}

// ---- beginning -------------------------------------------------------------------------------------------------

unsigned char Node::execute(NetNcb& block, Waiter& waiter, Time now) {
    now_ = now;
    const bool asynchronous = (block.ncb_command & command::kAsynchronous) != 0;
    Command command;
    command.block = &block;
    command.waiter = asynchronous ? nullptr : &waiter;
    command.command = block.ncb_command & static_cast<unsigned char>(~command::kAsynchronous);
    command.number = block.ncb_num;
    std::ranges::copy(block.ncb_callname, command.remote.begin());

    const Outcome outcome = begin(command);
    switch (outcome.kind) {
        case Outcome::refused:
            break;
        case Outcome::done:
            if (!asynchronous) break;
            writeCode(block, code::kPending);
            completed_.put({&block, outcome.code});
            return code::kGood;
        case Outcome::pending:
            writeCode(block, code::kPending);
            return asynchronous ? code::kGood : code::kPending;
    }
    return refuse(block, outcome.code);
}

Node::Outcome Node::begin(const Command& command) {
    NetNcb& block = *command.block;
    if (block.ncb_lana_num != 0) return {Outcome::refused, code::kIllegalAdapter};
    if (ended_) return {Outcome::refused, code::kCancelled};
    // A burst of datagrams ends faster than it is posted, which is no reason to refuse some of them.
    const bool noRoom = !command.waiter && pending_.size() + completed_.size() >= CompletionQueue::kRoom;
    if (noRoom || (mayPend(command.command) && pending_.size() >= kMaxCommands))
        return {Outcome::refused, code::kTooManyCommands};
    switch (command.command) {
        case command::kReset:
            reset();
            return {Outcome::done};
        case command::kAddName:
        case command::kAddGroupName:
            return addName(command);
        case command::kDeleteName:
            return deleteName(block);
        case command::kSendDatagram:
            return sendDatagram(command);
        case command::kSendBroadcast:
            return sendBroadcast(block);
        case command::kReceiveDatagram:
        case command::kReceiveBroadcast:
            return receive(command);
        case command::kAdapterStatus:
            return adapterStatus(command);
        case command::kCancel:
            return cancel(block);
        case command::kEnumerate:
            return enumerate(block);
        default:
            return {Outcome::refused, code::kIllegalCommand};
    }
}

Node::Outcome Node::addName(Command command) {
    Name& name = command.remote;
    std::ranges::copy(command.block->ncb_name, name.begin());
    if (!isLegal(name)) return {Outcome::refused, code::kNameNotFound};
    if (names_.find(name)) return {Outcome::refused, code::kDuplicateName};
    const LocalName* own = names_.add(name, command.command == command::kAddGroupName);
    if (!own) return {Outcome::refused, code::kTableFull};
    command.number = own->number;
    return pend(command);
}

Node::Outcome Node::deleteName(const NetNcb& block) {
    Name name;
    std::ranges::copy(block.ncb_name, name.begin());
    const LocalName* found = names_.find(name);
    if (!found) return {Outcome::refused, code::kNameNotFound};
    const LocalName own = *found;
    names_.remove(own.number);
    backlog_.drop(own.number);
    completeNumber(own.number, code::kNameDeleted);
    sendClaim(own, Opcode::release, /*demand=*/true, ++lastTransaction_);
    return {Outcome::done};
}

Node::Outcome Node::adapterStatus(Command command) {
    NetNcb& block = *command.block;
    if (!block.ncb_buffer || block.ncb_length < kAdapterStatusSize) return {Outcome::refused, code::kIllegalLength};
    if (isWildcard(command.remote) || names_.registered(command.remote))
        return {Outcome::done, writeStatus(block, status())};
    if (!isLegal(command.remote)) return {Outcome::refused, code::kNameNotFound};
    command.number = 0;
    return pend(command);
}

Node::Outcome Node::cancel(const NetNcb& block) {
    const auto* target = reinterpret_cast<const NetNcb*>(block.ncb_buffer);
    if (target == &block) return {Outcome::refused, code::kNotCancellable};
    // Where the block is not known, nothing may be there any more.
    for (std::size_t i = 0; i < pending_.size(); ++i) {
        if (pending_[i].block != target) continue;
        if (!isCancellable(pending_[i].command)) return {Outcome::refused, code::kNotCancellable};
        complete(i, code::kCancelled);
        return {Outcome::done};
    }
    return {Outcome::refused, code::kCompletedMeanwhile};
}

Node::Outcome Node::enumerate(NetNcb& block) {
    constexpr unsigned char adapters[] = {1, 0};  // how many, and their numbers
    if (!block.ncb_buffer || block.ncb_length < sizeof adapters) return {Outcome::refused, code::kIllegalLength};
    std::ranges::copy(adapters, block.ncb_buffer);
    block.ncb_length = sizeof adapters;
    return {Outcome::done};
}

void Node::reset() {
    while (!pending_.empty()) complete(0, code::kCancelled);
    while (!names_.names().empty()) {
        const LocalName own = names_.names().back();
        names_.remove(own.number);
        sendClaim(own, Opcode::release, /*demand=*/true, ++lastTransaction_);
    }
    cache_.clear();
    backlog_.clear();
    hearsBroadcasts_ = false;
}

void Node::end() {
    reset();
    ended_ = true;
}

// ---- under way -------------------------------------------------------------------------------------------------

Node::Outcome Node::pend(Command command) {
    const bool receives = command.command == command::kReceiveDatagram || command.command == command::kReceiveBroadcast;
    if (!receives) {
        command.transaction = ++lastTransaction_;
        ask(command);
    }
    pending_.push_back(command);
    return {Outcome::pending};
}

/// Makes the next request of a command that asks others.
void Node::ask(Command& command) {
    ++command.requests;
    command.due = now_ + kBetweenRequests;
    if (claims(command.command))
        command.sent |=
            sendClaim(*names_.find(command.number), Opcode::registration, /*demand=*/false, command.transaction);
    else
        command.sent |= sendQuery(command.remote,
                                  command.command == command::kAdapterStatus ? RecordType::status : RecordType::name,
                                  command.transaction);
}

/// How a command ends to whose requests nobody has said anything.
unsigned char Node::giveUp(Command& command) {
    if (!claims(command.command)) {
        if (!command.sent) return code::kNoCarrier;
        return command.command == command::kAdapterStatus ? code::kTimedOut : code::kNoAnswer;
    }
    LocalName& own = *names_.find(command.number);
    command.sent |= sendClaim(own, Opcode::registration, /*demand=*/true, command.transaction);
    if (!command.sent) return code::kNoCarrier;
    own.registered = true;
    command.block->ncb_num = own.number;
    return code::kGood;
}

void Node::advance(Time now) {
    now_ = now;
    for (std::size_t i = 0; i < pending_.size();) {
        Command& command = pending_[i];
        if (command.due > now) {
            ++i;
        } else if (command.requests < kRequests) {
            ask(command);
            ++i;
        } else {
            complete(i, giveUp(command));
        }
    }
}

Time Node::due() const {
    Time first = kNever;
    for (const Command& command : pending_) first = std::min(first, command.due);
    return first;
}

// ---- ends ------------------------------------------------------------------------------------------------------

void Node::complete(std::size_t index, unsigned char code) {
    const Command command = pending_[index];
    pending_.erase(pending_.begin() + static_cast<std::ptrdiff_t>(index));
    if (claims(command.command) && code != code::kGood) names_.remove(command.number);
    if (!command.waiter) return completed_.put({command.block, code});
    writeCode(*command.block, code);
    command.waiter->done = true;
    command.waiter->changed.notify_all();
}

void Node::completeNumber(std::uint8_t number, unsigned char code) {
    for (std::size_t i = 0; i < pending_.size();) {
        if (pending_[i].number == number)
            complete(i, code);
        else
            ++i;
    }
}

}  // namespace kora::platform::netbios
