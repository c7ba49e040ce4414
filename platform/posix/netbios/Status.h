#pragma once

#include <vector>

#include "platform/posix/netbios/Name.h"

namespace kora::platform::netbios {

/// What a node has done so far; the shorter ones count 16 bits around, as they are shown.
struct Counters {
    std::uint16_t packetsReceived = 0, packetsSent = 0;  ///< of both services
    std::uint16_t receiveErrors = 0;                     ///< packets that made no sense
    std::uint16_t sendErrors = 0;
    std::uint32_t datagramsSent = 0, datagramsReceived = 0;
    std::uint16_t datagramsLost = 0;  ///< nobody was there to receive them
};

/// Flags of a name: as in the published status record and, one byte higher, on the network.
inline constexpr std::uint8_t kGroupName = 0x80, kRegisteredName = 0x04;

struct StatusName {
    Name name{};
    std::uint8_t number = 0;  ///< not told on the network
    std::uint8_t flags = 0;
};

/// What a node says about itself, to its own programs and to others.
struct NodeStatus {
    std::array<unsigned char, 6> hardware{};
    std::uint8_t major = 0, minor = 0;  ///< of the interface's revision
    std::uint16_t minutes = 0;          ///< since it began
    Counters counters;
    std::uint16_t freeBlocks = 0, maxBlocks = 0;
    std::array<StatusName, 255> names;
    std::uint8_t nameCount = 0;
};

/// The published record (ADAPTER_STATUS) with as many names as there is room for behind it.
inline constexpr std::size_t kAdapterStatusSize = 60, kAdapterStatusNameSize = 18;
/// With sixteen names, which is what callers have room for: to them that is the whole record.
inline constexpr std::size_t kUsualAdapterStatusSize = kAdapterStatusSize + 16 * kAdapterStatusNameSize;
/// Fills @p buffer, which has room for the record at least, and answers how many bytes that took; @p whole is whether
/// every name is there, or as many as usual.
std::size_t writeAdapterStatus(const NodeStatus& status, std::span<unsigned char> buffer, bool& whole);

/// The data of a node status answer (RFC 1002, 4.2.18), @p room bytes at most; @p whole is whether every name is there.
std::vector<unsigned char> writeNodeStatus(const NodeStatus& status, std::size_t room, bool& whole);
/// Nothing when the names are cut off. Statistics that are cut off are zero: other systems send fewer of them.
std::optional<NodeStatus> readNodeStatus(Bytes data);

}  // namespace kora::platform::netbios
