#include "Station.h"

#include <kora/Ini.h>
#include <kora/Tsk.h>

#include <algorithm>
#include <new>
#include <random>
#include <utility>

#include "Report.h"
#include "VisibleText.h"

namespace stations {

namespace {

constexpr int kDefaultSeconds = 5;
// Newcomers are answered together, so that a crowd of them, real or not, costs ten datagrams a second and no more.
constexpr std::uint32_t kAnswer = 100;
// The library posts two when the name is registered.
constexpr int kReceives = 2;

std::uint64_t randomId() {
    std::random_device random;
    return std::uint64_t{random()} << 32 | random();
}

std::uint32_t intervalSetting() {
    int seconds = kDefaultSeconds;
    IniGetInt(eIniMain, "Stations", "Announce", kDefaultSeconds, seconds);
    return static_cast<std::uint32_t>(std::clamp(seconds, 1, static_cast<int>(kMostSeconds))) * 1000;
}

// Nobody takes note of a station without a name.
CString ownName() {
    const CString name = visible(UtlNetworkStationName());
    return name.find_first_not_of(' ') != name.npos ? name : "unknown";
}

std::uint32_t tickNow() { return static_cast<std::uint32_t>(TmrElapse()); }

bool isLastOfReceive(unsigned short code) { return code == 15 || code == 19 || code == 21 || code == 23 || code == 36; }

CString counted(std::size_t count, const char* one, const char* many) {
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

}  // namespace

Station::Station(std::function<void(const CString&)> complain)
    : complain_(std::move(complain)), id_(randomId()), name_(ownName()), interval_(intervalSetting()), timer_(*this) {}

Station::~Station() { leave(); }

void Station::follow(const Request& request) {
    stay_.unsaid.insert(stay_.unsaid.end(), request.lines.begin(), request.lines.end());
    if (request.stations != 0) stay_.wanted = request.stations;
    if (request.seconds != 0) stay_.limit = request.seconds * 1000;
    stay_.showsStatus = stay_.showsStatus || request.status;
    if (!request.group.empty()) join(request.group);
    if (stay_.state == Stay::joined) sayLines();
    if (stay_.state != Stay::apart) wakeInTime();
}

void Station::join(const CString& group) {
    unsigned short code = NetIsAvailable();
    if (code == 0) code = NetGroupNameAdd(group.c_str());
    stay_.group = group;
    if (code != 0) return failed("cannot join " + visible(group), code);
    stay_.state = Stay::joining;
    stay_.joinTick = tickNow();
    TskGetApp()->TskAppStay(true);
}

void Station::failed(const CString& what, unsigned short code) {
    if (stay_.showsStatus) NetStatusDialog();
    leave();
    complain_(what + ": " + NetMapError(code) + " (code " + std::to_string(code) + ')');
}

void Station::leave() {
    const Stay::State before = std::exchange(stay_.state, Stay::apart);
    timer_.TmrStop();
    if (before == Stay::joined) {
        send(Message::bye);
        const CString status = NetStatusText();
        NetGroupNameDelete();
        printEvent("left " + visible(stay_.group));
        printLines(tableOf(stay_.roster, id_));
        if (stay_.strange != 0)
            printLines({counted(stay_.strange, "datagram was", "datagrams were") + " of no kind that is known"});
        if (stay_.showsStatus) printLines({status});
    }
    if (before != Stay::apart) TskGetApp()->TskAppStay(false);
    stay_ = {};
}

void Station::NetGroupNameAddResult(unsigned short code) {
    if (stay_.state != Stay::joining) return;
    if (code != 0) return failed("cannot join " + visible(stay_.group), code);
    stay_.state = Stay::joined;
    stay_.receives = kReceives;
    printEvent("joined " + visible(stay_.group) + " as " + name_);
    if (stay_.showsStatus) NetStatusDialog();
    // The receives are posted behind this notification, so what is sent comes a tick later: else nobody might hear it
    // here.
    stay_.announceTick = tickNow();
    wakeInTime();
}

void Station::announce() {
    stay_.announceTick = tickNow();
    stay_.untilAnnounce = interval_;
    send(Message::here);
}

void Station::send(Message::Kind kind, const CString& text) {
    Message message;
    message.kind = kind;
    message.sender = id_;
    message.name = name_;
    message.text = text;
    message.seconds = interval_ / 1000;
    message.hears = static_cast<std::uint32_t>(company());
    CString bytes = bytesOf(message);
    const unsigned short code = NetDatagramSend(bytes.data(), static_cast<short>(bytes.size()));
    if (code != 0) sent(code, kind == Message::say);
}

void Station::NetDatagramSendResult(unsigned short code, void* data, short length) {
    const std::optional<Message> message = messageIn(data, static_cast<std::size_t>(std::max<short>(length, 0)));
    sent(code, message && message->kind == Message::say);
}

// A line that is lost is an error; announcements come again, so only the first of a row of failures is told.
void Station::sent(unsigned short code, bool isLine) {
    if (stay_.state != Stay::joined) return;  // a goodbye that is lost is missed soon enough
    const unsigned short before = std::exchange(stay_.sendCode, code);
    const CString why = CString(NetMapError(code)) + " (code " + std::to_string(code) + ')';
    if (code != 0 && isLine) return complain_("a line was not sent: " + why);
    if (code != 0 && code != before) printEvent("announcements cannot be sent: " + why);
    if (code == 0 && before != 0) printEvent("announcements can be sent again");
}

void Station::NetDatagramReceive(unsigned short code, void* data, short length) {
    if (stay_.state != Stay::joined) return;
    if (isLastOfReceive(code)) {
        if (--stay_.receives == 0) failed("no longer in " + visible(stay_.group), code);
        return;
    }
    const std::optional<Message> message = messageIn(data, static_cast<std::size_t>(std::max<short>(length, 0)));
    if (code != 0 || !message)
        ++stay_.strange;
    else if (message->sender != id_ || message->kind != Message::bye)  // who leaves hears nothing any more
        note(*message);
}

void Station::note(const Message& message) {
    std::size_t place = 0;
    const bool isOwn = message.sender == id_;
    switch (stay_.roster.hear(message, {tickNow(), std::time(nullptr)}, place)) {
        case Roster::came:
            if (!isOwn) stay_.untilAnnounce = std::min(stay_.untilAnnounce, tickNow() - stay_.announceTick + kAnswer);
            if (!isOwn || stay_.roster.all()[place].datagrams != 1) printEvent(stay_.roster.label(place) + " is here");
            break;
        case Roster::left:
            printEvent(stay_.roster.label(place) + " has left");
            break;
        case Roster::noRoom:
            if (!std::exchange(stay_.toldNoRoom, true))
                printEvent(CString("more than ") + std::to_string(Roster::kMost) +
                           " stations are here; others are not listed");
            return;
        case Roster::nothing:
            break;
    }
    if (message.kind == Message::say) printEvent(stay_.roster.label(place) + ": " + message.text);
    sayLines();
    endWhenMet();
    wakeInTime();
}

std::size_t Station::company() const { return 1 + stay_.roster.hereBeside(id_); }

void Station::sayLines() {
    if (company() < stay_.wanted) return;
    for (const CString& line : std::exchange(stay_.unsaid, {})) send(Message::say, line);
}

// They have met when so many say that they hear so many: each has had the lines of the others by then, since those are
// sent before a station says so.
void Station::endWhenMet() {
    if (stay_.wanted != 0 && stay_.unsaid.empty() && stay_.roster.hearing(stay_.wanted) >= stay_.wanted) quit();
}

void Station::quit() {
    if (!std::exchange(stay_.quitting, true)) TskQuitRequest();
}

// The timer may come early: every due time behind the wrap of the tick count fires at once. So what is due is reckoned
// from the clock alone.
void Station::lookAtClock() {
    const std::uint32_t now = tickNow();
    for (const std::size_t place : stay_.roster.silence(now))
        printEvent(stay_.roster.label(place) + " is gone: nothing was heard for " +
                   std::to_string(stay_.roster.all()[place].patience / 1000) + " seconds");
    if (stay_.state == Stay::joined && now - stay_.announceTick >= stay_.untilAnnounce) {
        announce();
        sayLines();
    }
    if (stay_.limit != 0 && now - stay_.joinTick >= stay_.limit && !stay_.quitting) {
        quit();
        if (stay_.wanted != 0)
            complain_(counted(stay_.wanted, "station", "stations") + " did not meet within " +
                      counted(stay_.limit / 1000, "second", "seconds") + "; here: " + std::to_string(company()));
    }
    wakeInTime();
}

void Station::wakeInTime() {
    constexpr std::uint32_t kLongest = kMostSeconds * 1000;
    const std::uint32_t now = tickNow();
    std::uint32_t rest = stay_.roster.untilSilence(now, kLongest);
    const auto within = [&rest, now](std::uint32_t since, std::uint32_t wait) {
        rest = std::min(rest, now - since < wait ? wait - (now - since) : 0);
    };
    if (stay_.state == Stay::joined) within(stay_.announceTick, stay_.untilAnnounce);
    if (stay_.limit != 0 && !stay_.quitting) within(stay_.joinTick, stay_.limit);
    timer_.TmrIntervalSet(rest);
    timer_.TmrStart();
}

}  // namespace stations
