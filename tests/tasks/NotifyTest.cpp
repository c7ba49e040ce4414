#include <gtest/gtest.h>
#include <kora/Not.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace {

// The same operations over plain rows. What goes during a broadcast has no events any more, and is skipped by them.
class Model {
public:
    bool Attach(long key1, long key2, NotCallback callback, long data, unsigned long mask) {
        if (mask == 0 || callback == nullptr) return false;
        auto object = std::ranges::find_if(objects_, [&](auto& o) { return o->key1 == key1 && o->key2 == key2; });
        if (object == objects_.end()) object = objects_.insert(object, std::make_shared<Object>(Object{key1, key2}));
        auto& row = (*object)->row;
        auto listener = std::ranges::find_if(row, [&](auto& l) { return l->callback == callback && l->data == data; });
        if (listener == row.end())
            listener = row.insert(listener, std::make_shared<Listener>(Listener{callback, data}));
        (*listener)->mask |= mask;
        return true;
    }
    void Detach(long key1, long key2, NotCallback callback, long data, unsigned long mask) {
        for (auto& object : objects_)
            for (auto& listener : object->row)
                if (object->key1 == key1 && object->key2 == key2 && listener->matches(callback, data))
                    listener->mask &= ~mask;
        sweep();
    }
    bool Exists(long key1, long key2, NotCallback callback, long data, unsigned long mask) {
        for (auto& object : objects_)
            for (auto& listener : object->row)
                if (object->matches(key1, key2) && listener->matches(callback, data) && (listener->mask & mask))
                    return true;
        return false;
    }
    bool Notify(long key1, long key2, unsigned long events, long argument, bool stopOnTrue) {
        bool handled = false;
        for (auto& object : std::vector(objects_)) {
            if (!object->matches(key1, key2)) continue;
            for (auto& listener : std::vector(object->row)) {
                const unsigned long bits = listener->mask & events;
                if (bits == 0) continue;
                const bool answer =
                    listener->callback(object->key1 ? object->key1 : key1, object->key2 ? object->key2 : key2,
                                       listener->data, static_cast<long>(bits), argument);
                handled = answer || !stopOnTrue;
                if (answer && stopOnTrue) break;
                if (!answer && !stopOnTrue) listener->mask = 0;
                sweep();
            }
        }
        return handled;
    }

private:
    template <class T>
    static bool wild(T a, T b) {
        return a == b || !a || !b;
    }
    struct Listener {
        NotCallback callback;
        long data;
        unsigned long mask = 0;
        bool matches(NotCallback c, long d) const { return wild(callback, c) && wild(data, d); }
    };
    struct Object {
        long key1, key2;
        std::vector<std::shared_ptr<Listener>> row = {};
        bool matches(long k1, long k2) const { return wild(key1, k1) && wild(key2, k2); }
    };
    void sweep() {
        for (auto& object : objects_) std::erase_if(object->row, [](auto& listener) { return listener->mask == 0; });
        std::erase_if(objects_, [](auto& object) { return object->row.empty(); });
    }
    std::vector<std::shared_ptr<Object>> objects_;
};

// A registry whose callbacks answer either way, and now and then act on it before they do.
template <class Registry>
class Bench {
public:
    explicit Bench(unsigned seed) : random_(seed) { active = this; }

    bool act() {
        const long key1 = below(4) - 1, key2 = below(4) - 1, data = below(5) - 1;
        const NotCallback callback = kCallbacks[below(4)];
        const unsigned long mask = static_cast<unsigned long>(below(16)) | (below(2) ? 0x80000000UL : 0);
        switch (below(6)) {
            case 0:
                registry.Detach(key1, key2, callback, data, below(2) ? mask : ~0UL);
                return false;
            case 1:
                return registry.Exists(key1, key2, callback, data, mask);
            case 2:
                return registry.Notify(key1, key2, mask, 5, below(2) == 0);
            default:
                return registry.Attach(key1, key2, callback, data, mask);
        }
    }

    Registry registry;
    std::vector<std::vector<long>> calls;

private:
    template <int number>
    static bool listen(long key1, long key2, long data, long events, long argument) {
        Bench& bench = *active;
        bench.calls.push_back({number, key1, key2, data, events, argument});
        if (bench.depth_ < 2 && bench.below(6) == 0) {
            ++bench.depth_;
            bench.act();
            --bench.depth_;
        }
        return bench.below(3) != 0;
    }
    static constexpr NotCallback kCallbacks[] = {nullptr, listen<1>, listen<2>, listen<3>};
    static inline Bench* active;
    int below(unsigned end) { return static_cast<int>(random_() % end); }
    std::mt19937 random_;
    int depth_ = 0;
};

TEST(NotNotify, ActsAsTheModel) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        Bench<NotNotify> real(seed);
        Bench<Model> model(seed);
        for (int step = 0; step < 1500; ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
            ASSERT_EQ(real.act(), model.act());
            ASSERT_EQ(real.calls, model.calls);
            real.calls.clear();
            model.calls.clear();
        }
    }
}

bool throwing(long, long, long, long, long) { throw 1; }
bool hearing(long, long, long, long, long) { return true; }

TEST(NotNotify, AnExceptionLeavesItOpen) {
    NotNotify registry;
    ASSERT_TRUE(registry.Attach(1, 1, throwing, 0, 1) && registry.Attach(1, 1, hearing, 5, 2));
    EXPECT_THROW(registry.Notify(1, 1, 1, 0, false), int);
    registry.Detach(1, 1, throwing, 0, 1);
    EXPECT_TRUE(registry.Notify(1, 1, 3, 0, true));
}

}  // namespace
