#include "tasks/Timers.h"

#include <gmock/gmock.h>
#include <kora/Tmr.h>

#include <algorithm>
#include <functional>
#include <list>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/support/VirtualSlot.h"

namespace {

using kora::test::virtualSlot;
using testing::ElementsAre;

unsigned long tick;

class Timers : public testing::Test {
protected:
    Timers() {
        TmrClockSet([] { return tick; });
        tick = 1000;
    }
    ~Timers() override {
        kora::timersStop();
        TmrClockSet(nullptr);
    }
};

TEST_F(Timers, SlotsStandInTheOrderThatModulesAreCompiledAgainst) {
    EXPECT_EQ(virtualSlot(&TmrTimer::TmrStart), 1);
    EXPECT_EQ(virtualSlot(&TmrTimer::TmrStop), 2);
    EXPECT_EQ(virtualSlot(&TmrTimer::TmrIntervalSet), 3);
    EXPECT_EQ(virtualSlot(&TmrTimer::TmrIntervalGet), 4);
    EXPECT_EQ(virtualSlot(&TmrTimer::TmrExpiry), 5);
    EXPECT_EQ(virtualSlot(&TmrTimer::TmrSetHighPriorityIdle), -1);
}

// Some timers and two passes over them; what a handler does is decided here, the same for the library and the model.
class Bench {
public:
    explicit Bench(unsigned seed) : random_(seed) {}
    virtual ~Bench() = default;
    virtual void make(int number, int type) = 0;
    virtual void destroy(int number) = 0;  // the operations on timers ignore numbers that are gone
    virtual void start(int number) = 0;
    virtual void stop(int number) = 0;
    virtual void setInterval(int number, unsigned long interval) = 0;
    virtual void setHighPriority(int number, bool on) = 0;
    virtual void doTimed() = 0;
    virtual void doIdle() = 0;
    virtual std::string running() = 0;

    void act(int except) {
        const int number = static_cast<int>(below(static_cast<unsigned>(made_ + 1)));
        const unsigned choice = below(12);
        if (choice == 0 && made_ < 40) {
            const int type = static_cast<int>(below(6)) - 1;
            make(made_++, type);
        } else if (choice == 1) {
            if (number != except) destroy(number);
        } else if (choice <= 5) {
            start(number);
        } else if (choice <= 7) {
            stop(number);
        } else if (choice == 8) {
            const unsigned interval = below(4);
            setInterval(number, interval < 3 ? interval : 0xFFFFFFF0 + below(16));
        } else if (choice == 9) {
            setHighPriority(number, below(2) == 0);
        } else if (choice == 10) {
            doTimed();
        } else {
            doIdle();
        }
    }

    bool expired(int number) {
        log += std::to_string(number) + '@' + std::to_string(tick) + ' ';
        const unsigned actions = below(3);
        if (log.size() < 2000)
            for (unsigned i = 0; i < actions; ++i) act(number);
        if (below(3) == 0) start(number);
        return below(6) == 0;
    }

