#pragma once

#include <vector>

#include "platform/posix/netbios/Name.h"

namespace kora::platform::netbios {

/// Number 0 is none, 1 the adapter's own and 255 stands for any name.
inline constexpr std::uint8_t kFirstNumber = 2, kLastNumber = 254, kAnyNumber = 255;
inline constexpr std::size_t kMaxNames = kLastNumber - kFirstNumber + 1;

struct LocalName {
    Name name{};
    std::uint8_t number = 0;
    bool group = false;
    bool registered = false;  ///< false while it is claimed
};

/// The names of this node, those that it is about to claim included. Pointers to names last until the next change.
class NameTable {
public:
    NameTable();

    const std::vector<LocalName>& names() const { return names_; }
    LocalName* find(const Name& name);
    LocalName* find(std::uint8_t number);
    /// A name with its registration done.
    const LocalName* registered(const Name& name);
    const LocalName* registered(std::uint8_t number);
    /// Adds a name that is not there. Null when every number is taken.
    LocalName* add(const Name& name, bool group);
    void remove(std::uint8_t number);
    void clear() { names_.clear(); }

private:
    std::vector<LocalName> names_;
    std::uint8_t lastNumber_ = kFirstNumber - 1;
};

}  // namespace kora::platform::netbios
