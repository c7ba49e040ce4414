#include <gtest/gtest.h>

#include <deque>
#include <list>
#include <random>

#include "platform/posix/netbios/Node.h"
#include "tests/platform/posix/NetBlock.h"

namespace {

using namespace kora::platform::netbios;

constexpr std::uint16_t kAskingPort = 50'000;

/// Nodes that are wired together in memory, with a clock that tests move.
class NetNode : public testing::Test {
protected:
    struct Packet {
        std::vector<unsigned char> bytes;
        bool datagram;
        Endpoint from, to;  // address 0 is everybody
    };
    struct Station : Wire {
        Station(NetNode& owner, std::uint32_t at, const char* scope)
            : test(owner), here(at), node(*this, *Scope::of(scope), 138, owner.time) {}
        bool ask(Bytes packet) override { return ++requests, go(packet, false, kAskingPort, {}); }
        bool answer(Bytes packet, const Endpoint& to) override { return go(packet, false, 137, to); }
        bool send(Bytes packet, std::uint32_t to) override { return go(packet, true, 138, {to, 138}); }
        bool broadcast(Bytes packet) override { return go(packet, true, 138, {}); }
        void passOn(Bytes) override {}
        std::uint32_t address() const override { return here; }
        std::array<unsigned char, 6> hardware() const override { return {2, 0, 0, 0, 0, 9}; }
        bool go(Bytes packet, bool datagram, std::uint16_t port, const Endpoint& to) {
            if (plugged) test.onTheWay.push_back({{packet.begin(), packet.end()}, datagram, {here, port}, to});
            return plugged;
        }
        void hear(const Packet& packet) {
            if (packet.to.address != 0 && packet.to.address != here) return;
            if (packet.datagram) return node.datagramReceived(packet.bytes, packet.to.address != 0);
            if (packet.from != Endpoint{here, kAskingPort}) node.nameReceived(packet.bytes, packet.from, test.time);
        }
        NetNode& test;
        std::uint32_t here;
        Node node;
        bool plugged = true;
        int requests = 0;
    };

    Station& station(const char* scope = "") {
        return stations.emplace_back(*this, static_cast<std::uint32_t>(0x0A000001 + stations.size()), scope);
    }
    /// Everything that is on its way arrives, and what has completed is posted.
    void settle() {
        for (; !onTheWay.empty(); onTheWay.pop_front())
            for (Station& each : stations) each.hear(onTheWay.front());
        for (Station& each : stations)
            for (; each.node.completions() > 0; writeCode(*last.block, last.code)) last = each.node.takeCompletion();
    }
    void pass(Time milliseconds) {
        for (const Time end = time + milliseconds; time < end; settle())
            for (time += 50; Station & each : stations) each.node.advance(time);
    }
    /// Executes a block and answers its code as it stands when everything said at once has been heard.
    unsigned char run(Station& at, auto&& block, bool heard = true) {
        Waiter nobody;
        block.ncb_command |= command::kAsynchronous;
        const unsigned char refused = at.node.execute(block, nobody, time);
        EXPECT_EQ(block.ncb_cmd_cplt, refused == 0 ? code::kPending : refused);
        if (heard) settle();
        return block.ncb_cmd_cplt;
    }
    unsigned char add(Station& at, const std::string& name, unsigned char command = command::kAddGroupName) {
        NetBlock adding(command, name);
        EXPECT_EQ(run(at, adding), code::kPending);
        pass(750);
        EXPECT_EQ(adding.ncb_retcode, code::kGood);
        return adding.ncb_num;
    }

