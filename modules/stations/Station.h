#pragma once

#include <kora/Net.h>
#include <kora/Tmr.h>

#include <functional>

#include "Request.h"
#include "Roster.h"

namespace stations {

/// This program as one station of a group: joins, announces itself, says lines, keeps the list of who is there, and
/// prints what happens. While it is in a group the host goes on.
class Station : public NetPeer {
public:
    /// @param complain is told what went wrong, in words.
    explicit Station(std::function<void(const CString&)> complain);
    /// Leaves the group.
    ~Station() override;

    /// Follows a request that has no complaint. Lines are said as soon as the station has joined and, where a number
    /// of stations is waited for, those are there.
    void follow(const Request& request);
    /// The group that it is in or is about to join, empty when there is none.
    const CString& group() const { return stay_.group; }
    /// Says goodbye, prints the list, and lets the host end.
    void leave();

    void NetGroupNameAddResult(unsigned short code) override;
    void NetDatagramSendResult(unsigned short code, void* data, short length) override;
    void NetDatagramReceive(unsigned short code, void* data, short length) override;

private:
    struct Timer : TmrTimer {
        explicit Timer(Station& station) : TmrTimer(TmrTypeTimed, OwnedElsewhere()), station_(station) {}
        bool TmrExpiry() override { return station_.lookAtClock(), false; }
        Station& station_;
    };

    void join(const CString& group);
    void failed(const CString& what, unsigned short code);
    void send(Message::Kind kind, const CString& text = {});
    void sent(unsigned short code, bool isLine);
    void announce();
    void note(const Message& message);
    /// How many stations are here, this one included.
    std::size_t company() const;
    void sayLines();
    void endWhenMet();
    void quit();
    void lookAtClock();
    void wakeInTime();

    /// What belongs to one stay in a group.
    struct Stay {
        enum State { apart, joining, joined };
        State state = apart;
        CString group;
        CStringArray unsaid;
        std::size_t wanted = 0;   // stations; it ends when they have met
        std::uint32_t limit = 0;  // milliseconds; it ends then
        bool showsStatus = false;
        bool quitting = false;
        Roster roster;
        std::uint32_t joinTick = 0, announceTick = 0;
        std::uint32_t untilAnnounce = 0;  // milliseconds behind announceTick
        unsigned short sendCode = 0;      // of the last one
        int receives = 0;                 // those that are posted
        unsigned long strange = 0;        // datagrams that were no messages
        bool toldNoRoom = false;
    };

    const std::function<void(const CString&)> complain_;
    const std::uint64_t id_;
    const CString name_;
    const std::uint32_t interval_;  // between announcements, in milliseconds
    Stay stay_;
    Timer timer_;
};

}  // namespace stations
