#include "tasks/Timers.h"

#include <gmock/gmock.h>
#include <kora/Test.h>
#include <kora/Tsk.h>

#include <algorithm>
#include <list>
#include <random>
#include <string>
#include <vector>

namespace {

class Timers : public testing::Test {
protected:
    ~Timers() override { kora::timersStop(); }
    TestClock clock_;
};

struct Real {
    using Timer = TmrTimer;
    static void doTimed() { TmrDoTimedTimers(); }
    static void doIdle() { TmrDoIdleTimers(); }
    static void end() { kora::timersStop(); }
};

// The same over plain lists. Its counters stay from seed to seed, as the library's do.
struct Model {
    class Timer {
    public:
        explicit Timer(eTmrType type) : type_(type) { rows[isIdle()].push_back(this); }
        virtual ~Timer() {
            auto& next = nexts[isIdle()];
            const auto place = std::ranges::find(rows[isIdle()], this);
            if (next == place) ++next;
            if (called[isIdle()] == this) called[isIdle()] = nullptr;
            rows[isIdle()].erase(place);
            if (state == 0) --counter();
            if (!isIdle()) doTimed();
        }
        void TmrStart() {
            if (std::exchange(state, 0) != 0) ++counter();
            if (isIdle()) return;
            due = static_cast<std::uint32_t>(TmrElapse()) + interval_;
            doTimed();
        }
        void TmrStop() {
            const bool counted = std::exchange(state, 1) != 1;
            int& counted_in = counter();
            if (!isIdle()) doTimed();
            if (counted) --counted_in;
        }
        void TmrIntervalSet(unsigned long interval) { interval_ = static_cast<std::uint32_t>(interval); }
        void TmrSetHighPriorityIdle(bool on) {
            if (!isIdle() || type_ == (on ? 3 : 2)) return;
            TmrStop();
            type_ = on ? TmrTypeIdleHighPriority : TmrTypeIdle;
            TmrStart();
        }
        virtual bool TmrExpiry() = 0;

        std::uint32_t due = 0;
        int state = 1;

    private:
        bool isIdle() const { return type_ == 2 || type_ == 3; }
        int& counter() { return counters[isIdle() ? type_ - 1 : 0]; }
        eTmrType type_;
        std::uint32_t interval_ = 1;
    };

    static void pass(bool idle) {
        if (std::exchange(inPass[idle], true)) return;
        const auto now = static_cast<std::uint32_t>(TmrElapse());
        for (auto place = rows[idle].begin(); place != rows[idle].end(); place = nexts[idle]) {
            nexts[idle] = std::next(place);
            Timer* timer = *place;
            if (timer->state != 0 || (!idle && timer->due >= now)) continue;
            if (!idle) --counters[0], timer->state = 2;
            called[idle] = timer;
            if (timer->TmrExpiry()) delete called[idle];
        }
        inPass[idle] = false;
    }
    static void doTimed() { pass(false); }
    static void doIdle() {
        if (inPass[true]) return;
        pass(true);
        doTimed();
    }
    static void end() {
        inPass[false] = true;
        for (auto& row : rows)
            while (!row.empty()) delete row.front();
        inPass[false] = false;
    }
    // Milliseconds until the first fires, -1 when none runs.
    static std::int64_t nextDue() {
        std::int64_t least = -1;
        for (const Timer* t : rows[false])
            if (t->state == 0 && (least < 0 || t->due < least)) least = t->due;
        return least < 0 ? -1 : std::max<std::int64_t>(0, least + 1 - static_cast<std::int64_t>(TmrElapse()));
    }

    static inline std::list<Timer*> rows[2];
    static inline std::list<Timer*>::iterator nexts[2];
    static inline Timer* called[2];
    static inline bool inPass[2];
    static inline int counters[3];
};

// Random operations on up to 40 timers, whose handlers do more of them.
template <class World>
class Bench {
public:
    explicit Bench(unsigned seed) : random_(seed) {}
    ~Bench() { World::end(); }

