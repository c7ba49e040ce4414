#include <kora/Net.h>

#include <algorithm>
#include <new>

#include "platform/NetbiosCodes.h"
#include "platform/posix/netbios/Node.h"

namespace kora::platform::netbios {

namespace {

constexpr std::uint8_t kBroadcasts = 0;  // in place of a name's number

Name everybody() { return {'*'}; }

bool isShort(const NetNcb& block) { return block.ncb_length > 0 && !block.ncb_buffer; }

/// Hands a datagram to a receive, as much of it as there is room for.
unsigned char fill(NetNcb& block, const Name& source, Bytes data) {
    const std::size_t length = std::min<std::size_t>(block.ncb_length, data.size());
    std::copy_n(data.begin(), length, block.ncb_buffer);
    std::ranges::copy(source, block.ncb_callname);
    block.ncb_length = static_cast<unsigned short>(length);
    return length < data.size() ? code::kIncomplete : code::kGood;
}

/// Whether a datagram can be sent to who claims to be there: no group of addresses, and the loopback only from itself.
bool isHost(std::uint32_t address, std::uint32_t own) {
    constexpr std::uint32_t kLoopback = 127, kGroups = 224;
    const std::uint32_t net = address >> 24;
    return net > 0 && net < kGroups && (net == kLoopback) == (own >> 24 == kLoopback);
}

}  // namespace

// ---- sending ---------------------------------------------------------------------------------------------------

Node::Outcome Node::sendDatagram(Command command) {
    const NetNcb& block = *command.block;
    if (block.ncb_length > kMaxDatagram || isShort(block)) return {Outcome::refused, code::kIllegalLength};
    const LocalName* source = names_.registered(command.number);
    if (!source) return {Outcome::refused, code::kIllegalNumber};
    if (!isLegal(command.remote)) return {Outcome::refused, code::kNameNotFound};
    // The group's members on this machine and this node itself hear what is broadcast.
    std::optional<Owner> owner;
    if (const LocalName* own = names_.registered(command.remote))
        owner = {own->group, wire_.address()};
    else
        owner = cache_.find(command.remote, now_);
    if (!owner) return pend(command);
    return {Outcome::done, transmitTo(*owner, block, source->name, command.remote)};
}

Node::Outcome Node::sendBroadcast(const NetNcb& block) {
    if (block.ncb_length > kMaxDatagram || isShort(block)) return {Outcome::refused, code::kIllegalLength};
    const LocalName* source = names_.registered(block.ncb_num);
    if (!source) return {Outcome::refused, code::kIllegalNumber};
    return {Outcome::done, transmit(block, source->name, everybody(), DatagramType::broadcast, std::nullopt)};
}

unsigned char Node::transmitTo(const Owner& owner, const NetNcb& block, const Name& source, const Name& destination) {
    if (owner.group) return transmit(block, source, destination, DatagramType::directGroup, std::nullopt);
    // Of the nodes on one machine only one would hear what is sent to it alone.
    const bool here = owner.address == wire_.address();
    return transmit(block, source, destination, DatagramType::directUnique,
                    here ? std::nullopt : std::optional(owner.address));
}

/// Sends a block's data to one address, or to all.
unsigned char Node::transmit(const NetNcb& block, const Name& source, const Name& destination, DatagramType type,
                             std::optional<std::uint32_t> address) {
    Datagram datagram;
    datagram.type = type;
    datagram.id = ++lastDatagram_;
    datagram.sourceAddress = wire_.address();
    datagram.sourcePort = datagramPort_;
    datagram.source = {source, scope_};
    datagram.destination = {destination, scope_};
    datagram.data = {block.ncb_buffer, block.ncb_length};
    try {
        const auto packet = writeDatagram(datagram);
        if (!counted(address ? wire_.send(packet, *address) : wire_.broadcast(packet))) return code::kNoCarrier;
    } catch (const std::bad_alloc&) {
        counted(false);
        return code::kNoResource;
    }
    ++counters_.datagramsSent;
    return code::kGood;
}

void Node::ownerFound(const Name& name, const Owner& owner) {
    if (!owner.group && !isHost(owner.address, wire_.address())) return;
    cache_.put(name, owner, now_);
    for (std::size_t i = 0; i < pending_.size();) {
        const Command& command = pending_[i];
        if (command.command != command::kSendDatagram || command.remote != name) {
            ++i;
            continue;
        }
        // Deleting the name would have ended the command.
        const LocalName& source = *names_.registered(command.number);
        complete(i, transmitTo(owner, *command.block, source.name, name));
    }
}

// ---- receiving -------------------------------------------------------------------------------------------------

Node::Outcome Node::receive(Command command) {
    NetNcb& block = *command.block;
    if (isShort(block)) return {Outcome::refused, code::kIllegalLength};
    if (command.number != kAnyNumber && !names_.registered(command.number))
        return {Outcome::refused, code::kIllegalNumber};
    const std::uint8_t wanted = command.command == command::kReceiveBroadcast ? kBroadcasts : command.number;
    if (wanted == kBroadcasts) hearsBroadcasts_ = true;
    if (const std::optional<KeptDatagram> kept = backlog_.take(wanted))
        return {Outcome::done, fill(block, kept->source, kept->data())};
    return pend(command);
}

void Node::datagramReceived(Bytes packet, bool unicast) {
    ++counters_.packetsReceived;
    const std::optional<Datagram> datagram = readDatagram(packet);
    const bool fragment = datagram && (!datagram->first || datagram->more || datagram->offset != 0);
    if (!datagram || fragment || datagram->data.size() > kMaxDatagram) {
        ++counters_.receiveErrors;
        return;
    }
    if (!(datagram->source.scope == scope_ && datagram->destination.scope == scope_)) return;
    if (datagram->type == DatagramType::broadcast)
        deliver(kBroadcasts, datagram->source.name, datagram->data);
    else if (const LocalName* own = names_.registered(datagram->destination.name))
        deliver(own->number, datagram->source.name, datagram->data);
    else if (datagram->type == DatagramType::directUnique && unicast)
        wire_.passOn(packet);
}

/// Hands a datagram to the oldest receive of that kind for a name; false when none waits. Receives of broadcasts are
/// for no name.
bool Node::handOver(unsigned char receive, std::uint8_t number, const Name& source, Bytes data) {
    const auto found = std::ranges::find_if(pending_, [=](const Command& pending) {
        return pending.command == receive && (pending.number == number || receive == command::kReceiveBroadcast);
    });
    if (found == pending_.end()) return false;
    complete(static_cast<std::size_t>(found - pending_.begin()), fill(*found->block, source, data));
    return true;
}

/// To a receive for the name, else to one for any name; a broadcast, to everybody who waits for one. Otherwise the
/// datagram is kept, since who has just registered the name issues its first receive a little later.
void Node::deliver(std::uint8_t number, const Name& source, Bytes data) {
    bool taken = false;
    if (number == kBroadcasts) {
        while (handOver(command::kReceiveBroadcast, number, source, data)) taken = true;
    } else {
        taken = handOver(command::kReceiveDatagram, number, source, data) ||
                handOver(command::kReceiveDatagram, kAnyNumber, source, data);
    }
    const bool expected = number != kBroadcasts || hearsBroadcasts_;
    if (taken || (expected && backlog_.keep(number, source, data)))
        ++counters_.datagramsReceived;
    else
        ++counters_.datagramsLost;
}

}  // namespace kora::platform::netbios
