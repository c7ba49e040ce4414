#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <tuple>

#include "platform/posix/netbios/Packet.h"

namespace {

using namespace kora::platform::netbios;
using namespace std::string_literals;

Name named(std::string_view text) {
    Name name;
    name.fill(' ');
    std::copy(text.begin(), text.end(), name.begin());
    return name;
}

std::vector<unsigned char> bytesOf(const std::string& text) { return {text.begin(), text.end()}; }
std::string textOf(Bytes bytes) { return {bytes.begin(), bytes.end()}; }

auto fields(const NamePacket& p) {
    return std::tuple(p.transaction, p.response, p.opcode, p.authoritative, p.truncated, p.recursionDesired,
                      p.broadcast, p.result, p.hasQuestion, p.question, p.questionType, p.hasRecord, p.record,
                      p.recordType, p.timeToLive, textOf(p.data));
}
auto fields(const Datagram& d) {
    return std::tuple(d.type, d.first, d.more, d.id, d.sourceAddress, d.sourcePort, d.offset, d.source, d.destination,
                      textOf(d.data));
}

/// With the counts of questions, answers and additional records.
std::string header(int flags, int questions, int answers, int additional) {
    std::string text = "\x12\x34";
    for (const int word : {flags, questions, answers, 0, additional})
        text += {static_cast<char>(word >> 8), static_cast<char>(word)};
    return text;
}

const std::string kTheName = " FEEIEFCAEOEFFEECEJEPFDCAEOEBENEF";
const std::string kFred = " EGFCEFEECACACACACACACACACACACACA", kScope = "\7NETBIOS\3COM", kEnd(1, '\0');
const std::string kType = "\0\x20\0\1"s, kRecord = kType + "\0\0\0\7\0\6\x80\0\x0A\0\0\1"s;

TEST(NetPackets, AreThePublishedBytes) {
    const auto address = writeNameAddress({kGroupFlag, 0x0A000001});
    const ScopedName fred{named("FRED"), *Scope::of("NETBIOS.COM")};
    NamePacket packet{0x1234, false, Opcode::registration, false, false,  true, true, 0, true, fred, RecordType::name,
                      true,   fred,  RecordType::name,     7,     address};
    const std::string registration = kFred + kScope + kEnd + kType + "\xC0\x0C" + kRecord;
    EXPECT_EQ(textOf(writeNamePacket(packet)), header(0x2910, 1, 0, 1) + registration);
    packet.response = packet.authoritative = true;
    packet.recursionDesired = packet.broadcast = packet.hasQuestion = false;
    packet.result = kNameActive;
    packet.record = {named("THE NETBIOS NAME"), {}};
    EXPECT_EQ(textOf(writeNamePacket(packet)), header(0xAC06, 0, 1, 0) + kTheName + kEnd + kRecord);

    const Datagram datagram{
        DatagramType::directGroup, true, false, 0x0102, 0x0A000001, 138, 0, fred, packet.record, address};
    EXPECT_EQ(textOf(writeDatagram(datagram)),
              "\x11\2\1\2\x0A\0\0\1\0\x8A\0\x56\0\0"s + kFred + kScope + kEnd + kTheName + kEnd + textOf(address));
}

TEST(NetPackets, ReadNamesThroughPointersThatLeadBack) {
    const std::string ask = header(0x0110, 1, 0, 0), add = header(0x2910, 1, 0, 1), answer = header(0x8400, 0, 1, 0);
    const std::string plain = kFred + kEnd, x(64, 'x');
    const std::string long3 = kFred + '?' + x.substr(1) + '?' + x.substr(1) + '?' + x.substr(1);
    const std::tuple<const char*, std::string, bool> rows[] = {
        {"usual pointer", add + plain + kType + "\xC0\x0C" + kRecord, true},
        {"scope of the other", add + kFred + kScope + kEnd + kType + kFred + "\xC0\x2D" + kRecord, true},
        {"to its own beginning", ask + kFred + "\xC0\x0C" + kType, false},
        {"forward", ask + "\xC0\x0E" + plain + kType, false},
        {"beyond the end", add + plain + kType + "\xFF\xFF" + kRecord, false},
        {"one that leads forth again", header(0xC00E, 0, 1, 0) + kFred + "\xC0\x02" + kRecord, false},
        {"reserved kind of label", ask + kFred + "\x40" + kType, false},
        {"short name", ask + '\x1F' + kFred.substr(2) + kEnd + kType, false},
        {"dot in a label", ask + kFred + "\3a.b" + kEnd + kType, false},
        {"255 bytes", ask + long3 + '\x1C' + x.substr(36) + kEnd + kType, true},
        {"256 bytes", ask + long3 + '\x1D' + x.substr(35) + kEnd + kType, false},
        {"65535 questions", header(0x0110, 65535, 0, 0) + plain + kType, false},
        {"65535 answers, one there", header(0x8400, 0, 65535, 0) + plain + kRecord, true},
        {"a request that answers", header(0x0110, 1, 1, 0) + plain + kType + "\xC0\x0C" + kRecord, false},
        {"another type", ask + plain + "\0\1\0\1"s, false},
        {"longer than any", answer + plain + kType + "\0\0\0\0\4\0"s + std::string(1024, ' '), false},
    };
    for (const char letter : {'@', 'Q', 'e', '\xC1'})
        EXPECT_FALSE(readNamePacket(bytesOf(ask + ' ' + letter + plain.substr(2) + kType))) << letter;
    for (const auto& [what, packet, good] : rows) EXPECT_EQ(readNamePacket(bytesOf(packet)).has_value(), good) << what;
}

TEST(NetPackets, CompareScopesWithoutCase) {
    const std::string a(63, 'a'), longest = a + '.' + a + '.' + a + '.';
    EXPECT_EQ(Scope::of("Korps.Design"), Scope::of("kORPS.dESIGN"));
    for (const std::string& text : {""s, "a"s, "a.b"s, a, longest + a.substr(35)})
        EXPECT_TRUE(Scope::of(text) && Scope::of(text)->text() == text) << text;
    for (const std::string& text : {"."s, ".a"s, "a."s, "a..b"s, a + 'a', longest + a.substr(34)})
        EXPECT_FALSE(Scope::of(text)) << text;
    EXPECT_TRUE(isWildcard({'*'}) && isWildcard(named("*")));
    EXPECT_FALSE(isWildcard(named("*              \1")) || isWildcard(named("*X")) || isWildcard(named("")));
}

// What other systems send is read, and no beginning of it.
TEST(NetPackets, AreReadWholeOrNotAtAll) {
    for (const auto& entry : std::filesystem::directory_iterator(NET_PACKET_CORPUS)) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string text(std::istreambuf_iterator<char>(file), {});
        const bool datagram = text[0] == 0x11 && text[1] == 0x0A;
        const auto reads = [&](const std::vector<unsigned char>& bytes) {
            return datagram ? readDatagram(bytes).has_value() : readNamePacket(bytes).has_value();
        };
        EXPECT_TRUE(reads(bytesOf(text))) << entry;
        EXPECT_NE(reads(bytesOf(text + ' ')), datagram) << entry;  // which says how long it is
        for (std::size_t length = 0; length < text.size(); ++length)
            EXPECT_FALSE(reads(bytesOf(text.substr(0, length)))) << entry << length;
    }
}

