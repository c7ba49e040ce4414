#pragma once

#include <list>

#include "platform/posix/netbios/Name.h"

namespace kora::platform::netbios {

/// The longest datagram that is sent or received.
inline constexpr std::size_t kMaxDatagram = 512;

struct KeptDatagram {
    std::uint64_t serial = 0;  ///< counts the datagrams of all names
    std::uint16_t length = 0;
    Name source{};
    std::array<unsigned char, kMaxDatagram> bytes;

    Bytes data() const { return {bytes.data(), length}; }
};

/// Datagrams that wait for a receive: a few for each local name, by its number; 0 is everybody's. No name takes room
/// from another one: some are left over, and nobody receives for them any more.
class Backlog {
public:
    static constexpr std::size_t kMaxPerName = 64;

    /// False when there is no room for it.
    bool keep(std::uint8_t number, const Name& source, Bytes data);
    /// The oldest one for this name; for kAnyNumber, for any name.
    std::optional<KeptDatagram> take(std::uint8_t number);
    void drop(std::uint8_t number) { kept_[number].clear(); }
    void clear() { kept_ = {}; }

private:
    std::array<std::list<KeptDatagram>, 256> kept_;  // oldest first
    std::uint64_t lastSerial_ = 0;
};

}  // namespace kora::platform::netbios
