#include <algorithm>
#include <cstdlib>

#include "platform/posix/netbios/Packet.h"

namespace {

using namespace kora::platform::netbios;

void require(bool holds) {
    if (!holds) std::abort();
}

void checkName(const ScopedName& name) {
    const auto scope = Scope::of(name.scope.text());
    require(scope && scope->text() == name.scope.text());
}

void checkData(Bytes data, Bytes packet) {
    if (data.empty()) return;
    require(data.data() >= packet.data() && data.data() + data.size() <= packet.data() + packet.size());
}

/// What was written is what is read and written again, and nothing once its last byte is missing.
template <class Packet>
void checkWritten(const std::vector<unsigned char>& written, std::optional<Packet> (*read)(Bytes),
                  std::vector<unsigned char> (*write)(const Packet&)) {
    const std::optional<Packet> again = read(written);
    require(again && write(*again) == written);
    require(!read(Bytes(written).first(written.size() - 1)));
}

void checkNamePacket(Bytes bytes) {
    const std::optional<NamePacket> packet = readNamePacket(bytes);
    if (!packet) return;
    checkName(packet->question);
    checkName(packet->record);
    checkData(packet->data, bytes);
    const std::vector<unsigned char> written = writeNamePacket(*packet);
    // Names that were pointers may be too long when they are written out.
    if (written.empty()) return require(bytes.size() + 2 * 255 > kMaxNamePacket);
    // The header says what it said, but for the bits that mean nothing here.
    require(std::equal(written.begin(), written.begin() + 3, bytes.begin()));
    require(written[3] == (bytes[3] & 0x1F));
    require(std::equal(packet->data.rbegin(), packet->data.rend(), written.rbegin()));
    checkWritten(written, readNamePacket, writeNamePacket);
}

void checkDatagram(Bytes bytes) {
    const std::optional<Datagram> datagram = readDatagram(bytes);
    if (!datagram) return;
    checkName(datagram->source);
    checkName(datagram->destination);
    checkData(datagram->data, bytes);
    const std::vector<unsigned char> written = writeDatagram(*datagram);
    if (written.empty()) return require(bytes.size() + 2 * 255 > kMaxPacket);
    require(written[0] == bytes[0] && written[1] == (bytes[1] & 0x03));
    require(std::equal(written.begin() + 2, written.begin() + 10, bytes.begin() + 2));
    require(std::equal(written.begin() + 12, written.begin() + 14, bytes.begin() + 12));
    require(std::equal(datagram->data.rbegin(), datagram->data.rend(), written.rbegin()));
    checkWritten(written, readDatagram, writeDatagram);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const Bytes bytes(data, size);
    checkNamePacket(bytes);
    checkDatagram(bytes);
    if (const auto address = readNameAddress(bytes))
        require(std::ranges::equal(writeNameAddress(*address), bytes.first(6)));
    return 0;
}
