#include <kora/Net.h>

#include <algorithm>
#include <new>

#include "platform/NetbiosCodes.h"
#include "platform/posix/netbios/Node.h"

namespace kora::platform::netbios {

namespace {

/// Where the data of an answer's record begins: behind the header, the name and the record's own fields.
std::size_t beforeData(const Scope& scope) {
    constexpr std::size_t kHeader = 12, kRecord = 10, kName = 34;
    return kHeader + kRecord + kName + (scope.text().empty() ? 0 : scope.text().size() + 1);
}

std::uint16_t flagsOf(const LocalName& own) { return own.group ? kGroupFlag : std::uint16_t{0}; }

}  // namespace

// ---- saying ----------------------------------------------------------------------------------------------------

bool Node::counted(bool sent) {
    ++(sent ? counters_.packetsSent : counters_.sendErrors);
    return sent;
}

bool Node::sendRequest(const NamePacket& packet) {
    try {
        return counted(wire_.ask(writeNamePacket(packet)));
    } catch (const std::bad_alloc&) {
        return counted(false);
    }
}

void Node::sendAnswer(const NamePacket& packet, const Endpoint& to) {
    try {
        counted(wire_.answer(writeNamePacket(packet), to));
    } catch (const std::bad_alloc&) {
        counted(false);
    }
}

/// Says something about a name of our own to everybody. A demand is not answered.
bool Node::sendClaim(const LocalName& own, Opcode opcode, bool demand, std::uint16_t transaction) {
    const auto data = writeNameAddress({flagsOf(own), wire_.address()});
    NamePacket packet;
    packet.transaction = transaction;
    packet.opcode = opcode;
    packet.recursionDesired = !demand;
    packet.broadcast = true;
    packet.hasQuestion = packet.hasRecord = true;
    packet.question = packet.record = {own.name, scope_};
    packet.data = data;
    return sendRequest(packet);
}

bool Node::sendQuery(const Name& name, RecordType type, std::uint16_t transaction) {
    NamePacket packet;
    packet.transaction = transaction;
    packet.recursionDesired = type == RecordType::name;
    packet.broadcast = true;
    packet.hasQuestion = true;
    packet.question = {name, scope_};
    packet.questionType = type;
    return sendRequest(packet);
}

// ---- hearing ---------------------------------------------------------------------------------------------------

void Node::nameReceived(Bytes bytes, const Endpoint& from, Time now) {
    now_ = now;
    ++counters_.packetsReceived;
    const std::optional<NamePacket> packet = readNamePacket(bytes);
    if (!packet) {
        ++counters_.receiveErrors;
    } else if (packet->response) {
        nameAnswered(*packet);
    } else {
        nameRequested(*packet, from);
    }
}

/// What others say about names that are registered here (releases, conflicts, demands) changes nothing: anybody could.
void Node::nameRequested(const NamePacket& request, const Endpoint& from) {
    if (!request.hasQuestion || !(request.question.scope == scope_)) return;
    if (request.opcode == Opcode::registration)
        answerClaim(request, from);
    else if (request.opcode == Opcode::query && request.questionType == RecordType::name)
        answerQuery(request, from);
    else if (request.opcode == Opcode::query)
        answerStatus(request, from);
}

void Node::answerClaim(const NamePacket& request, const Endpoint& from) {
    const std::optional<NameAddress> claim = request.hasRecord ? readNameAddress(request.data) : std::nullopt;
    // Names that are just being claimed count: of two that want the same one, nobody shall get it twice.
    const LocalName* own = names_.find(request.question.name);
    if (!claim || !own || !request.recursionDesired) return;
    if (!own->group || (claim->flags & kGroupFlag) == 0) answerOwn(*own, kNameActive, request, from);
}

void Node::answerQuery(const NamePacket& request, const Endpoint& from) {
    if (const LocalName* own = names_.registered(request.question.name)) answerOwn(*own, 0, request, from);
}

/// Tells who asks for a name of our own, or claims it, whose it is.
void Node::answerOwn(const LocalName& own, std::uint8_t result, const NamePacket& request, const Endpoint& from) {
    const auto data = writeNameAddress({flagsOf(own), wire_.address()});
    NamePacket answer;
    answer.transaction = request.transaction;
    answer.response = answer.authoritative = answer.recursionDesired = true;
    answer.opcode = request.opcode;
    answer.result = result;
    answer.hasRecord = true;
    answer.record = request.question;
    answer.data = data;
    sendAnswer(answer, from);
}

void Node::answerStatus(const NamePacket& request, const Endpoint& from) {
    if (!isWildcard(request.question.name) && !names_.registered(request.question.name)) return;
    try {
        bool whole;
        const auto data = writeNodeStatus(status(), kMaxNamePacket - beforeData(scope_), whole);
        NamePacket answer;
        answer.transaction = request.transaction;
        answer.response = answer.authoritative = true;
        answer.truncated = !whole;
        answer.hasRecord = true;
        answer.record = request.question;
        answer.recordType = RecordType::status;
        answer.data = data;
        sendAnswer(answer, from);
    } catch (const std::bad_alloc&) {
        counted(false);
    }
}

void Node::nameAnswered(const NamePacket& answer) {
    if (!answer.hasRecord || !(answer.record.scope == scope_)) return;
    const bool onClaim = answer.opcode == Opcode::registration && answer.result != 0;
    const bool onQuery = answer.opcode == Opcode::query && answer.result == 0;
    const bool onStatus = onQuery && answer.recordType == RecordType::status;
    // Who demands that a name be given up has heard of the claim, and has a transaction of his own.
    const bool conflict = onClaim && answer.result == kNameConflict;
    const auto found = std::ranges::find_if(pending_, [&](const Command& pending) {
        if (pending.requests == 0 || pending.remote != answer.record.name) return false;
        if (claims(pending.command)) return onClaim && (conflict || pending.transaction == answer.transaction);
        return onQuery && onStatus == (pending.command == command::kAdapterStatus) &&
               pending.transaction == answer.transaction;
    });
    if (found == pending_.end()) return;
    const auto index = static_cast<std::size_t>(found - pending_.begin());
    if (onClaim) {
        complete(index, code::kNameInUse);
    } else if (onStatus) {
        if (const std::optional<NodeStatus> remote = readNodeStatus(answer.data))
            complete(index, writeStatus(*found->block, *remote));
    } else if (const std::optional<NameAddress> owner = readNameAddress(answer.data)) {
        ownerFound(answer.record.name, {(owner->flags & kGroupFlag) != 0, owner->address});
    }
}

// ---- status ----------------------------------------------------------------------------------------------------

NodeStatus Node::status() const {
    constexpr Time kMinute = 60'000;
    NodeStatus status;
    status.hardware = wire_.hardware();
    status.major = kRevision;
    status.minutes = static_cast<std::uint16_t>((now_ - began_) / kMinute);
    status.counters = counters_;
    status.freeBlocks = static_cast<std::uint16_t>(kMaxCommands - pending_.size());
    status.maxBlocks = kMaxCommands;
    for (const LocalName& own : names_.names()) {
        const unsigned flags = (own.group ? kGroupName : 0u) | (own.registered ? kRegisteredName : 0u);
        status.names[status.nameCount++] = {own.name, own.number, static_cast<std::uint8_t>(flags)};
    }
    return status;
}

unsigned char Node::writeStatus(NetNcb& block, const NodeStatus& status) const {
    bool whole;
    block.ncb_length =
        static_cast<unsigned short>(writeAdapterStatus(status, {block.ncb_buffer, block.ncb_length}, whole));
    return whole ? code::kGood : code::kIncomplete;
}

}  // namespace kora::platform::netbios
