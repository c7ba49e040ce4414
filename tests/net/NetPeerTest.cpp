#include <gmock/gmock.h>
#include <kora/Net.h>
#include <kora/Test.h>
#include <kora/Tsk.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>

#include "tests/net/ScriptedDriver.h"
#include "tests/support/VirtualSlot.h"

namespace {

using kora::test::CountedNetwork;
using kora::test::ScriptedDriver;

static_assert(sizeof(NetNcb) == (sizeof(void*) == 8 ? 96 : 64));
static_assert(offsetof(NetNcb, ncb_callname) == (sizeof(void*) == 8 ? 18 : 10));
static_assert(offsetof(NetNcb, ncb_event) == sizeof(NetNcb) - sizeof(void*));

// Writes down what it is told.
class Station : public NetPeer {
public:
    void NetGroupNameAddResult(unsigned short code) override { tell("added " + std::to_string(code)); }
    void NetDatagramSendResult(unsigned short code, void* data, short length) override {
        told("sent", code, data, length);
    }
    void NetDatagramReceive(unsigned short code, void* data, short length) override { told("got", code, data, length); }

    /// Registers the group, whatever it takes.
    void join(ScriptedDriver& driver, const char* group = "GROUP") {
        ASSERT_EQ(NetIsAvailable(), 0);
        ASSERT_EQ(NetGroupNameAdd(group), 0);
        NetNcb* const add = driver.first(0x36);
        add->ncb_num = 7;
        driver.complete(add, 0);
        TskMessagePump();
    }
    const NetCounters& counters() { return NetBIOSGet()->CountersGet(); }

    std::vector<std::string> events;
    std::function<void()> then;  ///< called in each notification

private:
    void told(const char* what, unsigned short code, void* data, short length) {
        tell(std::string(what) + ' ' + std::to_string(code) + ' ' +
             std::string(static_cast<const char*>(data), static_cast<std::size_t>(length)));
    }
    void tell(std::string event) {
        events.push_back(std::move(event));
        if (const std::function<void()> called = then) called();
    }
};

class NetPeerTest : public testing::Test {
protected:
    NetPeerTest() { driver.status[6] = 3; }
    ~NetPeerTest() override {
        while (!driver.pending.empty()) driver.complete(driver.pending.front(), 11);
        TskMessagePump();
        EXPECT_TRUE(network.live.empty());
        EXPECT_EQ(network.strayFrees, 0);
    }

