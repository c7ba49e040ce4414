#pragma once

#include <cstddef>
#include <ctime>
#include <span>

#include "Message.h"

namespace stations {

/// A moment, for reckoning (TmrElapse(), which wraps) and for people.
struct Moment {
    std::uint32_t tick = 0;
    std::time_t time = 0;
};

/// A station that was heard.
struct Heard {
    std::uint64_t id = 0;
    CString name;
    Moment first, last;
    std::uint32_t datagrams = 0;
    std::uint32_t patience = 0;  ///< how long it may be silent, in milliseconds
    std::uint32_t hears = 0;     ///< the most stations that it said it hears
    bool gone = false;
};

/// Who was heard, 256 stations at most. Those that are gone stay until room is needed.
class Roster {
public:
    static constexpr std::size_t kMost = 256;

    enum News {
        nothing,  ///< the station was here, or stays gone
        came,
        left,
        noRoom  ///< the list is full of stations that are here, and this one is not kept
    };
    /// Notes a message. @p place is where the station stands then, meaningless where there is none.
    News hear(const Message& message, Moment now, std::size_t& place);

    /// Takes the stations as gone that have been silent too long, and answers their places.
    std::vector<std::size_t> silence(std::uint32_t tick);
    /// How many milliseconds from now the first of the stations will have been silent too long; @p limit at most.
    std::uint32_t untilSilence(std::uint32_t tick, std::uint32_t limit) const;

    /// The stations in the order in which they were first heard; a place changes hands only when room was needed.
    std::span<const Heard> all() const { return stations_; }
    /// How many are here beside the station of that number.
    std::size_t hereBeside(std::uint64_t id) const;
    /// How many have said that they hear so many, those that are gone since included.
    std::size_t hearing(std::size_t many) const;
    /// The name, with some of the number behind it where several stations have the same.
    CString label(std::size_t place) const;

private:
    std::vector<Heard> stations_;
};

}  // namespace stations
