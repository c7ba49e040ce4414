#include <gmock/gmock.h>
#include <kora/Not.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <random>
#include <vector>

#include "tests/support/VirtualSlot.h"

namespace {

using kora::test::virtualSlot;
using testing::ElementsAre;

TEST(NotNotify, SlotsStandInTheOrderThatModulesAreCompiledAgainst) {
    EXPECT_EQ(virtualSlot(&NotNotify::Attach), 1);
    EXPECT_EQ(virtualSlot(&NotNotify::Detach), 2);
    EXPECT_EQ(virtualSlot(&NotNotify::Exists), 3);
    EXPECT_EQ(virtualSlot(&NotNotify::Notify), 4);
}

struct Call {
    int callback;
    long key1, key2, data, events, argument;
    bool operator==(const Call&) const = default;
    friend void PrintTo(const Call& call, std::ostream* out) {
        *out << call.callback << ": keys " << call.key1 << ' ' << call.key2 << " data " << call.data << " events "
             << call.events << " argument " << call.argument;
    }
};

// A registry whose callbacks are known by numbers from 1 (0 is none); they do what the base class says.
class Broadcaster {
public:
    explicit Broadcaster(unsigned seed) : random_(seed) {}
    virtual ~Broadcaster() = default;
    virtual bool attach(long key1, long key2, int callback, long data, unsigned long mask) = 0;
    virtual void detach(long key1, long key2, int callback, long data, unsigned long mask) = 0;
    virtual bool exists(long key1, long key2, int callback, long data, unsigned long mask) = 0;
    virtual bool notify(long key1, long key2, unsigned long events, long argument, bool stopOnTrue) = 0;

    // What every callback does: mostly answer; now and then broadcast, detach or attach first.
    bool called(const Call& call) {
        calls.push_back(call);
        const unsigned choice = below(20);
        if (depth_ < 2) {
            ++depth_;
            if (choice == 0) notify(key(), key(), mask(), 77, below(2) == 0);
            if (choice == 1) detach(call.key1, call.key2, call.callback, call.data, ~0UL);
            if (choice == 2) detach(key(), key(), static_cast<int>(below(4)), key(), mask());
            if (choice == 3) attach(key(), key(), 1 + static_cast<int>(below(3)), key(), mask());
            --depth_;
        }
        return below(3) != 0;
    }

    unsigned below(unsigned end) { return static_cast<unsigned>(random_()) % end; }
    long key() { return static_cast<long>(below(4)) - 1; }
    unsigned long mask() { return (below(8) | below(2) << 31) & 0xFFFFFFFF; }