    CountedNetwork network;
    ScriptedDriver driver;
};

TEST_F(NetPeerTest, SlotsStandInOrder) {
    EXPECT_EQ(
        kora::test::firstOutOfSlot(&NetPeer::NetIsAvailable, &NetPeer::NetGroupNameAdd, &NetPeer::NetGroupNameDelete,
                                   &NetPeer::NetGroupNameGet, &NetPeer::NetDatagramSend, &NetPeer::NetMapError,
                                   &NetPeer::NetStatusDialog, &NetPeer::NetGroupNameAddResult,
                                   &NetPeer::NetDatagramSendResult, &NetPeer::NetDatagramReceive),
        0);
    EXPECT_EQ(kora::test::firstOutOfSlot(&NetBIOS::MapError, &NetBIOS::StatusShow, &NetBIOS::AdapterFind,
                                         &NetBIOS::GroupNameGet, &NetBIOS::GroupNameAdd, &NetBIOS::GroupNameDelete,
                                         &NetBIOS::DatagramSend, &NetBIOS::GroupNameAdded, &NetBIOS::DatagramSent,
                                         &NetBIOS::DatagramReceived),
              0);
}

TEST_F(NetPeerTest, AnAdapterIsLookedForOnNumbers0To3) {
    const struct {
        std::vector<unsigned char> answers;
        char revision;
        unsigned short result;
        std::string commands;  ///< command and adapter number, in order
    } rows[] = {
        {{3, 0}, 3, 0, "7f0 330 "},
        {{35, 35, 0x50, 0}, 3, 0, "7f0 7f1 7f2 332 "},
        // nobody answers, the codes beside the ranges
        {{35, 0x3F, 0x4F, 0xFE}, 3, 0xFE, "7f0 7f1 7f2 7f3 "},
        {{0, 34, 255, 52}, 3, 52, "7f0 7f1 7f2 7f3 "},
        // one answers and has no status, or no revision
        {{3, 9, 0x40, 5, 35, 0xFD, 21}, 3, 21, "7f0 330 7f1 331 7f2 7f3 333 "},
        {{35, 35, 35, 3, 0}, 0, 0, "7f0 7f1 7f2 7f3 333 "},
        {{0x4E, 0, 0x4E, 0, 35, 35}, 0, 35, "7f0 330 7f1 331 7f2 7f3 "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.commands);
        Station station;
        driver.answers = row.answers;
        driver.status[6] = row.revision;
        driver.log.clear();
        EXPECT_EQ(station.NetIsAvailable(), row.result);
        std::string commands;
        for (const NetNcb& block : driver.log) {
            char text[8];
            std::snprintf(text, sizeof text, "%02x%d ", block.ncb_command, block.ncb_lana_num);
            commands += text;
            EXPECT_EQ(block.ncb_post, nullptr);
        }
        EXPECT_EQ(commands, row.commands);
        EXPECT_EQ(station.counters().blocksAllocated, station.counters().blocksFreed);
    }
}

TEST_F(NetPeerTest, ARegisteredStationHasTwoReceivesWaiting) {
    Station station;
    ASSERT_EQ(station.NetIsAvailable(), 0);
    EXPECT_EQ(station.NetGroupNameDelete(), 65535);
    driver.log.clear();
    // The name is left over in the adapter, so it is deleted and registered anew.
    driver.answers = {13, 0, 0};
    EXPECT_EQ(station.NetGroupNameAdd("A group name of twenty"), 0);
    ASSERT_EQ(driver.log.size(), 3u);
    EXPECT_EQ(driver.log[0].ncb_command, 0xB6);
    EXPECT_EQ(driver.log[1].ncb_command, 0x31);
    EXPECT_EQ(driver.log[1].ncb_post, nullptr);
    EXPECT_EQ(driver.log[2].ncb_command, 0xB6);
    EXPECT_EQ(std::memcmp(driver.log[2].ncb_name, "A group name of ", 16), 0);
    EXPECT_EQ(station.NetGroupNameGet()[0], '\0');

    NetNcb* const add = driver.first(0x36);
    add->ncb_num = 9;
    driver.complete(add, 0);
    EXPECT_TRUE(station.events.empty());
    TskMessagePump();
    EXPECT_THAT(station.events, testing::ElementsAre("added 0"));
    EXPECT_STREQ(station.NetGroupNameGet(), "A group name of ");
    EXPECT_EQ(station.NetGroupNameAdd("OTHER"), 4100);
    ASSERT_EQ(driver.pending.size(), 2u);
    for (const NetNcb* receive : driver.pending) {
        EXPECT_EQ(receive->ncb_command, 0xA1);
        EXPECT_EQ(receive->ncb_num, 9);
        EXPECT_EQ(receive->ncb_length, 500);
        EXPECT_EQ(std::memcmp(receive->ncb_name, "A group name of ", 16), 0);
        EXPECT_EQ(std::memcmp(receive->ncb_callname, receive->ncb_name, 16), 0);
    }

    char data[501] = "hello";
    EXPECT_EQ(station.NetDatagramSend(data, 501), 65535);
    EXPECT_EQ(station.NetDatagramSend(data, -1), 65535);
    EXPECT_EQ(station.NetDatagramSend(nullptr, 1), 65535);
    EXPECT_EQ(driver.pending.size(), 2u);
    EXPECT_EQ(station.NetDatagramSend(data, 500), 0);
    EXPECT_EQ(station.NetDatagramSend(nullptr, 0), 0);
    driver.answers = {34};
    EXPECT_EQ(station.NetDatagramSend(data, 5), 34);
    EXPECT_EQ(station.counters().datagramsSent, 3);
    EXPECT_EQ(station.NetGroupNameDelete(), 0);
    EXPECT_EQ(std::memcmp(driver.log.back().ncb_name, "A group name of ", 16), 0);
    EXPECT_EQ(station.NetGroupNameGet()[0], '\0');
}

// A completed receive is told and goes out again, but for the five codes that end it.
TEST_F(NetPeerTest, ReceivesAreIssuedAgain) {
    for (int code = 0; code < 256; ++code) {
        SCOPED_TRACE(code);
        Station station;
        station.join(driver);
        NetNcb* const receive = driver.first(0x21);
        std::memcpy(receive->ncb_buffer, "abc", 3);
        receive->ncb_length = 3;
        driver.complete(receive, static_cast<unsigned char>(code));
        TskMessagePump();
        EXPECT_EQ(station.events.back(), "got " + std::to_string(code) + " abc");
        const bool over = code == 0x0F || code == 0x13 || code == 0x15 || code == 0x17 || code == 0x24;
        EXPECT_EQ(driver.pending.size(), over ? 1u : 2u);
        EXPECT_EQ(driver.pending.back()->ncb_length, 500);
        EXPECT_EQ(station.counters().receivesPosted, over ? 2 : 3);
        EXPECT_EQ(station.counters().lastReceiveCode, code);
        while (!driver.pending.empty()) driver.complete(driver.pending.front(), 0x17);
        TskMessagePump();
    }
}

// Everything in every order, beside a plain account of what must have happened.
TEST_F(NetPeerTest, CountsAreRightWhateverHappens) {
    struct Account {
        std::unique_ptr<Station> station;
        NetCounters counters{};
        bool registered = false;
        std::size_t events = 0;
    };
    const unsigned seed = 20;
    std::mt19937 random(seed);
    const auto below = [&](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
    std::vector<Account> accounts(3);
    std::map<NetNcb*, int> owners;  // of what is under way; -1 when the station has gone
    struct Completion {
        NetNcb* block;
        unsigned char code;
    };
    std::vector<Completion> posted;
    char data[600] = {};

    const auto taken = [&](int owner) {  // the driver took a command just now
        if (!driver.pending.empty() && !owners.contains(driver.pending.back())) owners[driver.pending.back()] = owner;
    };
    // One allocation may fail in an operation; answers how many succeeded of the blocks it wants.
    const auto allocate = [&](Account& account, int wanted, bool mayFail = true) {
        network.failing = mayFail && below(8) == 0 ? 1 + below(wanted) : 0;
        const int had = network.failing > 0 ? network.failing - 1 : wanted;
        if (had < wanted) ++account.counters.allocationFailures;
        for (int i = 0; i < had; ++i) ++account.counters.blocksAllocated;
        if (had > 0) ++account.counters.wrappersAllocated;
        return had;
    };
    const auto freed = [](Account& account, int blocks) {
        for (int i = 0; i < blocks; ++i) ++account.counters.blocksFreed;
        if (blocks > 0) ++account.counters.wrappersFreed;
    };
    const auto pump = [&] {
        network.failing = 0;
        for (const auto& [block, code] : posted) {
            const int owner = owners.at(block);
            const int command = block->ncb_command & 0x7F;
            owners.erase(block);
            if (owner < 0) continue;
            Account& account = accounts[static_cast<std::size_t>(owner)];
            if (command != 0x31) ++account.events;
            if (command == 0x20) {
                freed(account, block->ncb_buffer != nullptr ? 2 : 1);
                ++account.counters.sendCompletions;
                account.counters.lastSendCode = code;
            } else if (command == 0x21) {
                ++account.counters.receiveCompletions;
                account.counters.lastReceiveCode = code;
                if (code == 0x17 || code == 0x24)
                    freed(account, 2);
                else
                    ++account.counters.receivesPosted, owners[block] = owner;
            } else {
                freed(account, 1);
                if (command != 0x36 || code != 0) continue;
                account.registered = true;
                for (int i = 0; i < 2; ++i) allocate(account, 2, false), ++account.counters.receivesPosted;
            }
        }
        posted.clear();
        TskMessagePump();
        for (NetNcb* block : driver.pending)
            if (!owners.contains(block)) owners[block] = block->ncb_num;
    };

    for (int step = 0; step < 20'000; ++step) {
        SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
        const int index = below(3);
        Account& account = accounts[static_cast<std::size_t>(index)];
        network.failing = 0;
        driver.answers.clear();
        if (account.station == nullptr) {
            account.station = std::make_unique<Station>();
            account.counters = {};
            account.registered = false;
            account.events = 0;
            continue;
        }
        const bool refused = below(6) == 0;
        switch (below(12)) {
            case 0:
                if (below(10) != 0) break;
                account.station.reset();
                for (auto& [block, owner] : owners)
                    if (owner == index) owner = -1;
                // On Windows what was posted has been handled with the window.
                std::erase_if(posted, [&](const Completion& completion) {
                    return !network.live.contains(completion.block) && owners.erase(completion.block) > 0;
                });
                continue;
            case 1:
                if (account.registered) {
                    EXPECT_EQ(account.station->NetGroupNameAdd("G"), 4100);
                } else {
                    const int had = allocate(account, 1);
                    driver.answers = {static_cast<unsigned char>(refused ? 13 : 0), 0,
                                      static_cast<unsigned char>(refused ? 22 : 0)};
                    EXPECT_EQ(account.station->NetGroupNameAdd("G"), had == 0 ? 4099 : refused ? 22 : 0);
                    if (had == 0) break;
                    refused ? freed(account, 1) : taken(index);
                    if (!refused) driver.pending.back()->ncb_num = static_cast<unsigned char>(index);
                }
                break;
            case 2: {
                if (below(4) != 0) break;
                const int had = account.registered ? allocate(account, 1) : 0;
                driver.answers = {static_cast<unsigned char>(refused ? 9 : 0)};
                EXPECT_EQ(account.station->NetGroupNameDelete(), !account.registered ? 65535
                                                                 : had == 0          ? 4099
                                                                 : refused           ? 9
                                                                                     : 0);
                if (had == 0) break;
                account.registered = false;
                refused ? freed(account, 1) : taken(index);
                break;
            }
            case 3:
            case 4:
            case 5: {
                const short length = static_cast<short>(below(3) == 0 ? below(3) - 1 : below(520));
                if (length < 0 || length > 500) {
                    EXPECT_EQ(account.station->NetDatagramSend(data, length), 65535);
                    break;
                }
                const int wanted = length > 0 ? 2 : 1;
                const int had = allocate(account, wanted);
                driver.answers = {static_cast<unsigned char>(refused ? 34 : 0)};
                EXPECT_EQ(account.station->NetDatagramSend(data, length), had < wanted ? 65535 : refused ? 34 : 0);
                if (had < wanted) {
                    freed(account, had);
                    break;
                }
                ++account.counters.datagramsSent;
                refused ? freed(account, wanted) : taken(index);
                break;
            }
            case 6:
                pump();
                break;
            default:
                if (driver.pending.empty()) break;
                NetNcb* const block =
                    driver.pending[static_cast<std::size_t>(below(static_cast<int>(driver.pending.size())))];
                const unsigned char codes[] = {0, 0, 0, 6, 11, 0x17, 0x24, 255};
                posted.push_back({block, codes[below(8)]});
                if ((block->ncb_command & 0x7F) == 0x21) block->ncb_length = static_cast<unsigned short>(random());
                driver.complete(block, posted.back().code);
                if (below(4) == 0) block->ncb_post(block);  // once is enough
                break;
        }
        if (posted.empty()) {
            EXPECT_EQ(std::memcmp(&account.counters, &account.station->counters(), sizeof(NetCounters)), 0);
            EXPECT_EQ(account.events, account.station->events.size());
            EXPECT_EQ(account.registered, account.station->NetGroupNameGet()[0] != '\0');
        }
        if (HasFailure()) return;
    }
    accounts.clear();
    for (auto& [block, owner] : owners) owner = -1;
}

// A notification may throw and may delete its station, and nothing is lost or done twice.
TEST_F(NetPeerTest, NotificationsMayThrowAndDelete) {
    TestPresenter presenter;
    const struct { unsigned char command, code; } rows[] = {{0x36, 0}, {0x36, 22}, {0x20, 0}, {0x21, 0}, {0x21, 0x17}};
    for (const bool deletes : {false, true})
        for (const auto& row : rows) {
            SCOPED_TRACE(testing::Message() << int{row.command} << ' ' << int{row.code} << ' ' << deletes);
            auto* station = new Station;
            if (row.command == 0x36)
                station->NetIsAvailable(), station->NetGroupNameAdd("GROUP");
            else
                station->join(driver);
            char data[] = "data";
            if (row.command == 0x20) station->NetDatagramSend(data, 4);
            station->then = [&] {
                if (!deletes) throw std::runtime_error("thrown");
                delete std::exchange(station, nullptr);
            };
            driver.complete(driver.first(row.command), row.code);
            TskMessagePump();
            EXPECT_EQ(station == nullptr, deletes);
            if (station != nullptr) {
                const NetCounters& counters = station->counters();
                const int waiting = static_cast<int>(driver.pending.size());
                EXPECT_EQ(counters.wrappersAllocated - counters.wrappersFreed, waiting);
                EXPECT_EQ(waiting, row.command == 0x36 ? (row.code == 0 ? 2 : 0) : row.code == 0x17 ? 1 : 2);
                station->then = nullptr;
            }
            delete station;
            while (!driver.pending.empty()) driver.complete(driver.pending.front(), 0x17);
            TskMessagePump();
        }
}

// Completions that come when nobody handles messages any more wait for nobody.
TEST_F(NetPeerTest, TheExitFreesWhatHasCompleted) {
    Station station;
    station.join(driver);
    ASSERT_TRUE(TskExitKoraQuery());
    driver.complete(driver.first(0x21), 0);
    TskExit();
    driver.complete(driver.first(0x21), 0);
    EXPECT_EQ(station.NetGroupNameDelete(), 0);
    EXPECT_EQ(station.counters().wrappersFreed, 4);
    EXPECT_EQ(station.counters().receiveCompletions, 0);
    driver.complete(driver.first(0x31), 0);
}

TEST_F(NetPeerTest, ErrorsHaveWords) {
    const struct {
        unsigned short code;
        const char* text;
    } rows[] = {{0, "Successful completion, good return."},
                {2, "unknown"},
                {21, "Name not found, illegal, or deregisterd."},
                {80, "Adapter Malfunction--call the plumber!"},
                {255, "Command-pending status."},
                {4098, "Unable to dynamically connect to NetBIOSCall in kernel"},
                {4100, "Groupname already exists."},
                {65535, "unknown"}};
    Station station;
    for (const auto& row : rows) EXPECT_STREQ(station.NetMapError(row.code), row.text);
    // All of them to the letter.
    std::uint32_t sum = 0;
    for (unsigned code = 0; code <= 0xFFFF; ++code)
        for (const char* c = station.NetMapError(static_cast<unsigned short>(code)); *c != 0; ++c)
            sum = sum * 31 + static_cast<unsigned char>(*c) + (code & 0xFF);
    EXPECT_EQ(sum, 2137769557u);
}

class BareBIOS : public NetBIOS {
public:
    BareBIOS() : NetBIOS(0) {}
    using NetBIOS::callbackWindow;
    using NetBIOS::postRoutine;
};

TEST_F(NetPeerTest, WithoutPostRoutineOrWindowThereIsNoAdapter) {
    BareBIOS object;
    const auto window = std::exchange(object.callbackWindow, 0ul);
    EXPECT_EQ(object.AdapterFind(), 4096);
    object.postRoutine = nullptr;
    EXPECT_EQ(object.AdapterFind(), 4097);
    EXPECT_TRUE(driver.log.empty());
    object.callbackWindow = window;
}

}  // namespace
