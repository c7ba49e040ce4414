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
std::uint16_t port(const char* key, int byDefault) {
    int value = byDefault;
    IniGetInt(eIniMain, kSection, key, byDefault, value);
    return value > 0 && value <= 0xFFFF ? static_cast<std::uint16_t>(value) : std::uint16_t{0};
}

std::string text(const char* key) {
    CString value;
    IniGetString(eIniMain, kSection, key, value, /*unquote=*/true);
    return value;
}

platform::NetworkSettings settings() {
    return {.device = text("Interface"),
            .broadcast = text("Broadcast"),
            .namePort = port("NamePort", kNamePort),
            .datagramPort = port("DatagramPort", kDatagramPort),
            .scope = text("Scope")};
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
