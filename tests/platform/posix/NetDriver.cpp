#include <gtest/gtest.h>

#include <future>
#include <memory>

#include "platform/posix/netbios/Driver.h"
#include "tests/platform/posix/NetBlock.h"

namespace {

using namespace kora::platform;
using netbios::Driver;
namespace command = netbios::command;
namespace code = netbios::code;

constexpr unsigned char kLater = command::kAsynchronous;

/// An asynchronous command that a test waits for.
struct Command : NetBlock {
    Command(unsigned char what, const std::string& name = "", unsigned char number = 0)
        : NetBlock(what | kLater, name, number) {
        ncb_post = [](NetNcb* block) { static_cast<Command*>(block)->posted.set_value(); };
    }
    unsigned char end() {
        posted.get_future().wait();
        return ncb_cmd_cplt;
    }
    std::promise<void> posted;
};

/// A driver of its own, as another process has one.
struct Station {
    explicit Station(const NetworkSettings& settings) : driver(mutex, settings), begun(driver.begin()) {}
    ~Station() {
        if (begun != 0) return;
        std::unique_lock lock(mutex);
        driver.end();
        lock.unlock();
        driver.join();
    }
    unsigned char execute(auto&& block) {
        std::unique_lock lock(mutex);
        return driver.execute(block, lock);
    }
    std::string receive(unsigned char number) {
        NetBlock block(command::kReceiveDatagram, "", number);
        EXPECT_EQ(execute(block), code::kGood);
        return block.text();
    }
    std::mutex mutex;
    Driver driver;
    unsigned char begun;
};

class NetDriver : public testing::Test {
protected:
    void SetUp() override {
        // Of this run's own, and below those that the system gives away.
        const auto port = static_cast<std::uint16_t>(10'000 + processId() % 11'000 * 2);
        settings = {"lo", "127.255.255.255", port, static_cast<std::uint16_t>(port + 1), "kora.test"};
    }
    void TearDown() override { networkStop(); }
    static unsigned char execute(auto&& block) {
        return network().execute(block, [] { return settings; });
    }
    static inline NetworkSettings settings;
};

TEST_F(NetDriver, SaysWhyItCannotBegin) {
    const NetworkSettings good = settings;
    const auto with = [&](auto member, const auto& value) {
        settings = good;
        settings.*member = value;
        NetBlock invalid(0x7F);
        invalid.ncb_lana_num = 3;
        return execute(invalid);
    };
    EXPECT_EQ(with(&NetworkSettings::device, "none such"), code::kNoCarrier);
    EXPECT_EQ(with(&NetworkSettings::broadcast, "127.255.255"), code::kSystemRefuses);
    EXPECT_EQ(with(&NetworkSettings::scope, ".."), code::kSystemRefuses);
    EXPECT_EQ(with(&NetworkSettings::namePort, std::uint16_t{0}), code::kSystemRefuses);
    netbios::Socket holder;  // shares its port with nobody
    ASSERT_EQ(holder.open(0), 0);
    EXPECT_EQ(with(&NetworkSettings::datagramPort, holder.port()), code::kInterfaceBusy);
    // The next command tries again, and while nothing is registered each begins anew where settings have changed.
    EXPECT_EQ(with(&NetworkSettings::scope, "good"), code::kIllegalAdapter);
    EXPECT_EQ(with(&NetworkSettings::scope, "not good."), code::kSystemRefuses);
}

TEST_F(NetDriver, StationsOnOneMachineHearEachOtherOnceEach) {
    Station stations[2] = {Station(settings), Station(settings)};
    ASSERT_EQ(stations[0].begun + stations[1].begun, 0);
    Command groups[] = {{command::kAddGroupName, "ALL"}, {command::kAddGroupName, "ALL"}};
    Command names[] = {{command::kAddName, "FIRST"}, {command::kAddName, "SECOND"}};
    for (int i = 0; i < 2; ++i) EXPECT_EQ(stations[i].execute(groups[i]) + stations[i].execute(names[i]), 0);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(groups[i].end() + names[i].end(), 0);
    EXPECT_EQ(stations[1].execute(NetBlock(command::kAddName, "FIRST")), code::kNameInUse);

    // From the first receive on, datagrams wait for the next one.
    for (int i = 0; i < 2; ++i) {
        for (const unsigned char number : {groups[i].ncb_num, names[i].ncb_num}) {
            Command begun(command::kReceiveDatagram, "", number);
            EXPECT_EQ(stations[i].execute(begun) + stations[i].execute(netCancelling(begun)), 0);
            EXPECT_EQ(begun.end(), code::kCancelled);
        }
    }
    for (int turn = 0; turn < 6; ++turn) {
        const std::string text = "turn " + std::to_string(turn);
        for (const char* to : {"ALL", "FIRST", "SECOND"})
            EXPECT_EQ(stations[turn % 2].execute(netSending(text, to, names[turn % 2].ncb_num)), code::kGood);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(stations[i].receive(groups[i].ncb_num), text);
            EXPECT_EQ(stations[i].receive(names[i].ncb_num), text);
        }
    }
    // What is sent to the machine alone reaches one station; the other one is handed what is its own.
    netbios::Socket peer;
    ASSERT_EQ(peer.open(0), 0);
    netbios::Datagram datagram;
    datagram.type = netbios::DatagramType::directUnique;
    datagram.source.scope = datagram.destination.scope = *netbios::Scope::of(settings.scope);
    for (unsigned char text = '1'; text <= '2'; ++text) {
        datagram.data = {&text, 1};
        for (const char* to : {"FIRST", "SECOND"}) {
            datagram.destination.name = paddedName(to);
            EXPECT_TRUE(peer.send(netbios::writeDatagram(datagram), {0x7F000001, settings.datagramPort}, 0, 0));
        }
        for (int i = 0; i < 2; ++i) EXPECT_EQ(stations[i].receive(names[i].ncb_num), std::string(1, char(text)));
    }
}

TEST_F(NetDriver, EndsWhatIsUnderWay) {
    Command receive(command::kReceiveDatagram, "", 255), outer(command::kEnumerate);
    static unsigned char added, refused;
    outer.ncb_post = [](NetNcb* block) {
        networkStop();  // does nothing: it would wait for its own thread
        added = execute(NetBlock(command::kAddName, "NAME"));
        static_cast<Command*>(block)->posted.set_value();
    };
    receive.ncb_post = [](NetNcb*) { refused = execute(NetBlock(command::kEnumerate)); };
    EXPECT_EQ(execute(receive) + execute(outer), 0);
    EXPECT_EQ(outer.end(), code::kGood);
    EXPECT_EQ(added, code::kGood);
    networkStop();
    EXPECT_EQ(receive.ncb_cmd_cplt, code::kCancelled);
    EXPECT_EQ(refused, code::kCancelled);
}

}  // namespace
