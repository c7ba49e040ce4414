#pragma once

#include "platform/Platform.h"
#include "platform/posix/netbios/Interface.h"
#include "platform/posix/netbios/Socket.h"

namespace kora::platform::netbios {

/// A node's way to the network: one interface, and the sockets that send and receive over it. The interface may go
/// and come back with another address; nothing can be sent meanwhile.
class Link final : public Wire {
public:
    enum Channel : std::uint8_t { names, answers, datagrams };
    static constexpr std::size_t kChannels = 3;

    /// Answers 0, or the return code that says why there is no way.
    unsigned char open(const NetworkSettings& settings);
    int descriptor(Channel channel) const { return sockets_[channel].descriptor(); }
    /// Takes the next packet of a channel, if there is one; @p arrival is empty for one that is none of ours.
    bool receive(Channel channel, Arrival& arrival);

    bool ask(Bytes packet) override;
    bool answer(Bytes packet, const Endpoint& to) override;
    bool send(Bytes packet, std::uint32_t address) override;
    bool broadcast(Bytes packet) override;
    void passOn(Bytes packet) override;
    std::uint32_t address() const override { return interface_.address; }
    std::array<unsigned char, 6> hardware() const override { return interface_.hardware; }

private:
    bool sendFrom(Channel channel, Bytes packet, const Endpoint& to);
    bool sendToAll(Channel channel, Bytes packet, std::uint16_t port);
    bool isOurs(Channel channel, const Arrival& arrival);
    bool lookAgain();

    std::array<Socket, kChannels> sockets_;
    Interface interface_;
    bool present_ = false;
    std::optional<std::uint32_t> broadcastAddress_;  // instead of the interface's
    Time nextLook_ = 0;
    std::array<unsigned char, kMaxPacket + 1> buffer_;  // so that a longer packet shows
};

/// Milliseconds of the clock that never goes back.
Time now();

}  // namespace kora::platform::netbios
