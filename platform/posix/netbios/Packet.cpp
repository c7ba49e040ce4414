#include "platform/posix/netbios/Packet.h"

#include <algorithm>
#include <utility>

namespace kora::platform::netbios {

namespace {

constexpr std::size_t kEncodedName = 32;    // two letters A to P for each byte of a name
constexpr unsigned char kLabelKind = 0xC0;  // the two bits that tell a label's length from a pointer
constexpr std::size_t kNameHeader = 12;     // also where the question's name stands
constexpr std::uint16_t kInternet = 1;      // the only class

namespace flag {
constexpr std::uint16_t kResponse = 0x8000, kAuthoritative = 0x0400, kTruncated = 0x0200, kRecursionDesired = 0x0100,
                        kBroadcast = 0x0010;
constexpr int kOpcodeShift = 11;
constexpr std::uint16_t kFourBits = 0x000F;           // of the opcode, and of the result at the end
constexpr unsigned char kMore = 0x01, kFirst = 0x02;  // of a datagram
}  // namespace flag

/// Takes a packet apart from its beginning. What is not there reads as zero and makes it failed() for good.
class Reader {
public:
    explicit Reader(Bytes packet) : packet_(packet) {}

    bool failed() const { return failed_; }
    std::size_t left() const { return packet_.size() - at_; }

    Bytes bytes(std::size_t count) {
        if (count > left()) return fail(), Bytes();
        at_ += count;
        return packet_.subspan(at_ - count, count);
    }
    unsigned char byte() {
        const Bytes read = bytes(1);
        return failed_ ? 0 : read[0];
    }
    std::uint16_t word() {
        const Bytes read = bytes(2);
        return failed_ ? std::uint16_t{0} : static_cast<std::uint16_t>(read[0] << 8 | read[1]);
    }
    std::uint32_t doubleWord() {
        const std::uint32_t high = word();
        return high << 16 | word();
    }
    ScopedName name();

private:
    void fail() {
        failed_ = true;
        at_ = packet_.size();
    }
    static bool decode(Bytes label, Name& name);

    Bytes packet_;
    std::size_t at_ = 0;
    bool failed_ = false;
};

bool Reader::decode(Bytes label, Name& name) {
    if (label.size() != kEncodedName) return false;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const int high = label[2 * i] - 'A', low = label[2 * i + 1] - 'A';
        if (high < 0 || high > 15 || low < 0 || low > 15) return false;
        name[i] = static_cast<unsigned char>(high << 4 | low);
    }
    return true;
}

ScopedName Reader::name() {
    ScopedName result;
    std::array<char, Scope::kMaxLength> scope;
    std::size_t scopeLength = 0, behind = 0;  // where the packet goes on, once a pointer has led away
    // Every pointer leads before the place that the last one led to, so there is an end to them.
    std::size_t start = at_;
    for (bool first = true;;) {
        const unsigned char head = byte();
        if ((head & kLabelKind) == kLabelKind) {
            const std::size_t target = static_cast<std::size_t>(head & ~kLabelKind) << 8 | byte();
            if (failed_ || target >= start) return fail(), result;
            if (behind == 0) behind = at_;
            start = at_ = target;
            continue;
        }
        if ((head & kLabelKind) != 0) fail();
        const Bytes label = bytes(head);
        if (failed_) return result;
        if (first) {
            if (!decode(label, result.name)) return fail(), result;
            first = false;
            continue;
        }
        if (label.empty()) break;
        const std::size_t dot = scopeLength > 0 ? 1 : 0;
        // A dot within a label would read as two labels.
        if (scopeLength + dot + label.size() > scope.size() ||
            std::find(label.begin(), label.end(), '.') != label.end())
            return fail(), result;
        if (dot) scope[scopeLength++] = '.';
        for (const unsigned char c : label) scope[scopeLength++] = static_cast<char>(c);
    }
    if (behind != 0) at_ = behind;
    const std::optional<Scope> read = Scope::of({scope.data(), scopeLength});
    if (!read) return fail(), result;
    result.scope = *read;
    return result;
}

class Writer {
public:
    Writer() { bytes_.reserve(kMaxPacket); }

    void byte(unsigned value) { bytes_.push_back(static_cast<unsigned char>(value)); }
    void word(unsigned value) {
        byte(value >> 8 & 0xFF);
        byte(value & 0xFF);
    }
    void doubleWord(std::uint32_t value) {
        word(value >> 16);
        word(value & 0xFFFF);
    }
    void bytes(Bytes data) { bytes_.insert(bytes_.end(), data.begin(), data.end()); }
    void name(const ScopedName& name);

    /// What was written; nothing when that is more than @p limit.
    std::vector<unsigned char> take(std::size_t limit) {
        if (bytes_.size() > limit) bytes_.clear();
        return std::move(bytes_);
    }

private:
    std::vector<unsigned char> bytes_;
};

void Writer::name(const ScopedName& name) {
    byte(kEncodedName);
    for (const unsigned char c : name.name) {
        byte('A' + (c >> 4));
        byte('A' + (c & 15));
    }
    for (std::string_view rest = name.scope.text(); !rest.empty();) {
        const std::string_view label = rest.substr(0, rest.find('.'));
        byte(static_cast<unsigned>(label.size()));
        for (const char c : label) byte(static_cast<unsigned char>(c));
        rest.remove_prefix(std::min(rest.size(), label.size() + 1));
    }
    byte(0);
}

bool isOfOurs(RecordType type, std::uint16_t recordClass) {
    return (type == RecordType::name || type == RecordType::status) && recordClass == kInternet;
}

/// What cannot fit whatever else the packet holds is not even copied.
bool fits(Bytes data) { return data.size() <= kMaxPacket; }

}  // namespace