TEST(NetPackets, ComeBackAsTheyWereWritten) {
    std::mt19937 random(13);
    const auto any = [&](auto&... fields) { ((fields = static_cast<std::decay_t<decltype(fields)>>(random())), ...); };
    const auto flag = [&](auto&... fields) { ((fields = random() % 2 == 1), ...); };
    const auto name = [&](ScopedName& made) {
        for (unsigned char& c : made.name) any(c);
        made.scope = *Scope::of(std::array{"", "a", "Korps", "korps.design", "x.y.z"}[random() % 5]);
    };
    for (int round = 0; round < 20'000; ++round) {
        std::vector<unsigned char> data(random() % 501);
        for (unsigned char& c : data) any(c);

        Datagram datagram;
        datagram.type = static_cast<DatagramType>(0x10 + random() % 3);
        flag(datagram.first, datagram.more);
        any(datagram.id, datagram.sourceAddress, datagram.sourcePort, datagram.offset);
        name(datagram.source), name(datagram.destination);
        datagram.data = data;
        const auto sent = writeDatagram(datagram);
        const auto received = readDatagram(sent);
        ASSERT_TRUE(received && fields(*received) == fields(datagram)) << "round " << round;

        NamePacket packet;
        any(packet.transaction);
        packet.opcode = static_cast<Opcode>(packet.result = random() % 16);
        flag(packet.response, packet.authoritative, packet.truncated, packet.recursionDesired, packet.broadcast);
        flag(packet.hasQuestion, packet.hasRecord);
        if (packet.hasQuestion) name(packet.question);
        if (packet.hasRecord) {
            if (packet.record = packet.question; random() % 2 || !packet.hasQuestion) name(packet.record);
            if (random() % 2) packet.recordType = RecordType::status;
            any(packet.timeToLive), packet.data = data;
        }
        const auto written = writeNamePacket(packet);
        const auto read = readNamePacket(written);
        ASSERT_TRUE(written.empty() || (read && fields(*read) == fields(packet))) << "round " << round;  // or too long
    }
}

}  // namespace
