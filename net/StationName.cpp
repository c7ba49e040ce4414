#include "net/StationName.h"

#include <kora/Net.h>
#include <kora/Utl.h>

#include <cstddef>
#include <optional>
#include <string>

#include "platform/Platform.h"
#include "settings/ProfileText.h"
#include "strings/Guarded.h"

namespace kora {

namespace {

constexpr std::size_t kLongest = 31;

struct {
    bool known = false;
    char name[kLongest + 1] = {};
} constinit station;

/// Entry ComputerName of section "network" in the system's own profile; empty when there is none.
std::string nameInSystemProfile() {
    std::string directory = platform::environment().systemDirectory();
    if (directory.empty()) return {};
    if (!directory.ends_with('\\')) directory += '\\';
    std::string text;
    platform::Failure failure;
    if (!platform::fileSystem().read(directory + "system.ini", text, failure)) return {};
    ProfileLine line;
    LinePlace place;
    return findProfileEntry(text, "network", "ComputerName", line, place) ? std::string(line.value) : std::string();
}

}  // namespace

std::string stationName() {
    if (std::string name = nameInSystemProfile(); !name.empty()) return name;
    if (const int system = UtlOS(); system >= 1 && system <= 3)
        if (std::optional<std::string> name = platform::registeredComputerName()) return *name;
    return platform::environment().variable("QZSTATION").value_or("unknown");
}

}  // namespace kora

const char* UtlNetworkStationName() {
    if (!kora::station.known)
        kora::station.known = kora::guarded([] {
            const std::string name = kora::stationName();
            kora::station.name[name.copy(kora::station.name, kora::kLongest)] = '\0';
        });
    return kora::station.name;
}
