#include "net/Driver.h"

#include <kora/Ini.h>

#include <cstdint>
#include <utility>

#include "net/Codes.h"
#include "platform/Platform.h"
#include "strings/Guarded.h"

namespace kora {

namespace {

constexpr const char* kSection = "NetBIOS";
constexpr int kNamePort = 137, kDatagramPort = 138;

// A port that is none stays 0, which the driver refuses, rather than becoming one that nobody asked for.
std::uint16_t port(int value) {
    return value > 0 && value <= 0xFFFF ? static_cast<std::uint16_t>(value) : std::uint16_t{0};
}

platform::NetworkSettings settings() {
    platform::NetworkSettings found;
    int namePort = kNamePort, datagramPort = kDatagramPort;
    IniGetString(eIniMain, kSection, "Interface", found.device, /*unquote=*/true);
    IniGetString(eIniMain, kSection, "Broadcast", found.broadcast, /*unquote=*/true);
    IniGetInt(eIniMain, kSection, "NamePort", namePort);
    IniGetInt(eIniMain, kSection, "DatagramPort", datagramPort);
    IniGetString(eIniMain, kSection, "Scope", found.scope, /*unquote=*/true);
    found.namePort = port(namePort);
    found.datagramPort = port(datagramPort);
    return found;
}

unsigned char platformDriver(NetNcb* block) {
    if (block == nullptr) return net::code::kIllegalCommand;
    unsigned char code = net::code::kNoResource;
    guarded([&] { code = platform::network().execute(*block, settings); });
    return code;
}

constinit NetDriver driver = platformDriver;

}  // namespace

unsigned char netDriverCall(NetNcb& block) noexcept {
    try {
        return driver(&block);
    } catch (...) {
        return net::code::kSystemError;
    }
}

}  // namespace kora

NetDriver NetDriverSet(NetDriver driver) {
    return std::exchange(kora::driver, driver != nullptr ? driver : kora::platformDriver);
}