    void act(int except = -1) {
        const int number = below(made_ + 1);
        Probe*& probe = probes_[static_cast<std::size_t>(number)];
        const int choice = below(12);
        if (choice == 0) {
            if (made_ == 40) return;
            const auto type = static_cast<eTmrType>(below(6) - 1);
            probes_[static_cast<std::size_t>(made_)] = new Probe(*this, made_, type);
            ++made_;
        } else if (choice == 1) {
            World::doTimed();
        } else if (choice == 2) {
            World::doIdle();
        } else if (probe == nullptr) {
            return;
        } else if (choice == 3) {
            if (number != except) delete probe;
        } else if (choice == 4) {
            const int interval = below(4);
            probe->TmrIntervalSet(interval < 3 ? static_cast<unsigned>(interval) : 0xFFFFFFF8);
        } else if (choice == 5) {
            probe->TmrSetHighPriorityIdle(below(2) == 0);
        } else if (choice <= 7) {
            probe->TmrStop();
        } else {
            probe->TmrStart();
        }
    }

    std::string log;

private:
    struct Probe : World::Timer {
        Probe(Bench& bench, int number, eTmrType type) : World::Timer(type), bench_(bench), number_(number) {}
        ~Probe() override { bench_.probes_[static_cast<std::size_t>(number_)] = nullptr; }
        bool TmrExpiry() override { return bench_.expired(number_); }
        Bench& bench_;
        int number_;
    };
    // The timer itself may go within, in the handler of another.
    bool expired(int number) {
        log += std::to_string(number) + ' ';
        for (int actions = log.size() < 2000 ? below(3) : 0; actions > 0; --actions) act(number);
        Probe* probe = probes_[static_cast<std::size_t>(number)];
        if (below(3) == 0 && probe != nullptr) probe->TmrStart();
        return below(6) == 0;
    }
    int below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
    std::mt19937 random_;
    std::vector<Probe*> probes_ = std::vector<Probe*>(41);
    int made_ = 0;
};

// Under a clock that wraps, and one that jumps back and forth.
TEST_F(Timers, ActAsTheModel) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 random(seed + 1000);
        clock_.Set(seed % 3 == 0 ? 0xFFFFFFE0 : 1000);
        Bench<Model> model(seed);
        Bench<Real> real(seed);
        for (int step = 0; step < 400; ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
            const bool jumps = seed % 2 == 0 && random() % 8 == 0;
            clock_.Advance(random() % 3 + (jumps ? random() % 20 - 10 : 0));
            real.act();
            model.act();
            ASSERT_EQ(real.log, model.log);
            ASSERT_EQ(TmrTimedRunning(), Model::counters[0] > 0);
            ASSERT_EQ(TmrIdleRunning(), Model::counters[1] > 0);
            ASSERT_EQ(TmrHighPriorityIdleRunning(), Model::counters[2] > 0);
            std::uint32_t due = 0;
            ASSERT_EQ(kora::timersNextDue(due), Model::nextDue() >= 0);
            ASSERT_EQ(due, std::max<std::int64_t>(0, Model::nextDue()));
            unsigned long exported = 7;
            ASSERT_EQ(TmrNextDue(exported), Model::nextDue() >= 0);
            ASSERT_EQ(exported, Model::nextDue() >= 0 ? due : 7);
            real.log.clear();
            model.log.clear();
        }
    }
}

// The whole count lies between tick 0 and the last one, and is neither overdue nor without a limit.
TEST_F(Timers, ADueTimeAtTheLastTickIsFarFromTheFirst) {
    TmrTimer last(TmrTypeTimed);
    clock_.Set(0xFFFFFFFE);
    last.TmrStart();
    clock_.Set(0);
    unsigned long rest = 0;
    EXPECT_TRUE(TmrNextDue(rest));
    EXPECT_EQ(rest, 0xFFFFFFFF);
    EXPECT_TRUE(TskGetApp()->TskAppBusy());
}

TEST_F(Timers, AnExceptionLeavesThePassesOpen) {
    struct Thrower : TmrTimer {
        using TmrTimer::TmrTimer;
        bool TmrExpiry() override { throw 1; }
    };
    struct Quiet : TmrTimer {
        using TmrTimer::TmrTimer;
        bool TmrExpiry() override { return fired = true, false; }
        bool fired = false;
    };
    Thrower thrower(TmrTypeTimed), idle(TmrTypeIdle);
    Quiet behind(TmrTypeTimed);
    thrower.TmrStart();
    behind.TmrStart();
    idle.TmrStart();
    clock_.Advance(5);
    EXPECT_THROW(TmrDoTimedTimers(), int);
    TmrDoTimedTimers();
    EXPECT_TRUE(behind.fired);
    for (int i = 0; i < 2; ++i) EXPECT_THROW(TmrDoIdleTimers(), int);
}

}  // namespace