    std::vector<Call> calls;

private:
    std::mt19937 random_;
    int depth_ = 0;
};

class Real : public Broadcaster {
public:
    explicit Real(unsigned seed) : Broadcaster(seed) { active = this; }
    bool attach(long key1, long key2, int callback, long data, unsigned long mask) override {
        return registry_.Attach(key1, key2, callbacks[callback], data, mask);
    }
    void detach(long key1, long key2, int callback, long data, unsigned long mask) override {
        registry_.Detach(key1, key2, callbacks[callback], data, mask);
    }
    bool exists(long key1, long key2, int callback, long data, unsigned long mask) override {
        return registry_.Exists(key1, key2, callbacks[callback], data, mask);
    }
    bool notify(long key1, long key2, unsigned long events, long argument, bool stopOnTrue) override {
        return registry_.Notify(key1, key2, events, argument, stopOnTrue);
    }

private:
    template <int number>
    static bool callback(long key1, long key2, long data, long events, long argument) {
        return active->called({number, key1, key2, data, events, argument});
    }
    static constexpr NotCallback callbacks[] = {nullptr, callback<1>, callback<2>, callback<3>};
    static inline Real* active;
    NotNotify registry_;
};

class Model : public Broadcaster {
public:
    using Broadcaster::Broadcaster;
    bool attach(long key1, long key2, int callback, long data, unsigned long mask) override {
        if (mask == 0) return false;
        auto object =
            std::find_if(objects_.begin(), objects_.end(), [&](auto& o) { return o->key1 == key1 && o->key2 == key2; });
        if (object == objects_.end())
            object = objects_.insert(object, std::make_shared<Object>(Object{key1, key2, {}}));
        auto& listeners = (*object)->listeners;
        auto listener = std::find_if(listeners.begin(), listeners.end(),
                                     [&](auto& l) { return l->callback == callback && l->data == data; });
        if (listener == listeners.end())
            listener = listeners.insert(listener, std::make_shared<Listener>(Listener{callback, data, 0}));
        (*listener)->mask |= mask;
        return true;
    }
    void detach(long key1, long key2, int callback, long data, unsigned long mask) override {
        for (auto& object : objects_) {
            if (object->key1 != key1 || object->key2 != key2) continue;
            for (auto& listener : object->listeners)
                if (wild(listener->callback, callback) && wild(listener->data, data)) listener->mask &= ~mask;
            sweep(*object);
        }
        sweep();
    }
    bool exists(long key1, long key2, int callback, long data, unsigned long mask) override {
        for (auto& object : objects_)
            if (wild(object->key1, key1) && wild(object->key2, key2))
                for (auto& listener : object->listeners)
                    if (wild(listener->callback, callback) && wild(listener->data, data) && (listener->mask & mask))
                        return true;
        return false;
    }
    bool notify(long key1, long key2, unsigned long events, long argument, bool stopOnTrue) override {
        bool handled = false;
        for (auto& object : std::vector(objects_)) {
            if (!wild(object->key1, key1) || !wild(object->key2, key2)) continue;
            for (auto& listener : std::vector(object->listeners)) {
                const unsigned long bits = listener->mask & events;
                if (bits == 0) continue;
                handled = true;
                const bool answer =
                    called({listener->callback, object->key1 ? object->key1 : key1, object->key2 ? object->key2 : key2,
                            listener->data, static_cast<long>(bits), argument});
                if (answer && stopOnTrue) break;
                if (answer) continue;
                if (stopOnTrue)
                    handled = false;
                else
                    listener->mask = 0, sweep(*object);
            }
            sweep();
        }
        return handled;
    }

private:
    struct Listener {
        int callback;
        long data;
        unsigned long mask;
    };
    struct Object {
        long key1, key2;
        std::vector<std::shared_ptr<Listener>> listeners;
    };
    static bool wild(long a, long b) { return a == b || a == 0 || b == 0; }
    static void sweep(Object& object) {
        std::erase_if(object.listeners, [](auto& listener) { return listener->mask == 0; });
    }
    void sweep() {
        std::erase_if(objects_, [](auto& object) { return object->listeners.empty(); });
    }
    std::vector<std::shared_ptr<Object>> objects_;
};

TEST(NotNotify, ActsAsTheModel) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        Real real(seed);
        Model model(seed);
        std::mt19937 random(seed + 1000);
        for (int step = 0; step < 1500; ++step) {
            SCOPED_TRACE(testing::Message() << "step " << step);
            const auto stepSeed = static_cast<unsigned>(random());
            auto act = [stepSeed](Broadcaster& broadcaster) {
                std::mt19937 choose(stepSeed);
                auto below = [&choose](unsigned end) { return choose() % end; };
                const long key1 = static_cast<long>(below(4)) - 1, key2 = static_cast<long>(below(4)) - 1;
                const int callback = static_cast<int>(below(4));
                const long data = static_cast<long>(below(5)) - 1;
                const unsigned long mask = below(16) | (below(2) ? 0x80000000UL : 0);
                switch (below(6)) {
                    case 0:
                        broadcaster.detach(key1, key2, callback, data, below(2) ? mask : ~0UL);
                        return false;
                    case 1:
                        return broadcaster.exists(key1, key2, callback, data, mask);
                    case 2:
                        return broadcaster.notify(key1, key2, mask, 5, below(2) == 0);
                    default:
                        return broadcaster.attach(key1, key2, std::max(callback, 1), data, mask);
                }
            };
            ASSERT_EQ(act(real), act(model));
            ASSERT_EQ(real.calls, model.calls);
            real.calls.clear();
            model.calls.clear();
        }
    }
}

std::vector<Call> heard;

bool hearing(long key1, long key2, long data, long events, long argument) {
    heard.push_back({0, key1, key2, data, events, argument});
    return data < 100;
}

