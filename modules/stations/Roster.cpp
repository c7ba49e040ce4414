#include "Roster.h"

#include <algorithm>
#include <cstdio>

namespace stations {

namespace {

// Stations announce themselves once in an interval; two datagrams in a row may be lost.
constexpr std::uint32_t kIntervals = 3;

std::uint32_t patienceOf(std::uint32_t seconds) { return kIntervals * seconds * 1000; }

std::uint32_t silenceOf(const Heard& station, std::uint32_t tick) { return tick - station.last.tick; }

}  // namespace

Roster::News Roster::hear(const Message& message, Moment now, std::size_t& place) {
    auto station = std::ranges::find(stations_, message.sender, &Heard::id);
    const bool isNew = station == stations_.end();
    if (message.kind == Message::bye && (isNew || station->gone)) return nothing;
    if (isNew && stations_.size() < kMost) {
        station = stations_.emplace(station);
    } else if (isNew) {
        // The place of who has been gone for the longest time.
        for (auto other = stations_.begin(); other != stations_.end(); ++other)
            if (other->gone &&
                (station == stations_.end() || silenceOf(*other, now.tick) > silenceOf(*station, now.tick)))
                station = other;
        if (station == stations_.end()) return noRoom;
    }
    const News news = message.kind == Message::bye ? left : isNew || station->gone ? came : nothing;
    if (isNew) {
        *station = {};
        station->id = message.sender;
        station->name = message.name;
        station->first = now;
        station->patience = patienceOf(kMostSeconds);  // until it tells
    }
    station->last = now;
    ++station->datagrams;
    station->gone = message.kind == Message::bye;
    if (message.kind == Message::here) {
        station->patience = patienceOf(message.seconds);
        station->hears = std::max(station->hears, message.hears);
    }
    place = static_cast<std::size_t>(station - stations_.begin());
    return news;
}

std::vector<std::size_t> Roster::silence(std::uint32_t tick) {
    std::vector<std::size_t> silent;
    for (std::size_t place = 0; place < stations_.size(); ++place) {
        Heard& station = stations_[place];
        if (station.gone || silenceOf(station, tick) < station.patience) continue;
        silent.push_back(place);
        station.gone = true;
    }
    return silent;
}

std::uint32_t Roster::untilSilence(std::uint32_t tick, std::uint32_t limit) const {
    for (const Heard& station : stations_) {
        if (station.gone) continue;
        const std::uint32_t silent = silenceOf(station, tick);
        limit = std::min(limit, silent < station.patience ? station.patience - silent : 0);
    }
    return limit;
}

std::size_t Roster::hereBeside(std::uint64_t id) const {
    return static_cast<std::size_t>(
        std::ranges::count_if(stations_, [id](const Heard& station) { return !station.gone && station.id != id; }));
}

std::size_t Roster::hearing(std::size_t many) const {
    return static_cast<std::size_t>(
        std::ranges::count_if(stations_, [many](const Heard& station) { return station.hears >= many; }));
}

CString Roster::label(std::size_t place) const {
    const Heard& station = stations_[place];
    if (std::ranges::count(stations_, station.name, &Heard::name) == 1) return station.name;
    char digits[6];
    std::snprintf(digits, sizeof digits, "#%04x", static_cast<unsigned>(station.id & 0xFFFF));
    return station.name + digits;
}

}  // namespace stations
