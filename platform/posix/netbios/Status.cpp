#include "platform/posix/netbios/Status.h"

#include <algorithm>

#include "platform/posix/netbios/Backlog.h"

namespace kora::platform::netbios {

namespace {

constexpr std::size_t kNodeName = 18, kStatistics = 46;
constexpr unsigned char kEthernet = 0xFE;

// Where the values stand in the published record, which is little-endian, and in the network's statistics, which are
// not. What this node has nothing for (sessions, aborts, timeouts) is zero.
namespace record {
constexpr std::size_t kHardware = 0, kMajor = 6, kType = 8, kMinor = 9, kMinutes = 10, kPacketsReceived = 12,
                      kPacketsSent = 14, kReceiveErrors = 16, kSent = 20, kReceived = 24, kSendErrors = 28, kLost = 30,
                      kFreeBlocks = 40, kConfiguredBlocks = 42, kMaxBlocks = 44, kMaxDatagram = 48, kNameCount = 58;
}
namespace statistics {
constexpr std::size_t kHardware = 0, kMajor = 8, kMinor = 9, kMinutes = 10, kReceiveErrors = 12, kSent = 20,
                      kReceived = 24, kLost = 30, kFreeBlocks = 32, kConfiguredBlocks = 34, kMaxBlocks = 36;
}

template <typename Value>
void putLittle(unsigned char* to, Value value) {
    for (std::size_t i = 0; i < sizeof value; ++i) to[i] = static_cast<unsigned char>(value >> 8 * i & 0xFF);
}

template <typename Value>
void putBig(unsigned char* to, Value value) {
    for (std::size_t i = 0; i < sizeof value; ++i)
        to[i] = static_cast<unsigned char>(value >> 8 * (sizeof value - 1 - i) & 0xFF);
}

std::uint16_t word(const unsigned char* from) { return static_cast<std::uint16_t>(from[0] << 8 | from[1]); }
std::uint32_t doubleWord(const unsigned char* from) { return std::uint32_t{word(from)} << 16 | word(from + 2); }

}  // namespace

std::size_t writeAdapterStatus(const NodeStatus& status, std::span<unsigned char> buffer, bool& whole) {
    const std::size_t count =
        std::min<std::size_t>(status.nameCount, (buffer.size() - kAdapterStatusSize) / kAdapterStatusNameSize);
    whole = count == status.nameCount || buffer.size() >= kUsualAdapterStatusSize;
    unsigned char* const to = buffer.data();
    std::fill_n(to, kAdapterStatusSize, static_cast<unsigned char>(0));
    std::ranges::copy(status.hardware, to + record::kHardware);
    to[record::kMajor] = status.major;
    to[record::kType] = kEthernet;
    to[record::kMinor] = status.minor;
    putLittle(to + record::kMinutes, status.minutes);
    putLittle(to + record::kPacketsReceived, status.counters.packetsReceived);
    putLittle(to + record::kPacketsSent, status.counters.packetsSent);
    putLittle(to + record::kReceiveErrors, status.counters.receiveErrors);
    putLittle(to + record::kSent, status.counters.datagramsSent);
    putLittle(to + record::kReceived, status.counters.datagramsReceived);
    putLittle(to + record::kSendErrors, status.counters.sendErrors);
    putLittle(to + record::kLost, status.counters.datagramsLost);
    putLittle(to + record::kFreeBlocks, status.freeBlocks);
    putLittle(to + record::kConfiguredBlocks, status.maxBlocks);
    putLittle(to + record::kMaxBlocks, status.maxBlocks);
    putLittle(to + record::kMaxDatagram, static_cast<std::uint16_t>(kMaxDatagram));
    // The names that are there, not all that there are: who reads them looks no further than this.
    putLittle(to + record::kNameCount, static_cast<std::uint16_t>(count));
    unsigned char* next = to + kAdapterStatusSize;
    for (std::size_t i = 0; i < count; ++i) {
        const StatusName& name = status.names[i];
        next = std::ranges::copy(name.name, next).out;
        *next++ = name.number;
        *next++ = name.flags;
    }
    return static_cast<std::size_t>(next - to);
}

std::vector<unsigned char> writeNodeStatus(const NodeStatus& status, std::size_t room, bool& whole) {
    const std::size_t count = std::min<std::size_t>(status.nameCount, (room - 1 - kStatistics) / kNodeName);
    whole = count == status.nameCount;
    std::vector<unsigned char> data(1 + count * kNodeName + kStatistics);
    data[0] = static_cast<unsigned char>(count);
    unsigned char* next = data.data() + 1;
    for (std::size_t i = 0; i < count; ++i) {
        next = std::ranges::copy(status.names[i].name, next).out;
        *next++ = status.names[i].flags;
        *next++ = 0;
    }
    std::ranges::copy(status.hardware, next + statistics::kHardware);
    next[statistics::kMajor] = status.major;
    next[statistics::kMinor] = status.minor;
    putBig(next + statistics::kMinutes, status.minutes);
    putBig(next + statistics::kReceiveErrors, status.counters.receiveErrors);
    putBig(next + statistics::kSent, status.counters.datagramsSent);
    putBig(next + statistics::kReceived, status.counters.datagramsReceived);
    putBig(next + statistics::kLost, status.counters.datagramsLost);
    putBig(next + statistics::kFreeBlocks, status.freeBlocks);
    putBig(next + statistics::kConfiguredBlocks, status.maxBlocks);
    putBig(next + statistics::kMaxBlocks, status.maxBlocks);
    return data;
}

std::optional<NodeStatus> readNodeStatus(Bytes data) {
    if (data.empty()) return std::nullopt;
    const std::size_t count = data[0];
    if (data.size() - 1 < count * kNodeName) return std::nullopt;
    NodeStatus status;
    const unsigned char* next = data.data() + 1;
    for (; status.nameCount < count; next += kNodeName) {
        StatusName& name = status.names[status.nameCount++];
        std::copy_n(next, name.name.size(), name.name.begin());
        name.flags = next[name.name.size()] & (kGroupName | kRegisteredName);
    }
    std::array<unsigned char, kStatistics> read{};
    const std::size_t left = data.size() - 1 - count * kNodeName;
    std::copy_n(next, std::min(left, read.size()), read.begin());
    std::copy_n(read.data() + statistics::kHardware, status.hardware.size(), status.hardware.begin());
    status.major = read[statistics::kMajor];
    status.minor = read[statistics::kMinor];
    status.minutes = word(read.data() + statistics::kMinutes);
    status.counters.receiveErrors = word(read.data() + statistics::kReceiveErrors);
    status.counters.datagramsSent = doubleWord(read.data() + statistics::kSent);
    status.counters.datagramsReceived = doubleWord(read.data() + statistics::kReceived);
    status.counters.datagramsLost = word(read.data() + statistics::kLost);
    status.freeBlocks = word(read.data() + statistics::kFreeBlocks);
    status.maxBlocks = word(read.data() + statistics::kMaxBlocks);
    return status;
}

}  // namespace kora::platform::netbios
