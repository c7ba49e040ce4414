#pragma once

#include <list>

#include "platform/posix/netbios/Name.h"

namespace kora::platform::netbios {

/// The longest datagram that is sent or received.
inline constexpr std::size_t kMaxDatagram = 512;

struct KeptDatagram {
    std::uint8_t number = 0;  ///< of the local name that it is for; 0 for everybody
    std::uint16_t length = 0;
    Name source{};
    std::array<unsigned char, kMaxDatagram> bytes;

    Bytes data() const { return {bytes.data(), length}; }
};

/// Datagrams that wait for a receive, a few for each name.
class Backlog {
public:
    static constexpr std::size_t kMaxPerName = 64, kMax = 512;

    /// False when there is no room for it.
    bool keep(std::uint8_t number, const Name& source, Bytes data);
    /// The oldest one for this name; for kAnyNumber, for any name.
    std::optional<KeptDatagram> take(std::uint8_t number);
    void drop(std::uint8_t number);
    void clear();

private:
    std::list<KeptDatagram> kept_;  // oldest first
    std::array<std::uint8_t, 256> counts_{};
};

}  // namespace kora::platform::netbios
