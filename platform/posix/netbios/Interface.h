#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace kora::platform::netbios {

/// A network interface as it is now; addresses are in host order.
struct Interface {
    std::string name;
    unsigned index = 0;
    std::uint32_t address = 0, broadcast = 0;
    std::array<unsigned char, 6> hardware{};
    unsigned loopback = 0;  ///< the index of the loopback interface; 0 where there is none
};

/// The interface @p name, or for an empty one the first that is up and can broadcast. It has an address of IPv4;
/// nothing when there is no such interface. One that cannot broadcast is given the address that its net would have.
std::optional<Interface> findInterface(const std::string& name);

inline bool isLoopback(std::uint32_t address) { return address >> 24 == 127; }

}  // namespace kora::platform::netbios
