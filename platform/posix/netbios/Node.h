#pragma once

#include <condition_variable>
#include <vector>

#include "platform/posix/netbios/Backlog.h"
#include "platform/posix/netbios/CompletionQueue.h"
#include "platform/posix/netbios/NameCache.h"
#include "platform/posix/netbios/NameTable.h"
#include "platform/posix/netbios/Packet.h"
#include "platform/posix/netbios/Status.h"

struct NetNcb;

namespace kora::platform::netbios {

/// Where a packet comes from or goes to, in host order.
struct Endpoint {
    std::uint32_t address = 0;
    std::uint16_t port = 0;
    bool operator==(const Endpoint&) const = default;
};

/// What a node sends with. False when the packet could not be sent.
class Wire {
public:
    virtual ~Wire() = default;
    /// Broadcasts a request of the name service from where its answers are heard.
    virtual bool ask(Bytes packet) = 0;
    virtual bool answer(Bytes packet, const Endpoint& to) = 0;
    /// Sends from the datagram service to that of another node, or of all.
    virtual bool send(Bytes packet, std::uint32_t address) = 0;
    virtual bool broadcast(Bytes packet) = 0;
    /// Hands a datagram to the other nodes on this machine, who share the port on which it came.
    virtual void passOn(Bytes packet) = 0;
    virtual std::uint32_t address() const = 0;
    virtual std::array<unsigned char, 6> hardware() const = 0;
};

/// Somebody who waits for the end of a synchronous command.
struct Waiter {
    bool done = false;
    std::condition_variable changed;
};

/// Whether a command claims a name.
bool claims(unsigned char command);
/// Whether somebody can have this name: none that begins with `*` or NUL.
bool isLegal(const Name& name);

/// Writes how a command ended, where threads may be looking for it: everything else that the command wrote is there
/// before, and the block may be gone afterwards.
void writeCode(NetNcb& block, unsigned char code);
/// Writes why a command is not taken, and answers it.
unsigned char refuse(NetNcb& block, unsigned char code);

/// A broadcast node of NetBIOS (RFC 1001 and 1002): its names, its commands, and what it says to others. It does
/// nothing by itself: commands, packets and the time are brought to it, one at a time. Nothing in it throws once it
/// stands; for want of memory a packet is not sent, or a datagram not kept.
class Node {
public:
    static constexpr std::size_t kMaxCommands = 255;  ///< that wait for others
    static constexpr std::uint8_t kRevision = 3;

    Node(Wire& wire, const Scope& scope, std::uint16_t datagramPort, Time now);

    /// Executes a block: a synchronous command answers its code, or kPending and tells @p waiter once it is done; an
    /// asynchronous one 0 when it was taken, and why not otherwise.
    unsigned char execute(NetNcb& block, Waiter& waiter, Time now);
    /// Both take what came, whatever it is. @p unicast is whether it came to this machine alone.
    void nameReceived(Bytes packet, const Endpoint& from, Time now);
    void datagramReceived(Bytes packet, bool unicast);
    /// Does what is due: requests are repeated, and given up.
    void advance(Time now);
    Time due() const;

    /// Nothing is registered, under way or about to be posted.
    bool isIdle() const { return names_.names().empty() && pending_.empty() && completed_.size() == 0; }
    std::size_t completions() const { return completed_.size(); }
    /// The oldest of completions(), of which there is one.
    Completion takeCompletion() { return completed_.take(); }
    /// Ends every command with code 11, releases every name and takes no more commands.
    void end();

private:
    struct Command {
        NetNcb* block = nullptr;
        Waiter* waiter = nullptr;  // null for an asynchronous one
        unsigned char command = 0;
        std::uint8_t number = 0;  // of the name that it is for
        Name remote{};            // whom it asks for, or what it claims
        std::uint16_t transaction = 0;
        int requests = 0;   // that have been made, and
        bool sent = false;  // whether one of them could be sent
        Time due = kNever;
    };
    /// How a command stands once it was begun.
    struct Outcome {
        enum Kind : std::uint8_t { refused, done, pending } kind;
        unsigned char code = 0;
    };

    // Node.cpp: commands and their ends
    Outcome begin(const Command& command);
    Outcome addName(Command command);
    Outcome deleteName(const NetNcb& block);
    Outcome adapterStatus(Command command);
    Outcome cancel(const NetNcb& block);
    Outcome enumerate(NetNcb& block);
    void reset();
    Outcome pend(Command command);
    void ask(Command& command);
    unsigned char giveUp(Command& command);
    void complete(std::size_t index, unsigned char code);
    void completeNumber(std::uint8_t number, unsigned char code);

    // NodeNames.cpp: the name service
    bool sendClaim(const LocalName& own, Opcode opcode, bool demand, std::uint16_t transaction);
    bool sendQuery(const Name& name, RecordType type, std::uint16_t transaction);
    void nameRequested(const NamePacket& request, const Endpoint& from);
    void nameAnswered(const NamePacket& answer);
    void answerClaim(const NamePacket& request, const Endpoint& from);
    void answerQuery(const NamePacket& request, const Endpoint& from);
    void answerOwn(const LocalName& own, std::uint8_t result, const NamePacket& request, const Endpoint& from);
    void answerStatus(const NamePacket& request, const Endpoint& from);
    bool sendRequest(const NamePacket& packet);
    void sendAnswer(const NamePacket& packet, const Endpoint& to);
    NodeStatus status() const;
    unsigned char writeStatus(NetNcb& block, const NodeStatus& status) const;

    // NodeDatagrams.cpp: the datagram service
    Outcome sendDatagram(Command command);
    Outcome sendBroadcast(const NetNcb& block);
    Outcome receive(Command command);
    unsigned char transmit(const NetNcb& block, const Name& source, const Name& destination, DatagramType type,
                           std::optional<std::uint32_t> address);
    unsigned char transmitTo(const Owner& owner, const NetNcb& block, const Name& source, const Name& destination);
    void ownerFound(const Name& name, const Owner& owner);
    bool handOver(unsigned char receive, std::uint8_t number, const Name& source, Bytes data);
    void deliver(std::uint8_t number, const Name& source, Bytes data);
    bool counted(bool sent);

    Wire& wire_;
    const Scope scope_;
    const std::uint16_t datagramPort_;
    const Time began_;
    Time now_;
    bool ended_ = false;

    NameTable names_;
    NameCache cache_;
    std::vector<Command> pending_;  // oldest first
    CompletionQueue completed_;
    Backlog backlog_;
    bool hearsBroadcasts_ = false;  // once a receive for them has been issued
    Counters counters_;
    std::uint16_t lastTransaction_, lastDatagram_ = 0;
};

}  // namespace kora::platform::netbios