    Time time = 1'000'000;
    std::list<Station> stations;
    std::deque<Packet> onTheWay;
    Completion last{};
};

TEST_F(NetNode, CommandsAnswerWithThePublishedCodes) {
    Station &here = station(), &there = station();
    const unsigned char own = add(here, "OWN", command::kAddName), group = add(here, "GROUP"), gone = 200;
    add(there, "THERE", command::kAddName);
    EXPECT_EQ(there.requests, 4);  // three requests and the demand
    add(there, "SHARED");
    add(station("else.where"), "ELSEWHERE", command::kAddName);
    NetBlock noBuffer(command::kSendDatagram, "GROUP", own, 5);
    noBuffer.ncb_buffer = nullptr;
    struct {
        NetBlock block;
        unsigned char code;
    } rows[] = {
        {{0x7F}, code::kIllegalCommand},
        {{command::kEnumerate}, code::kGood},
        {{command::kEnumerate, "", 0, 1}, code::kIllegalLength},
        // names
        {{command::kAddName, "OWN"}, code::kDuplicateName},
        {{command::kAddGroupName, "*OWN"}, code::kNameNotFound},
        {{command::kAddName, std::string(1, '\0')}, code::kNameNotFound},
        {{command::kDeleteName, "THERE"}, code::kNameNotFound},
        {{command::kAddName, "THERE"}, code::kNameInUse},
        {{command::kAddGroupName, "THERE"}, code::kNameInUse},
        {{command::kAddName, "SHARED"}, code::kNameInUse},
        {{command::kAddGroupName, "SHARED"}, code::kGood},
        {{command::kAddName, "ELSEWHERE"}, code::kGood},
        // datagrams
        {{command::kSendDatagram, "GROUP", own, 512}, code::kGood},
        {{command::kSendDatagram, "GROUP", own, 513}, code::kIllegalLength},
        {noBuffer, code::kIllegalLength},
        {{command::kSendDatagram, "GROUP", gone}, code::kIllegalNumber},
        {{command::kSendDatagram, "*", own}, code::kNameNotFound},
        {{command::kSendDatagram, "THERE", own}, code::kGood},
        {{command::kSendDatagram, "NOBODY", own}, code::kNoAnswer},
        {{command::kSendBroadcast, "", gone}, code::kIllegalNumber},
        {{command::kSendBroadcast, "", own}, code::kGood},
        {{command::kReceiveDatagram, "", gone}, code::kIllegalNumber},
        {{command::kReceiveDatagram, "", group}, code::kGood},  // what was sent above
        // status
        {{command::kAdapterStatus, "*", 0, 59}, code::kIllegalLength},
        {{command::kAdapterStatus, "*", 0, 60 + 71}, code::kIncomplete},
        {{command::kAdapterStatus, "*", 0, 60 + 72}, code::kGood},
        {{command::kAdapterStatus, "THERE", 0, 60 + 36}, code::kGood},
        {{command::kAdapterStatus, "NOBODY"}, code::kTimedOut},
    };
    for (auto& [block, expected] : rows) {
        SCOPED_TRACE(testing::Message() << "command " << int{block.ncb_command} << ", " << block.ncb_length);
        run(here, block);
        pass(750);
        EXPECT_EQ(block.ncb_retcode, expected);
    }
    const int asked = here.requests;
    EXPECT_EQ(run(here, netSending("again", "THERE", own)), code::kGood);
    EXPECT_EQ(here.requests, asked);  // the answer is remembered

    // Of two that claim a name at the same time, both never get it.
    NetBlock mine(command::kAddName, "WANTED"), yours(mine);
    run(here, mine, /*heard=*/false);
    run(there, yours);
    pass(750);
    EXPECT_FALSE(mine.ncb_retcode == code::kGood && yours.ncb_retcode == code::kGood);

    // How commands end that others end.
    NetBlock first(command::kReceiveDatagram, "", group), second(first), adding(command::kAddName, "NEW");
    NetBlock broadcasts(command::kReceiveBroadcast, "", own);
    for (NetBlock* block : {&first, &second, &adding, &broadcasts}) EXPECT_EQ(run(here, *block), code::kPending);
    EXPECT_EQ(run(here, netCancelling(first)), code::kGood);
    EXPECT_EQ(run(here, netCancelling(first)), code::kCompletedMeanwhile);
    EXPECT_EQ(run(here, netCancelling(adding)), code::kNotCancellable);
    for (const char* name : {"GROUP", "NEW"}) EXPECT_EQ(run(here, NetBlock(command::kDeleteName, name)), code::kGood);
    EXPECT_EQ(run(here, NetBlock(command::kReset)), code::kGood);
    const NetBlock* const ended[] = {&first, &broadcasts, &second, &adding};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(ended[i]->ncb_cmd_cplt, i < 2 ? code::kCancelled : code::kNameDeleted);
    EXPECT_TRUE(here.node.isIdle());
    const unsigned char number = add(here, "BURST");
    std::list<NetBlock> burst;  // goes out before anything of it is posted
    for (int i = 0; i < 1'000; ++i)
        EXPECT_EQ(run(here, burst.emplace_back(netSending("", "BURST", number)), false), code::kPending);
    settle();
    for (const NetBlock& block : burst) EXPECT_EQ(block.ncb_cmd_cplt, code::kGood);
    EXPECT_EQ(run(here, NetBlock(command::kDeleteName, "BURST")), code::kGood);
    std::vector<NetBlock> many(Node::kMaxCommands, NetBlock(command::kReceiveDatagram, "", kAnyNumber));
    for (NetBlock& block : many) EXPECT_EQ(run(here, block), code::kPending);
    EXPECT_EQ(run(here, NetBlock(command::kAdapterStatus, "*")), code::kTooManyCommands);
}

// Every member of a group gets each datagram once: the oldest receive for the name, else the oldest for any name; else
// 64 wait.
TEST_F(NetNode, DatagramsGoWhereALiteralModelSays) {
    struct Member {
        Station& at;
        unsigned char number;
        std::list<NetBlock> waiting[2];  // for the name, and for any
        std::deque<std::string> kept;
    } members[] = {{station(), 0, {}, {}}, {station(), 0, {}, {}}, {station(), 0, {}, {}}};
    for (Member& member : members) member.number = add(member.at, "GROUP");
    const auto expectEnd = [](std::list<NetBlock>& blocks, const std::string& sent) {
        const std::size_t room = blocks.front().ncb_rto * 2u;
        EXPECT_EQ(blocks.front().ncb_cmd_cplt, sent.size() > room ? code::kIncomplete : code::kGood);
        EXPECT_EQ(blocks.front().text(), sent.substr(0, room));
        blocks.pop_front();
    };
    std::mt19937 random(13);
    for (int step = 0; step < 4'000; ++step) {
        Member& member = members[random() % 3];
        if (random() % 8 < (step % 1'000 < 500 ? 5u : 1u)) {
            const std::string text = std::to_string(step) + std::string(random() % 500, 'x');
            EXPECT_EQ(run(member.at, netSending(text, "GROUP", member.number)), code::kGood);
            for (Member& to : members) {
                std::list<NetBlock>& first = to.waiting[to.waiting[0].empty()];
                if (!first.empty())
                    expectEnd(first, text);
                else if (to.kept.size() < 64)
                    to.kept.push_back(text);
            }
        } else {
            const auto halfRoom = static_cast<unsigned char>(random() % 256);
            const unsigned any = random() % 2;
            NetBlock& block =
                member.waiting[any].emplace_back(command::kReceiveDatagram, "", any ? kAnyNumber : member.number,
                                                 static_cast<unsigned short>(halfRoom * 2));
            block.ncb_rto = halfRoom;
            EXPECT_EQ(run(member.at, block) == code::kPending, member.kept.empty());
            if (member.kept.empty()) continue;
            expectEnd(member.waiting[any], member.kept.front());
            member.kept.pop_front();
        }
    }
}

TEST_F(NetNode, NamesThatNobodyReceivesForTakeNoRoomFromOthers) {
    Station& here = station();
    const unsigned char own = add(here, "OWN");
    for (int i = 0; i < 10; ++i) {
        const std::string left = "LEFT" + std::to_string(i);
        add(here, left);
        for (int k = 0; k < 70; ++k) EXPECT_EQ(run(here, netSending("", left, own)), code::kGood);
    }
    for (int k = 0; k < 64; ++k) EXPECT_EQ(run(here, netSending(std::to_string(k), "OWN", own)), code::kGood);
    for (int k = 0; k < 64; ++k) {
        NetBlock receive(command::kReceiveDatagram, "", own);
        EXPECT_EQ(run(here, receive), code::kGood);
        EXPECT_EQ(receive.text(), std::to_string(k));
    }
    NetBlock broadcasts[] = {{command::kReceiveBroadcast, "", own}, {command::kReceiveBroadcast, "", own}};
    for (NetBlock& receive : broadcasts) EXPECT_EQ(run(here, receive), code::kPending);
    EXPECT_EQ(run(here, NetBlock(command::kSendBroadcast, "", own, 3)), code::kGood);
    for (const NetBlock& receive : broadcasts) EXPECT_EQ(receive.ncb_cmd_cplt, code::kGood);
}

TEST_F(NetNode, WhatMakesNoSenseIsCountedAndChangesNothing) {
    Station& here = station();
    add(here, "OWN", command::kAddName);
    NetBlock any(command::kReceiveDatagram, "", kAnyNumber), status(command::kAdapterStatus, "*");
    EXPECT_EQ(run(here, any), code::kPending);
    NamePacket conflict;  // anybody could say so
    conflict.response = conflict.hasRecord = true;
    conflict.opcode = Opcode::registration;
    conflict.result = kNameConflict;
    conflict.record.name = paddedName("OWN");
    here.node.nameReceived(writeNamePacket(conflict), {2, kAskingPort}, time);
    for (const int fragment : {0, 1, 2, 3}) {
        Datagram datagram;
        datagram.first = fragment != 0;
        datagram.more = fragment == 1;
        datagram.offset = fragment == 2;
        datagram.destination = {paddedName("OWN"), *Scope::of(fragment == 3 ? "else.where" : "")};
        here.node.datagramReceived(writeDatagram(datagram), false);
    }
    EXPECT_EQ(run(here, status), code::kGood);
    EXPECT_EQ(any.ncb_cmd_cplt, code::kPending);
    EXPECT_EQ(status.text().substr(60, 3), "OWN");
    EXPECT_EQ(status.data[16], 3);  // receive errors; another scope is none
}

}  // namespace
