#include <gmock/gmock.h>
#include <kora/Net.h>
#include <kora/Test.h>
#include <kora/Tmr.h>
#include <kora/Tsk.h>

#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <random>
#include <regex>
#include <string>

#include "modules/stations/Report.h"
#include "modules/stations/VisibleText.h"
#include "tests/net/ScriptedDriver.h"
#include "tests/support/ScopedPlaces.h"

namespace {

const std::string kSay = "KS1\nsay\n0123456789abcdef\n", kHere = "KS1\nhere\n0123456789abcdef\nbob\n",
                  kBye = "KS1\nbye\n0123456789abcdef\nbob\n";

std::string read(const std::string& bytes) {
    const auto message = stations::messageIn(bytes.data(), bytes.size());
    if (!message) return "refused";
    if (message->kind != stations::Message::here) return message->name + ' ' + message->text;
    return message->name + ' ' + std::to_string(message->seconds) + ' ' + std::to_string(message->hears);
}

TEST(StationsMessage, BelievesTheNetworkNothing) {
    const std::string bob = kSay + "bob\n", text(443, 't'), name(31, 'n');
    const std::map<std::string, std::string> rows{
        {kHere + "5 2", "bob 5 2"},
        {kHere + "0 0 more", "bob 1 0"},
        {kHere + "4294967295 4294967295", "bob 300 4294967295"},
        {bob + "hello all\nand what later versions add", "bob hello all"},
        // what a terminal would obey, and what is no UTF-8
        {bob + "a\x1b[2J\rb\tc\x7f\x9b#" + '\0', "bob a?[2J?b?c??#?"},
        {bob + "\xC2\x9B# \xE2\x80\xAE# \xC0\x9B \xED\xA0\x80 \xF4\x90\x80\x80 \xE2\x82", "bob ?# ?# ?? ??? ???? ??"},
        {bob + "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80", "bob \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80"},
        {kSay + "b\x1bob\nx", "b?ob x"}};
    for (const auto& [bytes, meaning] : rows) EXPECT_EQ(read(bytes), meaning) << bytes;
    for (const std::string& bytes : std::vector<std::string>{
             "", kSay, kSay + "  \nx", kSay + name + "n\nx", bob + text + 't', kHere, kHere + "5", kHere + "x 2",
             kHere + "-5 2", kHere + "5 4294967296", "KS2" + kBye.substr(3), "KS1\nBYE" + kBye.substr(7),
             kBye.substr(0, 8) + kSay, "KS1\nsay\n0123456789abcde \nbob\n", "KS1\nsay\n0123456789abcdeg\nbob\n"})
        EXPECT_EQ(read(bytes), "refused") << bytes;
    const CString longest = stations::bytesOf({stations::Message::say, 1, name, text, 1, 0});
    EXPECT_EQ(read(longest), name + ' ' + text);
    std::mt19937 random(5);
    for (int i = 0; i < 20000; ++i) {
        std::string bytes = bob + "\xE2\x82\xAC some text";
        for (const std::size_t from : {0u, 25u, 25u, 25u}) bytes[from + random() % 17] = static_cast<char>(random());
        EXPECT_EQ(stations::visible(read(bytes)), read(bytes)) << i;
    }
}

// A module on a network of one adapter, which brings datagrams back; the clock stands unless somebody waits.
struct Network : TskApplication {
    kora::test::ScriptedDriver driver;
    kora::test::ScopedPlaces places;
    TestPresenter presenter;
    TestClock clock{0xFFFFFFFF - 7000};
    std::map<int, unsigned char> codes;  // of commands
    std::string sent;
    int staying = 0;
    bool capturing = false;
    std::unique_ptr<TskKoraModule> module;