TEST(NotNotify, WildcardListenersLearnWhichObjectItWas) {
    heard.clear();
    NotNotify registry;
    EXPECT_TRUE(registry.Attach(0, 0, hearing, 1, 6));
    EXPECT_TRUE(registry.Attach(3, 4, hearing, 2, 0x80000002UL));
    EXPECT_TRUE(registry.Attach(0, 4, hearing, 3, 2));
    EXPECT_TRUE(registry.Notify(3, 4, 3, 9, false));
    EXPECT_THAT(heard, ElementsAre(Call{0, 3, 4, 1, 2, 9}, Call{0, 3, 4, 2, 2, 9}, Call{0, 3, 4, 3, 2, 9}));
    heard.clear();
    EXPECT_TRUE(registry.Notify(0, 4, 2, 9, false));
    EXPECT_THAT(heard, ElementsAre(Call{0, 0, 4, 1, 2, 9}, Call{0, 3, 4, 2, 2, 9}, Call{0, 0, 4, 3, 2, 9}));
}

TEST(NotNotify, NothingToHearIsRefused) {
    NotNotify registry;
    EXPECT_FALSE(registry.Attach(1, 2, hearing, 3, 0));
    EXPECT_FALSE(registry.Attach(1, 2, nullptr, 3, 1));
    EXPECT_FALSE(registry.Exists(0, 0, nullptr, 0, ~0UL));
    EXPECT_FALSE(registry.Notify(0, 0, ~0UL, 0, false));
}

TEST(NotNotify, AListenerThatAnswersFalseIsGoneUnlessTheBroadcastStopsOnTrue) {
    heard.clear();
    NotNotify registry;
    ASSERT_TRUE(registry.Attach(1, 1, hearing, 100, 1));
    EXPECT_FALSE(registry.Notify(1, 1, 1, 0, true));
    EXPECT_TRUE(registry.Exists(1, 1, hearing, 100, 1));
    EXPECT_TRUE(registry.Notify(1, 1, 1, 0, false));
    EXPECT_FALSE(registry.Exists(0, 0, nullptr, 0, 1));
    EXPECT_FALSE(registry.Notify(1, 1, 1, 0, false));
    EXPECT_EQ(heard.size(), 2U);
}

// Listeners may come and go in great number without the order or anybody being lost.
TEST(NotNotify, KeepsTheOrderWhileMostLeave) {
    NotNotify registry;
    for (long data = 1; data <= 1000; ++data) ASSERT_TRUE(registry.Attach(1, data % 3, hearing, data, 1));
    for (long data = 1; data <= 1000; ++data)
        if (data % 97 != 0) registry.Detach(1, data % 3, hearing, data, 1);
    for (long data = 1; data <= 1000; ++data) EXPECT_EQ(registry.Exists(1, 0, hearing, data, 1), data % 97 == 0);
    heard.clear();
    EXPECT_FALSE(registry.Notify(1, 0, 1, 0, true));
    std::vector<long> order;
    for (const Call& call : heard) order.push_back(call.data);
    // Key 1 came first, then 2 and 0; the visit of the first ends with 97, which answers true.
    EXPECT_THAT(order, ElementsAre(97, 194, 485, 776, 291, 582, 873));
}

NotNotify* doomed;

bool destroying(long, long, long data, long, long) {
    delete std::exchange(doomed, nullptr);
    return data == 0;
}

TEST(NotNotify, MayBeDestroyedByACallback) {
    doomed = new NotNotify;
    heard.clear();
    ASSERT_TRUE(doomed->Attach(1, 1, destroying, 1, 1));
    ASSERT_TRUE(doomed->Attach(1, 1, hearing, 2, 1));
    ASSERT_TRUE(doomed->Attach(0, 1, hearing, 3, 1));
    EXPECT_TRUE(doomed->Notify(1, 1, 1, 0, false));
    EXPECT_TRUE(heard.empty());
}

bool throwing(long, long, long, long, long) { throw 1; }

TEST(NotNotify, AnExceptionLeavesItUsable) {
    NotNotify registry;
    ASSERT_TRUE(registry.Attach(1, 1, throwing, 0, 1));
    ASSERT_TRUE(registry.Attach(1, 1, hearing, 5, 2));
    EXPECT_THROW(registry.Notify(1, 1, 1, 0, false), int);
    registry.Detach(1, 1, throwing, 0, 1);
    EXPECT_TRUE(registry.Notify(1, 1, 3, 0, false));
}

}  // namespace
