#include "tasks/Timers.h"

#include <kora/Tmr.h>
#include <kora/Trace.h>

#include <algorithm>
#include <new>
#include <utility>

#include "core/TraceRing.h"
#include "platform/Ticks.h"

namespace kora {

namespace {

constexpr std::int32_t kRunning = 0;
constexpr std::int32_t kStopped = 1;
constexpr std::int32_t kFired = 2;

constexpr std::uint64_t kNever = std::uint64_t{1} << 32;  // later than every tick

unsigned long systemClock() { return platform::tickCount(); }

// The timers of one sort, in the order in which they were made, and where a pass over them stands.
struct Registry {
    DoubleList* timers = nullptr;
    bool inPass = false;
    TmrTimer* called = nullptr;  // whose handler runs; null once that timer is destroyed
    TmrTimer* next = nullptr;    // the one to visit afterwards

    TmrTimer* behind(TmrTimer* timer) const {
        return timer == timers->last ? nullptr : static_cast<TmrTimer*>(timer->next);
    }

    void remove(TmrTimer* timer) {
        if (timer->next == nullptr) return;  // there was no memory for a registry when it was made
        if (called == timer) called = nullptr;
        if (next == timer) next = behind(timer);
        timers->Detach(timer);
    }
};

// Keeps a registry from being passed over a second time from within.
class Pass {
public:
    explicit Pass(Registry& registry) : registry_(registry) { registry_.inPass = true; }
    ~Pass() {
        registry_.inPass = false;
        registry_.called = registry_.next = nullptr;
    }
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;

    /// Calls @p visitor with each timer. The next one is taken before, so those that are made meanwhile join the row
    /// behind it, and those that are destroyed leave it.
    template <class Visitor>
    void visitAll(Visitor visitor) {
        if (registry_.timers == nullptr) return;
        for (auto* timer = static_cast<TmrTimer*>(registry_.timers->First()); timer != nullptr;
             timer = registry_.next) {
            registry_.next = registry_.behind(timer);
            visitor(timer);
        }
    }

private:
    Registry& registry_;
};

}  // namespace

struct TimerRegistries {
    Registry timed, idle;
    std::int32_t timedRunning = 0, idleRunning = 0, highPriorityIdleRunning = 0;
    std::uint16_t timersMade = 0;
    TmrClock clock = systemClock;
    // No running timed timer is due before this, so most passes need not look at any.
    std::uint64_t leastDue = kNever;
    bool leastDueExact = true;

    std::uint32_t now() const {
        if (clock == systemClock) [[likely]]
            return platform::tickCount();
        return static_cast<std::uint32_t>(clock());
    }

    static bool isIdle(const TmrTimer* timer) {
        return timer->type_ == TmrTypeIdle || timer->type_ == TmrTypeIdleHighPriority;
    }
    Registry& registryOf(const TmrTimer* timer) { return isIdle(timer) ? idle : timed; }
    std::int32_t& counterOf(const TmrTimer* timer) {
        if (timer->type_ == TmrTypeIdle) return idleRunning;
        return timer->type_ == TmrTypeIdleHighPriority ? highPriorityIdleRunning : timedRunning;
    }

    bool make() {
        if (timed.timers != nullptr) return true;
        timed.timers = new (std::nothrow) DoubleList;
        idle.timers = new (std::nothrow) DoubleList;
        if (timed.timers != nullptr && idle.timers != nullptr) return true;
        removeBoth();
        return false;
    }

    void removeBoth() {
        delete std::exchange(timed.timers, nullptr);
        delete std::exchange(idle.timers, nullptr);
    }

    void setDue(TmrTimer* timer, std::uint32_t due) {
        timer->due_ = due;
        leastDue = std::min<std::uint64_t>(leastDue, due);
    }

    // To be called before a timer stops running or is due at another time.
    void forgetDue(const TmrTimer* timer) {
        if (timer->state_ == kRunning && timer->due_ == leastDue) leastDueExact = false;
    }

    void findLeastDue() {
        leastDue = kNever;
        leastDueExact = true;
        if (timed.timers == nullptr) return;
        DoubleListElement* cursor = nullptr;
        while (const auto* timer = static_cast<TmrTimer*>(timed.timers->Next(cursor)))
            if (timer->state_ == kRunning) leastDue = std::min<std::uint64_t>(leastDue, timer->due_);
    }

    static void expire(Registry& registry, TmrTimer* timer) {
        traceStep(trace::kTimerExpiry);
        traceData(timer->id_);
        registry.called = timer;
        const bool done = timer->TmrExpiry();
        if (done && registry.called == timer) delete timer;
    }

    // Apart, so that a poll that finds nothing due is little more than a look at the clock.
    [[gnu::noinline]] void expireDue(std::uint32_t tick) {
        Pass pass(timed);
        // What is left is counted anew; an exception on the way has the next pass look again.
        leastDue = kNever;
        leastDueExact = false;
        struct Incomplete {
            std::uint64_t& least;
            bool done;
            ~Incomplete() {
                if (!done) least = 0;
            }
        } walk{leastDue, false};
        pass.visitAll([&](TmrTimer* timer) {
            if (timer->state_ != kRunning) return;
            if (timer->due_ >= tick) {
                setDue(timer, timer->due_);
                return;
            }
            --timedRunning;
            timer->state_ = kFired;
            expire(timed, timer);
        });
        walk.done = true;
    }