    std::string log;

private:
    unsigned below(unsigned end) { return static_cast<unsigned>(random_()) % end; }
    std::mt19937 random_;
    int made_ = 0;
};

class Real : public Bench {
public:
    explicit Real(unsigned seed) : Bench(seed), timers_(41) {}
    ~Real() override { kora::timersStop(); }
    void make(int number, int type) override {
        timers_[static_cast<std::size_t>(number)] = new Timer(*this, number, static_cast<eTmrType>(type));
    }
    void destroy(int number) override { delete timer(number); }
    void start(int number) override { with(number, &TmrTimer::TmrStart); }
    void stop(int number) override { with(number, &TmrTimer::TmrStop); }
    void setInterval(int number, unsigned long interval) override { with(number, &TmrTimer::TmrIntervalSet, interval); }
    void setHighPriority(int number, bool on) override { with(number, &TmrTimer::TmrSetHighPriorityIdle, on); }
    void doTimed() override { TmrDoTimedTimers(); }
    void doIdle() override { TmrDoIdleTimers(); }
    std::string running() override {
        return {TmrTimedRunning() ? 'T' : '-', TmrIdleRunning() ? 'I' : '-', TmrHighPriorityIdleRunning() ? 'H' : '-'};
    }

private:
    struct Timer : TmrTimer {
        Timer(Real& bench_, int number_, eTmrType type) : TmrTimer(type), bench(bench_), number(number_) {}
        ~Timer() override { bench.timers_[static_cast<std::size_t>(number)] = nullptr; }
        bool TmrExpiry() override { return bench.expired(number); }
        Real& bench;
        int number;
    };
    Timer* timer(int number) { return timers_[static_cast<std::size_t>(number)]; }
    template <class Operation, class... Arguments>
    void with(int number, Operation operation, Arguments... arguments) {
        if (Timer* t = timer(number)) (t->*operation)(arguments...);
    }
    std::vector<Timer*> timers_;
};

class Model : public Bench {
public:
    Model(unsigned seed, int timedRunning) : Bench(seed), counters_{timedRunning, 0, 0} {}
    void make(int number, int type) override { row(type).push_back({number, type, 1, 0, 1}); }
    void destroy(int number) override {
        Timer* t = find(number);
        if (t == nullptr) return;
        const bool timed = !isIdle(t->type);
        if (t->state == 0) --counter(t->type);
        auto& timers = row(t->type);
        auto& next = timed ? nextTimed_ : nextIdle_;
        for (auto it = timers.begin(); it != timers.end(); ++it)
            if (&*it == t) {
                if (next == it) ++next;
                timers.erase(it);
                break;
            }
        if (timed) doTimed();
    }
    void start(int number) override {
        Timer* t = find(number);
        if (t == nullptr) return;
        if (t->state != 0) ++counter(t->type);
        t->state = 0;
        if (isIdle(t->type)) return;
        t->due = static_cast<std::uint32_t>(tick) + t->interval;
        doTimed();
    }
    void stop(int number) override {
        Timer* t = find(number);
        if (t == nullptr) return;
        const bool counted = t->state != 1;
        const int type = t->type;
        t->state = 1;
        if (!isIdle(type)) doTimed();
        if (counted) --counter(type);
    }
    void setInterval(int number, unsigned long interval) override {
        if (Timer* t = find(number)) t->interval = static_cast<std::uint32_t>(interval);
    }
    void setHighPriority(int number, bool on) override {
        Timer* t = find(number);
        if (t == nullptr || !isIdle(t->type) || t->type == (on ? 3 : 2)) return;
        stop(number);
        t->type = on ? 3 : 2;
        start(number);
    }
    void doTimed() override {
        if (inTimed_) return;
        inTimed_ = true;
        const auto now = static_cast<std::uint32_t>(tick);
        for (auto it = timed_.begin(); it != timed_.end(); it = nextTimed_) {
            nextTimed_ = std::next(it);
            if (it->state != 0 || it->due >= now) continue;
            --counter(it->type);
            it->state = 2;
            const int number = it->number;
            if (expired(number)) destroy(number);
        }
        inTimed_ = false;
    }
    void doIdle() override {
        if (inIdle_) return;
        inIdle_ = true;
        for (auto it = idle_.begin(); it != idle_.end(); it = nextIdle_) {
            nextIdle_ = std::next(it);
            if (it->state != 0) continue;
            const int number = it->number;
            if (expired(number)) destroy(number);
        }
        inIdle_ = false;
        doTimed();
    }
    std::string running() override {
        return {counters_[0] > 0 ? 'T' : '-', counters_[1] > 0 ? 'I' : '-', counters_[2] > 0 ? 'H' : '-'};
    }

