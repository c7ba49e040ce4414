#pragma once

#include <algorithm>

#include "platform/posix/netbios/Name.h"

namespace kora::platform::netbios {

/// Milliseconds of a clock that never goes back.
using Time = std::uint64_t;
inline constexpr Time kNever = UINT64_MAX;

/// Who answers to a name elsewhere: a group, or one node.
struct Owner {
    bool group = false;
    std::uint32_t address = 0;  ///< in host order
};

/// The last few answers to queries, each remembered for a minute, so that not every datagram asks.
class NameCache {
public:
    std::optional<Owner> find(const Name& name, Time now) const {
        for (const Entry& entry : entries_) {
            if (entry.until > now && entry.name == name) return entry.owner;
        }
        return std::nullopt;
    }
    void put(const Name& name, const Owner& owner, Time now) {
        auto place =
            std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) { return entry.name == name; });
        // The one that is forgotten first makes room.
        if (place == entries_.end()) place = std::ranges::min_element(entries_, {}, &Entry::until);
        *place = {name, owner, now + kRemembered};
    }
    void clear() { entries_ = {}; }

private:
    static constexpr Time kRemembered = 60'000;
    struct Entry {
        Name name{};
        Owner owner;
        Time until = 0;
    };
    std::array<Entry, 16> entries_;
};

}  // namespace kora::platform::netbios
