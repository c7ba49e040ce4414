#include "platform/posix/netbios/Link.h"

#include <arpa/inet.h>

#include <chrono>
#include <exception>

#include "platform/NetbiosCodes.h"

namespace kora::platform::netbios {

namespace {

constexpr Time kBetweenLooks = 1'000;
constexpr std::uint32_t kThisMachine = 0x7F000001, kAllOfThisMachine = 0x7FFFFFFF;

unsigned char codeOf(int error) {
    switch (error) {
        case 0:
            return code::kGood;
        case EADDRINUSE:
            return code::kInterfaceBusy;
        case EMFILE:
        case ENFILE:
        case ENOMEM:
        case ENOBUFS:
            return code::kNoResource;
        default:
            return code::kSystemRefuses;
    }
}

}  // namespace

Time now() {
    using namespace std::chrono;
    return static_cast<Time>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

unsigned char Link::open(const NetworkSettings& settings) {
    if (settings.namePort == 0 || settings.datagramPort == 0 || settings.namePort == settings.datagramPort)
        return code::kSystemRefuses;
    if (!settings.broadcast.empty()) {
        in_addr address;
        if (inet_pton(AF_INET, settings.broadcast.c_str(), &address) != 1) return code::kSystemRefuses;
        broadcastAddress_ = ntohl(address.s_addr);
    }
    const std::optional<Interface> found = findInterface(settings.device);
    if (!found) return code::kNoCarrier;
    interface_ = *found;
    present_ = true;
    nextLook_ = now() + kBetweenLooks;

    constexpr std::uint16_t kOwnPort = 0;
    const std::array<std::uint16_t, kChannels> ports = {settings.namePort, kOwnPort, settings.datagramPort};
    for (std::size_t i = 0; i < kChannels; ++i) {
        if (const int error = sockets_[i].open(ports[i])) return codeOf(error);
    }
    return code::kGood;
}

/// Finds out where the interface is now, if that is not known well enough; false when there was no time for it yet.
bool Link::lookAgain() {
    const Time time = now();
    if (time < nextLook_) return false;
    nextLook_ = time + kBetweenLooks;
    try {
        const std::optional<Interface> found = findInterface(interface_.name);
        present_ = found.has_value();
        if (found) interface_ = *found;
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

// ---- sending ---------------------------------------------------------------------------------------------------

bool Link::sendFrom(Channel channel, Bytes packet, const Endpoint& to) {
    const Socket& socket = sockets_[channel];
    if (isLoopback(to.address) && !isLoopback(interface_.address))
        return socket.send(packet, to, interface_.loopback, kThisMachine);
    if (present_ && socket.send(packet, to, interface_.index, interface_.address)) return true;
    return lookAgain() && present_ && socket.send(packet, to, interface_.index, interface_.address);
}

bool Link::sendToAll(Channel channel, Bytes packet, std::uint16_t port) {
    const auto all = [&] { return Endpoint{broadcastAddress_.value_or(interface_.broadcast), port}; };
    const Endpoint before = all();
    return sendFrom(channel, packet, before) || (all() != before && sendFrom(channel, packet, all()));
}

bool Link::ask(Bytes packet) { return sendToAll(answers, packet, sockets_[names].port()); }
bool Link::answer(Bytes packet, const Endpoint& to) { return sendFrom(names, packet, to); }
bool Link::send(Bytes packet, std::uint32_t address) {
    return sendFrom(datagrams, packet, {address, sockets_[datagrams].port()});
}
bool Link::broadcast(Bytes packet) { return sendToAll(datagrams, packet, sockets_[datagrams].port()); }

void Link::passOn(Bytes packet) {
    const Socket& socket = sockets_[datagrams];
    if (interface_.loopback != 0)
        socket.send(packet, {kAllOfThisMachine, socket.port()}, interface_.loopback, kThisMachine);
}

// ---- receiving -------------------------------------------------------------------------------------------------

bool Link::receive(Channel channel, Arrival& arrival) {
    if (!sockets_[channel].receive(buffer_, arrival)) return false;
    if (!isOurs(channel, arrival)) arrival = {};
    return true;
}

bool Link::isOurs(Channel channel, const Arrival& arrival) {
    const auto expected = [&] {
        return arrival.interface == interface_.index || arrival.interface == interface_.loopback;
    };
    if (!expected() && !(lookAgain() && expected())) return false;
    // What this node asks everybody comes back to it.
    return channel != names || arrival.from != Endpoint{interface_.address, sockets_[answers].port()};
}

}  // namespace kora::platform::netbios
