#include "platform/posix/netbios/Interface.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netpacket/packet.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace kora::platform::netbios {

namespace {

struct FreeAddresses {
    void operator()(ifaddrs* first) const { freeifaddrs(first); }
};

/// What the system says of an interface's address; 0 for one that is not of IPv4.
std::uint32_t addressIn(const sockaddr* address) {
    if (!address || address->sa_family != AF_INET) return 0;
    sockaddr_in internet;
    std::memcpy(&internet, address, sizeof internet);
    return ntohl(internet.sin_addr.s_addr);
}

Interface describe(const ifaddrs& entry) {
    Interface found;
    found.name = entry.ifa_name;
    found.index = if_nametoindex(entry.ifa_name);
    found.address = addressIn(entry.ifa_addr);
    if ((entry.ifa_flags & IFF_BROADCAST) != 0) found.broadcast = addressIn(entry.ifa_broadaddr);
    if (found.broadcast == 0) found.broadcast = found.address | ~addressIn(entry.ifa_netmask);
    return found;
}

}  // namespace

std::optional<Interface> findInterface(const std::string& name) {
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0) return std::nullopt;
    const std::unique_ptr<ifaddrs, FreeAddresses> first(list);

    std::optional<Interface> best;
    for (const ifaddrs* entry = list; entry; entry = entry->ifa_next) {
        constexpr unsigned kNeeded = IFF_UP | IFF_BROADCAST;
        if (addressIn(entry->ifa_addr) == 0) continue;
        if (name.empty() ? (entry->ifa_flags & kNeeded) != kNeeded : name != entry->ifa_name) continue;
        const Interface found = describe(*entry);
        if (found.index != 0 && (!best || found.index < best->index)) best = found;
    }
    if (!best) return std::nullopt;

    for (const ifaddrs* entry = list; entry; entry = entry->ifa_next) {
        if (!entry->ifa_addr || entry->ifa_addr->sa_family != AF_PACKET) continue;
        sockaddr_ll link;
        std::memcpy(&link, entry->ifa_addr, sizeof link);
        const unsigned index = static_cast<unsigned>(link.sll_ifindex);
        if ((entry->ifa_flags & IFF_LOOPBACK) != 0) best->loopback = index;
        if (index != best->index) continue;
        const std::size_t length = std::min<std::size_t>(link.sll_halen, best->hardware.size());
        std::copy_n(link.sll_addr, length, best->hardware.begin());
    }
    return best;
}

}  // namespace kora::platform::netbios