    // Milliseconds until the first fires, -1 when none runs.
    std::int64_t nextDue() const {
        std::int64_t least = -1;
        for (const Timer& t : timed_)
            if (t.state == 0 && (least < 0 || t.due < least)) least = t.due;
        return least < 0 ? -1 : std::max<std::int64_t>(0, least + 1 - static_cast<std::int64_t>(tick));
    }

private:
    struct Timer {
        int number, type;
        std::uint32_t interval, due;
        int state;
    };
    static bool isIdle(int type) { return type == 2 || type == 3; }
    std::list<Timer>& row(int type) { return isIdle(type) ? idle_ : timed_; }
    int& counter(int type) { return counters_[isIdle(type) ? type - 1 : 0]; }
    Timer* find(int number) {
        for (auto* timers : {&timed_, &idle_})
            for (Timer& t : *timers)
                if (t.number == number) return &t;
        return nullptr;
    }
    std::list<Timer> timed_, idle_;
    std::list<Timer>::iterator nextTimed_, nextIdle_;
    bool inTimed_ = false, inIdle_ = false;
    int counters_[3];
};

// The counter of running timed timers, which falls below 0 for good when fired timers are stopped: as many timers as it
// takes to bring it above.
int timedCounter() {
    std::vector<std::unique_ptr<TmrTimer>> started;
    while (!TmrTimedRunning()) {
        started.push_back(std::make_unique<TmrTimer>(TmrTypeTimed));
        started.back()->TmrStart();
    }
    return 1 - static_cast<int>(started.size());
}

TEST_F(Timers, ActAsTheModel) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        std::mt19937 random(seed + 1000);
        tick = seed % 3 == 0 ? 0xFFFFFFE0 : 1000;
        Model model(seed, timedCounter());
        Real real(seed);
        for (int step = 0; step < 400; ++step) {
            SCOPED_TRACE(testing::Message() << "step " << step);
            tick = (tick + random() % 3) & 0xFFFFFFFF;
            real.act(-1);
            model.act(-1);
            ASSERT_EQ(real.log, model.log);
            ASSERT_EQ(real.running(), model.running());
            std::uint32_t due = 0;
            ASSERT_EQ(kora::timersNextDue(due), model.nextDue() >= 0);
            ASSERT_EQ(due, std::max<std::int64_t>(0, model.nextDue()));
            real.log.clear();
            model.log.clear();
        }
    }
}

struct Counted : TmrTimer {
    explicit Counted(eTmrType type) : TmrTimer(type) { ++alive; }
    ~Counted() override { --alive; }
    bool TmrExpiry() override { return ++calls, action ? action() : false; }
    int calls = 0;
    std::function<bool()> action;
    static inline int alive = 0;
};

TEST_F(Timers, AnExceptionLeavesThePassesOpen) {
    Counted thrower(TmrTypeTimed), behind(TmrTypeTimed), idle(TmrTypeIdle);
    thrower.action = []() -> bool { throw 1; };
    thrower.TmrStart();
    behind.TmrStart();
    tick += 5;
    EXPECT_THROW(TmrDoTimedTimers(), int);
    TmrDoTimedTimers();
    EXPECT_EQ(behind.calls, 1);
    idle.action = []() -> bool { throw 1; };
    idle.TmrStart();
    EXPECT_THROW(TmrDoIdleTimers(), int);
    EXPECT_THROW(TmrDoIdleTimers(), int);
    EXPECT_EQ(idle.calls, 2);
}

TEST_F(Timers, AHandlerMayPumpAndEndTheLibrary) {
    auto* first = new Counted(TmrTypeIdle);
    auto* second = new Counted(TmrTypeIdle);
    first->action = [] {
        TmrDoIdleTimers();
        kora::timersStop();
        return true;
    };
    first->TmrStart();
    second->TmrStart();
    TmrDoIdleTimers();
    EXPECT_EQ(Counted::alive, 0);
    EXPECT_FALSE(TmrIdleRunning());
}

TEST_F(Timers, TheExitDeletesThemAllAndFiresNone) {
    struct Owner : Counted {
        Owner() : Counted(TmrTypeTimed), owned(std::make_unique<Counted>(TmrTypeTimed)) {}
        std::unique_ptr<Counted> owned;
    };
    ASSERT_TRUE(kora::timersStart());
    bool fired = false;
    for (int i = 0; i < 3; ++i) {
        auto* timer = new Owner;
        timer->owned->action = [&fired] { return fired = true; };
        timer->owned->TmrStart();
    }
    tick += 5;
    kora::timersStop();
    kora::timersStop();
    EXPECT_EQ(Counted::alive, 0);
    EXPECT_FALSE(fired);
    std::uint32_t due = 0;
    EXPECT_FALSE(kora::timersNextDue(due));
    new Counted(TmrTypeIdle);
    EXPECT_EQ(Counted::alive, 1);
    kora::timersStop();
    EXPECT_EQ(Counted::alive, 0);
}

TEST_F(Timers, TheClockIsCutTo32Bits) {
    EXPECT_EQ(TmrElapse(), 1000U);
    tick = ~0UL;
    EXPECT_EQ(TmrElapse(), 0xFFFFFFFFUL);
    const TmrClock ours = TmrClockSet(nullptr);
    EXPECT_EQ(ours(), tick);
    EXPECT_NE(TmrClockSet(ours), ours);
}

}  // namespace
