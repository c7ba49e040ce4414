#pragma once

#include <vector>

#include "platform/posix/netbios/Name.h"

/// Packets of the NetBIOS name and datagram services (RFC 1002, chapter 4), read and written. What is read comes from
/// anybody: readers look at nothing beyond the bytes they are given, follow a name's pointers a bounded way backwards
/// only, allocate nothing, and answer nothing for a packet that is not whole.
namespace kora::platform::netbios {

/// No packet is longer than this; what is on the network may be, and is not looked at. The longest is a datagram of 512
/// bytes with long scopes, in one piece, as stations on Windows send it.
inline constexpr std::size_t kMaxPacket = 14 + 2 * 255 + 512;
/// None of the name service's that is written; others have no room for more.
inline constexpr std::size_t kMaxNamePacket = 576;

// ---- name service ----------------------------------------------------------------------------------------------

enum class Opcode : std::uint8_t { query = 0, registration = 5, release = 6, wait = 7, refresh = 8 };
enum class RecordType : std::uint16_t { name = 0x20, status = 0x21 };

/// Result codes of name service answers that a broadcast node meets.
inline constexpr std::uint8_t kNameActive = 6;    ///< another node owns it
inline constexpr std::uint8_t kNameConflict = 7;  ///< it is owned twice

/// Flags of a name in the data of a name record: G, and the node type B (0).
inline constexpr std::uint16_t kGroupFlag = 0x8000;

struct NamePacket {
    std::uint16_t transaction = 0;
    bool response = false;
    Opcode opcode = Opcode::query;
    bool authoritative = false;
    bool truncated = false;
    bool recursionDesired = false;
    bool broadcast = false;
    std::uint8_t result = 0;

    bool hasQuestion = false;
    ScopedName question;
    RecordType questionType = RecordType::name;

    /// The first answer record; of a request the first additional one.
    bool hasRecord = false;
    ScopedName record;
    RecordType recordType = RecordType::name;
    std::uint32_t timeToLive = 0;
    Bytes data;  ///< of the record; lies in the packet that was read
};

/// Nothing when the packet is cut off, contradicts itself, or has a question or record of another type or class.
std::optional<NamePacket> readNamePacket(Bytes packet);
/// The bytes to send: the question where there is one, and the record where there is one (in a request behind the
/// question as additional record). Empty when they are more than kMaxNamePacket.
std::vector<unsigned char> writeNamePacket(const NamePacket& packet);

/// The data of a name record: flags and address, for the first address in it. Addresses are in host order.
struct NameAddress {
    std::uint16_t flags = 0;
    std::uint32_t address = 0;
};
std::optional<NameAddress> readNameAddress(Bytes data);
std::array<unsigned char, 6> writeNameAddress(const NameAddress& address);

// ---- datagram service ------------------------------------------------------------------------------------------

enum class DatagramType : std::uint8_t { directUnique = 0x10, directGroup = 0x11, broadcast = 0x12 };

struct Datagram {
    DatagramType type = DatagramType::directGroup;
    bool first = true;  ///< the first fragment
    bool more = false;  ///< fragments follow
    std::uint16_t id = 0;
    std::uint32_t sourceAddress = 0;  ///< in host order
    std::uint16_t sourcePort = 0;
    std::uint16_t offset = 0;  ///< of this fragment
    ScopedName source, destination;
    Bytes data;  ///< lies in the packet that was read
};

/// Nothing for anything but a whole direct or broadcast datagram; a fragment is read as it is.
std::optional<Datagram> readDatagram(Bytes packet);
/// Empty when it is longer than kMaxPacket.
std::vector<unsigned char> writeDatagram(const Datagram& datagram);

}  // namespace kora::platform::netbios
