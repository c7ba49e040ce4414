#include "platform/posix/netbios/Socket.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cstring>

namespace kora::platform::netbios {

namespace {

constexpr int kReceiveBuffer = 1 << 20;
constexpr timeval kLongestSend = {0, 100'000};  // a full queue empties sooner, or not at all

sockaddr_in socketAddress(const Endpoint& endpoint) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(endpoint.port);
    address.sin_addr.s_addr = htonl(endpoint.address);
    return address;
}

struct ControlBuffer {
    alignas(cmsghdr) unsigned char bytes[CMSG_SPACE(sizeof(in_pktinfo))] = {};
};

template <typename Value>
bool setOption(int descriptor, int level, int option, const Value& value) {
    return setsockopt(descriptor, level, option, &value, sizeof value) == 0;
}

}  // namespace

int Socket::open(std::uint16_t port) {
    descriptor_.emplace(posix::aboveStandardStreams(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)));
    if (!*descriptor_) return errno;
    const int made = descriptor_->get(), on = 1;
    if ((port != 0 && !setOption(made, SOL_SOCKET, SO_REUSEADDR, on)) ||
        !setOption(made, SOL_SOCKET, SO_BROADCAST, on) || !setOption(made, IPPROTO_IP, IP_PKTINFO, on) ||
        !setOption(made, SOL_SOCKET, SO_SNDTIMEO, kLongestSend))
        return errno;
    // The system may allow less than asked for, and more to those with the privilege.
    if (!setOption(made, SOL_SOCKET, SO_RCVBUFFORCE, kReceiveBuffer))
        setOption(made, SOL_SOCKET, SO_RCVBUF, kReceiveBuffer);
    sockaddr_in address = socketAddress({INADDR_ANY, port});
    socklen_t length = sizeof address;
    if (bind(made, reinterpret_cast<const sockaddr*>(&address), length) != 0) return errno;
    if (getsockname(made, reinterpret_cast<sockaddr*>(&address), &length) != 0) return errno;
    port_ = ntohs(address.sin_port);
    return 0;
}

bool Socket::send(Bytes packet, const Endpoint& to, unsigned interface, std::uint32_t from) const {
    if (packet.empty()) return false;
    sockaddr_in address = socketAddress(to);
    iovec data = {const_cast<unsigned char*>(packet.data()), packet.size()};
    ControlBuffer control;
    msghdr message = {};
    message.msg_name = &address;
    message.msg_namelen = sizeof address;
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = control.bytes;
    message.msg_controllen = sizeof control.bytes;

    in_pktinfo over = {};
    over.ipi_ifindex = static_cast<int>(interface);
    over.ipi_spec_dst.s_addr = htonl(from);
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = IPPROTO_IP;
    header->cmsg_type = IP_PKTINFO;
    header->cmsg_len = CMSG_LEN(sizeof over);
    std::memcpy(CMSG_DATA(header), &over, sizeof over);

    ssize_t sent;
    do sent = sendmsg(descriptor_->get(), &message, MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(packet.size());
}

bool Socket::receive(std::span<unsigned char> buffer, Arrival& arrival) const {
    sockaddr_in address = {};
    iovec data = {buffer.data(), buffer.size()};
    ControlBuffer control;
    msghdr message = {};
    message.msg_name = &address;
    message.msg_namelen = sizeof address;
    message.msg_iov = &data;
    message.msg_iovlen = 1;
    message.msg_control = control.bytes;
    message.msg_controllen = sizeof control.bytes;
    const ssize_t length = recvmsg(descriptor_->get(), &message, MSG_DONTWAIT);
    if (length < 0) return false;

    arrival = {};
    arrival.packet = {buffer.data(), static_cast<std::size_t>(length)};
    arrival.from = {ntohl(address.sin_addr.s_addr), ntohs(address.sin_port)};
    for (cmsghdr* header = CMSG_FIRSTHDR(&message); header; header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level != IPPROTO_IP || header->cmsg_type != IP_PKTINFO) continue;
        in_pktinfo over;
        std::memcpy(&over, CMSG_DATA(header), sizeof over);
        arrival.interface = static_cast<unsigned>(over.ipi_ifindex);
        // What was sent to everybody is taken in under an address of the interface, and names another.
        arrival.unicast = over.ipi_addr.s_addr == over.ipi_spec_dst.s_addr;
    }
    return true;
}

}  // namespace kora::platform::netbios