    void doTimed() {
        if (timed.inPass) [[unlikely]]
            return;
        const std::uint32_t tick = now();
        if (leastDue < tick) [[unlikely]]
            expireDue(tick);
    }

    void doIdle() {
        if (idle.inPass) return;
        {
            Pass pass(idle);
            pass.visitAll([this](TmrTimer* timer) {
                if (timer->state_ == kRunning) expire(idle, timer);
            });
        }
        doTimed();
    }

    void halt(TmrTimer* timer) {
        forgetDue(timer);
        if (std::exchange(timer->state_, kStopped) == kRunning) --counterOf(timer);
    }

    void destroyAll() {
        // Nothing fires from here on. Each timer takes itself out, and those that it owns; it may make others.
        Pass timedPass(timed), idlePass(idle);
        bool left = false, deleted;
        do {
            left = deleted = false;
            for (Pass* pass : {&timedPass, &idlePass})
                pass->visitAll([&](TmrTimer* timer) {
                    if (timer->ownedElsewhere_) {
                        halt(timer);
                        left = true;
                    } else {
                        delete timer;
                        deleted = true;
                    }
                });
        } while (deleted);
        if (!left) removeBoth();
    }
};

namespace {

constinit TimerRegistries timers;

}  // namespace

bool timersStart() { return timers.make(); }

void timersStop() {
    try {
        timers.destroyAll();
    } catch (...) {
        TraceException("Exception in TmrExit");
    }
}

bool timersNextDue(std::uint32_t& milliseconds) {
    if (timers.timed.inPass) return false;
    if (!timers.leastDueExact) timers.findLeastDue();
    if (timers.leastDue == kNever) return false;
    const std::uint32_t now = timers.now();
    // A timer fires on the tick behind the one at which it is due.
    const std::uint64_t rest = timers.leastDue < now ? 0 : timers.leastDue - now + 1;
    milliseconds = static_cast<std::uint32_t>(std::min<std::uint64_t>(rest, UINT32_MAX));
    return true;
}

}  // namespace kora

using kora::kRunning;
using kora::kStopped;
using kora::timers;

TmrTimer::TmrTimer(eTmrType type) : id_(timers.timersMade++), type_(type), interval_(1), due_(0), state_(kStopped) {
    if (timers.make()) timers.registryOf(this).timers->AttachAtTail(this);
}

TmrTimer::TmrTimer(eTmrType type, OwnedElsewhere) : TmrTimer(type) { ownedElsewhere_ = true; }

TmrTimer::~TmrTimer() {
    timers.forgetDue(this);
    timers.registryOf(this).remove(this);
    if (state_ == kRunning) --timers.counterOf(this);
    if (timers.isIdle(this)) return;
    try {
        timers.doTimed();
    } catch (...) {
        TraceException("Exception in TmrExpiry");
    }
}

void TmrTimer::TmrStart() {
    timers.forgetDue(this);
    const bool wasRunning = std::exchange(state_, kRunning) == kRunning;
    if (!wasRunning) ++timers.counterOf(this);
    if (timers.isIdle(this)) return;
    timers.setDue(this, timers.now() + interval_);
    timers.doTimed();
}

void TmrTimer::TmrStop() {
    timers.forgetDue(this);
    const bool wasStopped = std::exchange(state_, kStopped) == kStopped;
    std::int32_t& counter = timers.counterOf(this);
    if (!timers.isIdle(this)) timers.doTimed();  // a handler may delete this timer
    if (!wasStopped) --counter;
}

void TmrTimer::TmrIntervalSet(unsigned long interval) { interval_ = static_cast<std::uint32_t>(interval); }

unsigned long TmrTimer::TmrIntervalGet() { return interval_; }

bool TmrTimer::TmrExpiry() { return false; }

void TmrTimer::TmrSetHighPriorityIdle(bool on) {
    const eTmrType type = on ? TmrTypeIdleHighPriority : TmrTypeIdle;
    if (!timers.isIdle(this) || type == type_) return;
    TmrStop();
    type_ = type;
    TmrStart();
}

unsigned long TmrElapse() { return timers.now(); }

void TmrDoIdleTimers() { timers.doIdle(); }

void TmrDoTimedTimers() { timers.doTimed(); }

TmrClock TmrClockSet(TmrClock clock) {
    return std::exchange(timers.clock, clock != nullptr ? clock : kora::systemClock);
}

bool TmrTimedRunning() { return timers.timedRunning > 0; }

bool TmrIdleRunning() { return timers.idleRunning > 0; }

bool TmrHighPriorityIdleRunning() { return timers.highPriorityIdleRunning > 0; }
