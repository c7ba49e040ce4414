#include <gmock/gmock.h>
#include <kora/Net.h>
#include <kora/Test.h>

#include "net/StationName.h"
#include "platform/Platform.h"
#include "tests/net/ScriptedDriver.h"
#include "tests/support/ScopedPlaces.h"

namespace {

// 348 bytes in which each field has a value of its own.
std::string adapterStatus() {
    std::string status(348, '\0');
    for (std::size_t i = 0; i < 60; ++i) status[i] = static_cast<char>(i);
    status[23] = '\xFF';  // the sign of "Xmit Success"
    status[58] = 17;      // names, one more than are shown
    status[59] = 0;
    for (std::size_t i = 0; i < 16; ++i) {
        const std::string name =
            i == 0 ? "SIXTEEN LETTERS!" : std::string("N") + std::to_string(i) + std::string(14, ' ');
        status.replace(60 + i * 18, 16, name.substr(0, 16));
        status[60 + i * 18 + 16] = static_cast<char>(i + 2);
        status[60 + i * 18 + 17] = '\x84';
    }
    return status;
}

TEST(NetStatus, TheLinesAreToldWhereThereAreNoWindows) {
    kora::test::ScriptedDriver driver;
    driver.status = adapterStatus();
    driver.answers = {3, 0, 0, 35};  // adapter 1 has no status, and shows zeros
    TestPresenter presenter;
    NetPeer peer;
    const CString before = peer.NetStatusText();
    EXPECT_EQ(before,
              "Adapter: -1\nGroup: '                '\nName Number: 0\n\n"
              "Wrappers Alloc: 0\nWrappers Freed: 0\nMemory Alloc: 0\nMemory Alloc Fail: 0\nMemory Freed: 0\n\n"
              "Dgrams Sent: 0\nSend Complete: 0\nLast Send Code: 0\n\n"
              "Recvs Posted: 0\nRecv Complete: 0\nLast Recv Code: 0\n");
    peer.NetStatusDialog();
    const CString text = peer.NetStatusText();
    CString names;
    for (int i = 1; i < 16; ++i) {
        char line[40];
        std::snprintf(line, sizeof line, "  'N%-15d' %2d 84\n", i, i + 2);
        names += line;
    }
    const CString adapter =
        "\nAdapter Status: 0\n\n  Unit ID 050403020100 \n  Adapter Type 8\n  Rev 6.9\n  Duration: 2826\n\n"
        "  Frame Recv: 3340\n  Frame Xmit: 3854\n  Recv Error: 4368\n  Xmit Aborts: 4882\n"
        "  Xmit Success: -15330028\n  Recv Success: 454695192\n  Xmit Error: 7452\n  Recv Buf Unavail: 7966\n"
        "  Xmit Buf Unavail: 12078\n\n  T1 Timeouts: 8480\n  Ti Timeouts: 8994\n\n"
        "  Free NCBs: 10536\n  Max NCBs: 11050\n  Max Cfg NCBs: 11050\n  Max NCBs: 11564\n  Max Dgram Size: 12592\n"
        "  Pending Sessions: 13106\n  Max Cfg Sessions: 13620\n  Max Sessions: 14134\n"
        "  Max Session Pkt Size: 14648\n\n  'SIXTEEN LETTERS!'  2 84\n" +
        names + "\nAdapter Status: 1\n\n  Unit ID 000000000000 \n";
    EXPECT_THAT(text, testing::HasSubstr(adapter));
    EXPECT_THAT(text, testing::StartsWith("Adapter: 0\n"));
    // Where there is a window that somebody could see it shows the lines.
    for (const auto& shown : presenter.alerts) EXPECT_EQ(shown.text, text);
    EXPECT_LE(presenter.alerts.size(), 1u);
}

TEST(NetStationName, ComesFromTheFirstPlaceThatHasOne) {
    const bool registry = kora::platform::registeredComputerName().has_value();
    const struct {
        const char *profile, *variable, *name;
    } rows[] = {
        {"[network]\nComputerName = ALPHA\n", "BETA", "ALPHA"},
        {"[Network]\ncomputername =  A B \n", nullptr, "A B"},
        {"[other]\nComputerName = ALPHA\n[network]\nComputerName =\n", "BETA", "BETA"},
        {nullptr, "", ""},
        {nullptr, nullptr, "unknown"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        kora::test::ScopedPlaces places;
        if (row.profile != nullptr) places.folder.Write("system/system.ini", row.profile);
        if (row.variable != nullptr) places.variables["QZSTATION"] = row.variable;
        const bool inProfile = row.profile != nullptr && std::string(row.profile).find("other") == std::string::npos;
        EXPECT_EQ(kora::stationName(),
                  !inProfile && registry ? *kora::platform::registeredComputerName() : std::string(row.name));
    }
    kora::test::ScopedPlaces places;
    places.folder.Write("system/system.ini", "[network]\nComputerName = " + std::string(32, 'x') + "\n");
    EXPECT_EQ(UtlNetworkStationName(), std::string(31, 'x'));
    places.folder.Write("system/system.ini", "");
    EXPECT_EQ(UtlNetworkStationName(), std::string(31, 'x'));
}

}  // namespace