    Network() {
        places.folder.Write("system/system.ini", "[network]\nComputerName=me\n");
        driver.answers = {3};
        driver.status[6] = 1;
        TskApplicationSet(this);
        eTskKoraModule status = TskKoraModuleFailed;
        TskKoraModule* made = nullptr;
        (TskKoraMain)(status, &made, 0);
        module.reset(made);
        EXPECT_TRUE(module->TskInit1());
    }
    ~Network() override {
        EXPECT_EQ(leave().staying, 0);
        happened();
    }
    void TskAppStay(bool on) override { staying += on ? 1 : -1; }
    bool TskAppQuit() override { return sent += "quit\n", false; }
    // Completes all but the receives.
    Network& serve() {
        if (!std::exchange(capturing, true)) testing::internal::CaptureStdout();
        do {
            for (NetNcb* block : std::vector(driver.pending)) {
                const std::string bytes(reinterpret_cast<char*>(block->ncb_buffer), block->ncb_length);
                const int command = block->ncb_command & 0x7F;
                if (command == 0x21) continue;
                if (command == 0x20)
                    sent += bytes.substr(4, bytes.find('\n', 4) - 4) + ' ' + bytes.substr(bytes.rfind('\n') + 1) + '\n';
                driver.complete(block, codes[command]);
                if (command == 0x20 && codes[command] == 0) arrive(bytes, 0);
            }
        } while (TskMessagePump() > 0);
        return *this;
    }
    void arrive(const std::string& bytes, unsigned char code) {
        NetNcb* block = driver.first(0x21);
        if (block == nullptr) return;
        block->ncb_length = static_cast<unsigned short>(bytes.size());
        std::memcpy(block->ncb_buffer, bytes.data(), bytes.size());
        driver.complete(block, code);
    }
    Network& hear(const std::string& bytes, unsigned char code = 0) { return arrive(bytes, code), serve(); }
    Network& ask(const CStringArray& arguments) { return serve(), TskCmdLine(arguments), serve(); }
    Network& leave() { return serve(), module->TskExit1(), serve(); }
    Network& wait(int milliseconds) {
        for (; milliseconds > 0; --milliseconds, clock.Advance(1), TmrDoTimedTimers()) serve();
        return serve();
    }
    // What was printed since, then what was sent, then what was shown.
    std::string happened() {
        std::string text = testing::internal::GetCapturedStdout() + std::exchange(sent, {});
        capturing = false;
        for (const auto& alert : std::exchange(presenter.alerts, {})) text += alert.text + '\n';
        return std::regex_replace(text, std::regex("\\d\\d:\\d\\d:\\d\\d"), "T");
    }
};

TEST(StationsModule, TellsWhoComesAndGoesAndMeets) {
    Network net;
    net.ask({"-peer", "TEAM", "-say", "hi\r", "-till", "2", "-for", "60"}).wait(2);
    EXPECT_EQ(net.happened(), "T joined TEAM as me\nhere 5 1\n");
    net.hear(kHere + "5 1").wait(102).hear("KS").hear(kHere + "5 2", 6);
    EXPECT_EQ(net.happened(), "T bob is here\nT me: hi?\nsay hi?\nhere 5 2\n");
    net.hear(kHere + "5 2")
        .ask({"-say", "more"})
        .hear(kBye)
        .hear(kBye)
        .hear(kSay + "bob\nx")
        .hear(kHere + "1 1")
        .wait(3001);
    EXPECT_EQ(net.happened(),
              "T me: more\nT bob has left\nT bob is here\nT bob: x\n"
              "T bob is gone: nothing was heard for 3 seconds\nquit\nsay more\nhere 5 2\n");
    net.codes[0x20] = 9;
    net.hear("KS1\nsay\nf000000000000000\nbob\nx").wait(10000);
    net.codes[0x20] = 0;
    net.wait(5000).leave();
    EXPECT_EQ(net.happened(),
              "T bob#0000 is here\nT bob#0000: x\nT announcements cannot be sent: No resource available. (code 9)\n"
              "T announcements can be sent again\nT left TEAM\nstation   first     last      datagrams\n"
              "bob#0000  T  T          1\nbob#cdef  T  T          5  gone\nme        T  T          6  this station\n"
              "2 datagrams were of no kind that is known\nhere 5 2\nhere 5 2\nhere 5 2\nbye \n");
}

TEST(StationsModule, BearsAFloodAndEndsInWords) {
    Network net;
    net.ask({"-peer", "TEAM", "-till", "3", "-for", "6"}).wait(2).happened();
    for (int i = 101; i <= 400; ++i) net.hear("KS1\nsay\n0123456789abc" + std::to_string(i) + "\nb\nx").wait(1);
    EXPECT_EQ(
        std::regex_replace(net.happened(), std::regex("T b(#.+)? is here\nT b(#.+)?: x\n"), "+"),
        std::string(255, '+') + "T more than 256 stations are here; others are not listed\nhere 5 102\nhere 5 203\n");
    EXPECT_THAT(net.wait(6000).happened(),
                testing::EndsWith("\n3 stations did not meet within 6 seconds; here: 256\n"));
    net.hear(kBye).hear("KS1\nbye\n0123456789abc101\nb\n").hear(kHere + "1 1").hear("KS1\nsay\n1\nb\n").wait(3001);
    EXPECT_EQ(net.happened(),
              "T b#c101 has left\nT bob is here\nT bob is gone: nothing was heard for 3 seconds\nhere 5 256\n");
    net.codes[0x20] = 9;
    net.ask({"-say", "x"}).hear("", 23).hear("", 23);
    EXPECT_EQ(std::regex_replace(net.happened(), std::regex("b#.+1\n"), ""),
              "T left TEAM\nstation  first     last      datagrams\nbob      T  T          1  gone\n"
              "me       T  T          6  this station\n1 datagram was of no kind that is known\nsay x\nbye \n"
              "a line was not sent: No resource available. (code 9)\nno longer in TEAM: Name deleted. (code 23)\n");
}

// A command line is followed as a whole or not at all.
TEST(StationsModule, TellsWhatItCannotDo) {
    Network net;
    net.ask({"-peer", "-till", "2"}).ask({"-peer", "SIXTEEN LETTERS!"}).ask({"-peer", "A", "/peer", "B"});
    net.ask({"-say"})
        .ask({"-say", "x"})
        .ask({"-peer", "A", "-say", CString(444, 'x')})
        .ask({"-peer", "A", "-say", "/tmp"});
    net.ask({"-peer", "A", "-till", "0"}).ask({"-peer", "A", "-till", "257"}).ask({"-peer", "A", "-for", "1s"});
    net.codes[0x36] = 22;
    net.ask({"-peer", "TEAM"}).driver.answers = {35};
    EXPECT_EQ(net.ask({"-peer", "TEAM"}).happened(),
              "-peer needs the name of a group\n-peer takes a name of 15 characters at most: SIXTEEN LETTERS!\n"
              "-peer: this station is in A already\n-say needs a text\n-say needs -peer GROUP beside it\n"
              "-say takes 443 bytes at most, and this text has 444\n-say needs a text\n"
              "-till needs a number of stations from 1 to 256\n-till needs a number of stations from 1 to 256\n"
              "-for needs a number of seconds from 1 to 86400\n"
              "cannot join TEAM: Name in use by remote adapter. (code 22)\n"
              "cannot join TEAM: Invalid number for LANA. (code 35)\n");
}

#if !defined(_WIN32)
// Without privileges, on the loopback: each lists the other and hears its line.
TEST(StationsModule, TwoHostsMeetOnOneMachine) {
    TestFolder folder;
    folder.MakeFolder("tools");
    std::filesystem::copy(KORA_STATIONS, folder.NativeText("tools"));
    const unsigned port = 10000 + std::random_device()() % 11000 * 2;  // below those that the system gives away
    folder.Write("ts.ini", "[System]\ntoolfolder = " + folder.NativeText("tools") +
                               "\n[NetBIOS]\nInterface = lo\nBroadcast = 127.255.255.255\nNamePort = " +
                               std::to_string(port) + "\nDatagramPort = " + std::to_string(port + 1) + '\n');
    const std::string command = "cd '" + folder.NativeText() +
                                "'; export HOME=$PWD; host() { QZSTATION=$1 '" KORA_HOST
                                "' --ini ts.ini -peer T -till 2 -for 60 -say \"I am $1\" > $1; }; "
                                "host a & host b; b=$?; wait $! && exit $b";
    EXPECT_EQ(std::system(command.c_str()), 0);
    for (const auto& [name, other] : {std::pair{"a", "b"}, {"b", "a"}})
        for (const std::string around : {" % is here\n", " %: I am %\n", "\n%  "})
            EXPECT_THAT(folder.Read(name), testing::HasSubstr(std::regex_replace(around, std::regex("%"), other)));
}
#endif

}  // namespace
