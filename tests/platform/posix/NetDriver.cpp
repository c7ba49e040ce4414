#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <kora/Net.h>
#include <sys/socket.h>

#include <future>
#include <memory>

#include "platform/posix/netbios/Codes.h"
#include "platform/posix/netbios/Driver.h"

namespace {

using namespace kora::platform;
using netbios::Driver;
namespace command = netbios::command;
namespace code = netbios::code;

/// A command with its buffer, which a test waits for.
struct Command : NetNcb {
    Command(unsigned char what, const std::string& name = "", unsigned char number = 0) : NetNcb{} {
        ncb_command = what;
        ncb_num = number;
        ncb_buffer = data;
        ncb_length = sizeof data;
        (name + std::string(16, ' ')).copy(reinterpret_cast<char*>(ncb_name), 16);
        (name + std::string(16, ' ')).copy(reinterpret_cast<char*>(ncb_callname), 16);
        ncb_post = [](NetNcb* block) { static_cast<Command*>(block)->posted.set_value(); };
    }
    Command& saying(const std::string& text) {
        ncb_length = static_cast<unsigned short>(text.copy(reinterpret_cast<char*>(data), sizeof data));
        return *this;
    }
    unsigned char end() {
        posted.get_future().wait();
        return ncb_cmd_cplt;
    }
    std::string text() const { return {reinterpret_cast<const char*>(data), ncb_length}; }
    unsigned char data[512] = {};
    std::promise<void> posted;
};

NetworkSettings loopback() {
    // Ports of this run's own.
    const auto port = static_cast<std::uint16_t>(20'000 + processId() % 20'000);
    return {"lo", "127.255.255.255", port, static_cast<std::uint16_t>(port + 20'000), "kora.test"};
}

/// A plain socket on the loopback, the stations' neighbour.
struct Peer {
    explicit Peer(std::uint16_t port = 0) : socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        const sockaddr_in here = at(port);
        bound = bind(socket.get(), reinterpret_cast<const sockaddr*>(&here), sizeof here) == 0;
    }
    static sockaddr_in at(std::uint16_t port) {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return address;
    }
    void send(netbios::Bytes packet, std::uint16_t port) const {
        const sockaddr_in to = at(port);
        sendto(socket.get(), packet.data(), packet.size(), 0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
    }
    posix::Descriptor socket;
    bool bound = false;
};

/// A driver of its own, as another process has one.
class Station {
public:
    explicit Station(const NetworkSettings& settings) : driver_(mutex_, settings), begun_(driver_.begin()) {}
    ~Station() {
        if (begun_ != 0) return;
        {
            const std::lock_guard lock(mutex_);
            driver_.end();
        }
        driver_.join();
    }
    unsigned char begun() const { return begun_; }
    unsigned char execute(NetNcb& block) {
        std::unique_lock lock(mutex_);
        return driver_.execute(block, lock);
    }

private:
    std::mutex mutex_;
    Driver driver_;
    unsigned char begun_;
};

constexpr unsigned char kLater = command::kAsynchronous;

class NetDriver : public testing::Test {
protected:
    void TearDown() override { networkStop(); }
    static unsigned char execute(NetNcb& block) {
        return network().execute(block, [] { return settings; });
    }
    static inline NetworkSettings settings;
    void SetUp() override { settings = loopback(); }
};

TEST_F(NetDriver, SaysWhyItCannotBegin) {
    const NetworkSettings good = settings;
    const auto answer = [] {
        Command status(command::kAdapterStatus, "*");
        status.ncb_lana_num = 3;
        return execute(status);
    };
    settings.device = "none such";
    EXPECT_EQ(answer(), code::kNoCarrier);
    settings = good;
    settings.broadcast = "127.255.255";
    EXPECT_EQ(answer(), code::kSystemRefuses);
    settings = good;
    settings.scope = "..";
    EXPECT_EQ(answer(), code::kSystemRefuses);
    settings = good;
    {
        const Peer holder(settings.datagramPort);
        ASSERT_TRUE(holder.bound);
        EXPECT_EQ(answer(), code::kInterfaceBusy);
    }
    // The next command tries again.
    EXPECT_EQ(answer(), code::kIllegalAdapter);
}

TEST_F(NetDriver, StationsOnOneMachineHearEachOtherOnceEach) {
    Station first(settings), second(settings);
    ASSERT_EQ(first.begun() + second.begun(), 0);
    Station* const stations[] = {&first, &second};

    std::vector<std::unique_ptr<Command>> groups, uniques;
    for (Station* station : stations) {
        groups.push_back(std::make_unique<Command>(command::kAddGroupName | kLater, "EVERYBODY"));
        uniques.push_back(
            std::make_unique<Command>(command::kAddName | kLater, station == &first ? "FIRST" : "SECOND"));
        EXPECT_EQ(station->execute(*groups.back()), code::kGood);
        EXPECT_EQ(station->execute(*uniques.back()), code::kGood);
    }
    for (auto& registration : groups) EXPECT_EQ(registration->end(), code::kGood);
    for (auto& registration : uniques) EXPECT_EQ(registration->end(), code::kGood);
    Command taken(command::kAddName, "FIRST");
    EXPECT_EQ(second.execute(taken), code::kNameInUse);

    // From the first receive on, datagrams wait for the next one.
    for (int to = 0; to < 2; ++to) {
        for (const unsigned char number : {groups[to]->ncb_num, uniques[to]->ncb_num}) {
            Command begun(command::kReceiveDatagram | kLater, "", number), cancel(command::kCancel);
            EXPECT_EQ(stations[to]->execute(begun), code::kGood);
            cancel.ncb_buffer = reinterpret_cast<unsigned char*>(static_cast<NetNcb*>(&begun));
            EXPECT_EQ(stations[to]->execute(cancel), code::kGood);
            EXPECT_EQ(begun.end(), code::kCancelled);
        }
    }
    const auto receive = [&](int station, unsigned char number) {
        Command received(command::kReceiveDatagram, "", number);
        EXPECT_EQ(stations[station]->execute(received), code::kGood);
        return received.text();
    };
    for (int turn = 0; turn < 6; ++turn) {
        const int from = turn % 2;
        const std::string text = "turn " + std::to_string(turn);
        for (const char* to : {"EVERYBODY", "FIRST", "SECOND"}) {
            Command sent(command::kSendDatagram, to, uniques[from]->ncb_num);
            EXPECT_EQ(stations[from]->execute(sent.saying(text)), code::kGood);
        }
        for (int to = 0; to < 2; ++to) {
            EXPECT_EQ(receive(to, groups[to]->ncb_num), text);
            EXPECT_EQ(receive(to, uniques[to]->ncb_num), text);
        }
    }

    // What is sent to the machine alone reaches one station; the other one is handed what is its own.
    const Peer peer;
    netbios::Datagram datagram;
    datagram.type = netbios::DatagramType::directUnique;
    datagram.source = datagram.destination = {{'P', 'E', 'E', 'R'}, *netbios::Scope::of(settings.scope)};
    for (const unsigned char text : {'1', '2'}) {
        for (auto& registration : uniques) {
            std::copy_n(registration->ncb_name, 16, datagram.destination.name.begin());
            datagram.data = {&text, 1};
            peer.send(netbios::writeDatagram(datagram), settings.datagramPort);
        }
        for (int to = 0; to < 2; ++to) EXPECT_EQ(receive(to, uniques[to]->ncb_num), std::string(1, char(text)));
    }
}
}  // namespace
