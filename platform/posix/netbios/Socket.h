#pragma once

#include <optional>

#include "platform/posix/Handles.h"
#include "platform/posix/netbios/Node.h"

namespace kora::platform::netbios {

/// A packet as it came in.
struct Arrival {
    Bytes packet;  ///< lies in the buffer that it was read into
    Endpoint from;
    unsigned interface = 0;  ///< the index of the one that it came in over
    bool unicast = false;    ///< it was sent to this machine alone
};

/// A UDP socket that knows over which interface packets come and go.
class Socket {
public:
    /// Binds it to @p port of all addresses, which other programs may share; 0 is a port of its own. Answers 0 or the
    /// system's number for what went wrong.
    int open(std::uint16_t port);
    int descriptor() const { return descriptor_ ? descriptor_->get() : -1; }
    std::uint16_t port() const { return port_; }

    /// Sends over an interface, from an address of it.
    bool send(Bytes packet, const Endpoint& to, unsigned interface, std::uint32_t from) const;
    /// Takes the next packet, if there is one. What is longer than @p buffer is cut.
    bool receive(std::span<unsigned char> buffer, Arrival& arrival) const;

private:
    std::optional<posix::Descriptor> descriptor_;
    std::uint16_t port_ = 0;
};

}  // namespace kora::platform::netbios