std::optional<NamePacket> readNamePacket(Bytes bytes) {
    if (bytes.size() > kMaxPacket) return std::nullopt;
    Reader reader(bytes);
    NamePacket packet;
    packet.transaction = reader.word();
    const std::uint16_t flags = reader.word();
    packet.response = (flags & flag::kResponse) != 0;
    packet.opcode = static_cast<Opcode>(flags >> flag::kOpcodeShift & flag::kFourBits);
    packet.authoritative = (flags & flag::kAuthoritative) != 0;
    packet.truncated = (flags & flag::kTruncated) != 0;
    packet.recursionDesired = (flags & flag::kRecursionDesired) != 0;
    packet.broadcast = (flags & flag::kBroadcast) != 0;
    packet.result = flags & flag::kFourBits;

    const std::uint16_t questions = reader.word(), answers = reader.word(), authorities = reader.word(),
                        additional = reader.word();
    // There is one question at most, and a request answers nothing.
    if (questions > 1 || (!packet.response && (answers > 0 || authorities > 0))) return std::nullopt;
    packet.hasQuestion = questions > 0;
    packet.hasRecord = (packet.response ? answers : additional) > 0;
    if (packet.hasQuestion) {
        packet.question = reader.name();
        packet.questionType = static_cast<RecordType>(reader.word());
        if (!isOfOurs(packet.questionType, reader.word())) return std::nullopt;
    }
    if (packet.hasRecord) {
        packet.record = reader.name();
        packet.recordType = static_cast<RecordType>(reader.word());
        if (!isOfOurs(packet.recordType, reader.word())) return std::nullopt;
        packet.timeToLive = reader.doubleWord();
        packet.data = reader.bytes(reader.word());
    }
    if (reader.failed()) return std::nullopt;
    return packet;
}

std::vector<unsigned char> writeNamePacket(const NamePacket& packet) {
    if (!fits(packet.data)) return {};
    Writer writer;
    writer.word(packet.transaction);
    writer.word((packet.response ? flag::kResponse : 0u) |
                (static_cast<unsigned>(packet.opcode) & flag::kFourBits) << flag::kOpcodeShift |
                (packet.authoritative ? flag::kAuthoritative : 0u) | (packet.truncated ? flag::kTruncated : 0u) |
                (packet.recursionDesired ? flag::kRecursionDesired : 0u) | (packet.broadcast ? flag::kBroadcast : 0u) |
                (packet.result & flag::kFourBits));
    writer.word(packet.hasQuestion);
    writer.word(packet.hasRecord && packet.response);
    writer.word(0);
    writer.word(packet.hasRecord && !packet.response);
    if (packet.hasQuestion) {
        writer.name(packet.question);
        writer.word(static_cast<unsigned>(packet.questionType));
        writer.word(kInternet);
    }
    if (packet.hasRecord) {
        if (packet.hasQuestion && packet.record == packet.question)
            writer.word(kLabelKind << 8 | kNameHeader);
        else
            writer.name(packet.record);
        writer.word(static_cast<unsigned>(packet.recordType));
        writer.word(kInternet);
        writer.doubleWord(packet.timeToLive);
        writer.word(static_cast<unsigned>(packet.data.size()));
        writer.bytes(packet.data);
    }
    return writer.take(kMaxNamePacket);
}

std::optional<NameAddress> readNameAddress(Bytes data) {
    Reader reader(data);
    NameAddress address;
    address.flags = reader.word();
    address.address = reader.doubleWord();
    if (reader.failed()) return std::nullopt;
    return address;
}

std::array<unsigned char, 6> writeNameAddress(const NameAddress& address) {
    const auto byte = [](std::uint32_t value, int shift) { return static_cast<unsigned char>(value >> shift & 0xFF); };
    return {byte(address.flags, 8),    byte(address.flags, 0),   byte(address.address, 24),
            byte(address.address, 16), byte(address.address, 8), byte(address.address, 0)};
}

std::optional<Datagram> readDatagram(Bytes packet) {
    if (packet.size() > kMaxPacket) return std::nullopt;
    Reader reader(packet);
    Datagram datagram;
    const unsigned char type = reader.byte(), flags = reader.byte();
    datagram.type = static_cast<DatagramType>(type);
    if (type < static_cast<unsigned char>(DatagramType::directUnique) ||
        type > static_cast<unsigned char>(DatagramType::broadcast))
        return std::nullopt;
    datagram.first = (flags & flag::kFirst) != 0;
    datagram.more = (flags & flag::kMore) != 0;
    datagram.id = reader.word();
    datagram.sourceAddress = reader.doubleWord();
    datagram.sourcePort = reader.word();
    const std::uint16_t length = reader.word();
    datagram.offset = reader.word();
    if (length != reader.left()) return std::nullopt;
    datagram.source = reader.name();
    datagram.destination = reader.name();
    datagram.data = reader.bytes(reader.left());
    if (reader.failed()) return std::nullopt;
    return datagram;
}

std::vector<unsigned char> writeDatagram(const Datagram& datagram) {
    if (!fits(datagram.data)) return {};
    Writer names;
    names.name(datagram.source);
    names.name(datagram.destination);
    const std::vector<unsigned char> named = names.take(kMaxPacket);

    Writer writer;
    writer.byte(static_cast<unsigned>(datagram.type));
    writer.byte((datagram.first ? flag::kFirst : 0u) | (datagram.more ? flag::kMore : 0u));
    writer.word(datagram.id);
    writer.doubleWord(datagram.sourceAddress);
    writer.word(datagram.sourcePort);
    writer.word(static_cast<unsigned>(named.size() + datagram.data.size()));
    writer.word(datagram.offset);
    writer.bytes(named);
    writer.bytes(datagram.data);
    return writer.take(kMaxPacket);
}

}  // namespace kora::platform::netbios
