#pragma once

#include <kora/DoubleList.h>
#include <kora/Kora.h>

/// @file
/// Deferred work: timers that run once a time has passed, and timers that run on every idle pass.

namespace kora {
struct TimerRegistries;
}

/// Timed timers of both kinds behave alike.
enum eTmrType : std::int16_t { TmrTypeTimed = 0, TmrTypeTimedToo = 1, TmrTypeIdle = 2, TmrTypeIdleHighPriority = 3 };

/// Something to be called later: a derived class overrides TmrExpiry().
///
/// A timer is in the library's registry of its type from construction to destruction, stopped at first. All calls come
/// on the user-interface thread, out of TmrDoIdleTimers() and TmrDoTimedTimers(). Timers that are left at the
/// library's exit are deleted by it, but for those that are owned elsewhere.
///
/// The order of the virtual operations is the interface; new ones go at the end.
class KORA_API TmrTimer : public DoubleListElement {
public:
    explicit TmrTimer(eTmrType type);  ///< a stopped timer, in the registry of its type
    /// Takes the timer out of its registry. A timed timer's runs TmrDoTimedTimers() then; what a handler throws there
    /// goes to the trace.
    ~TmrTimer() override;
    TmrTimer(const TmrTimer&) = delete;
    TmrTimer& operator=(const TmrTimer&) = delete;

    /// Sets the timer running. A timed timer is due one interval from now, a running one too, and TmrDoTimedTimers() is
    /// run at once.
    virtual void TmrStart();
    /// Stops the timer; a timed timer's runs TmrDoTimedTimers() too. A timed timer that is stopped after it has fired
    /// is counted out of the running ones a second time.
    virtual void TmrStop();
    /// Sets the interval in milliseconds (1 at first; 32 bits of it count). A running timer stays due when it was.
    virtual void TmrIntervalSet(unsigned long interval);
    virtual unsigned long TmrIntervalGet();  ///< in milliseconds
    /// Called when the timer fires. Answering true has the timer deleted, which the handler must not do itself; it may
    /// start, stop, make and delete others, and start its own again.
    virtual bool TmrExpiry();
    /// Changes an idle timer's flavour. One that changes is running then, even if it was stopped.
    void TmrSetHighPriorityIdle(bool on);

protected:
    struct OwnedElsewhere {};
    /// A timer that belongs to something else: a member, a window. The library's exit stops it, not through TmrStop(),
    /// and leaves it where it is, so it can be started again after the next start-up.
    TmrTimer(eTmrType type, OwnedElsewhere);

private:
    friend struct kora::TimerRegistries;

    std::uint16_t id_;  // counts the timers of the process; for the trace
    eTmrType type_;
    std::uint32_t interval_;
    std::uint32_t due_;
    std::int32_t state_;  // 0 running, 1 stopped, 2 fired
    bool ownedElsewhere_ = false;
};

/// The tick count of the clock in force: milliseconds since the system started, wrapping at 32 bits.
KORA_API unsigned long TmrElapse();
/// Calls every running idle timer, in the order in which they were made, then runs TmrDoTimedTimers(). Does nothing
/// within a pass of its own.
KORA_API void TmrDoIdleTimers();
/// Calls every running timed timer that was due before now, in the order in which they were made; each has fired then
/// and waits to be started again. Due times are compared as plain numbers, so a timer whose due time wraps around
/// fires at once. Does nothing within a pass of its own.
KORA_API void TmrDoTimedTimers();

/// Answers milliseconds that wrap at 32 bits.
typedef unsigned long (*TmrClock)();
/// Puts @p clock in place of the system's tick count and answers the one before; null restores the system's.
KORA_API TmrClock TmrClockSet(TmrClock clock);

/// Whether timers of that kind run, by their counters; the idle loop asks to know whether it is needed.
KORA_API bool TmrTimedRunning();
KORA_API bool TmrIdleRunning();              ///< see TmrTimedRunning()
KORA_API bool TmrHighPriorityIdleRunning();  ///< see TmrTimedRunning()

/// How many milliseconds it takes from now until a running timed timer fires: 0 when one is overdue. One that is due at
/// this very tick fires on the next, so that is 1. A loop that sleeps no longer than this, or until a message comes,
/// calls no timer late; idle timers want their passes besides.
/// @return false, with @p milliseconds untouched, when no timed timer runs, and within TmrDoTimedTimers(), since none
///         fires before its end.
KORA_API bool TmrNextDue(unsigned long& milliseconds);
