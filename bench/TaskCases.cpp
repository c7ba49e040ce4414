#include <kora/Not.h>
#include <kora/Tmr.h>

#include <boost/signals2.hpp>
#include <chrono>
#include <memory>
#include <queue>

#include "bench/Cases.h"

namespace kora::bench {

namespace {

long heard = 0;

bool listener(long, long, long data, long events, long) {
    heard += data + events;
    return true;
}

/// Ten objects with as many listeners each as are called; by key one object is named, by mask the listeners of all
/// hear of it that asked for the event, one in ten.
void notify() {
    const Sizes kCalled = {100, 1000, 10000};
    constexpr long kObjects = 10;
    using Function = std::function<bool(long, long, long, long, long)>;
    for (const bool byKey : {true, false}) {
        const char* const name = byKey ? "notify_1k_listeners/by_key" : "notify_1k_listeners/by_mask";
        measure(name, "kora", kCalled, [=](benchmark::State& state, long called) {
            const auto registry = std::make_unique<NotNotify>();
            for (long object = 1; object <= kObjects; ++object)
                for (long i = 0; i < called; ++i)
                    registry->Attach(object, 1, listener, i + 1, byKey || i % kObjects == 0 ? 1 : 2);
            for (auto _ : state) benchmark::DoNotOptimize(registry->Notify(byKey ? 7 : 0, byKey ? 1 : 0, 1, 5, false));
        });
        measure(name, "vector_of_std_function", kCalled, [=](benchmark::State& state, long called) {
            struct Entry {
                unsigned long mask;
                long data;
                Function call;
            };
            std::vector<std::vector<Entry>> objects(kObjects);
            for (auto& entries : objects)
                for (long i = 0; i < called; ++i)
                    entries.push_back({byKey || i % kObjects == 0 ? 1UL : 2UL, i + 1, listener});
            for (auto _ : state)
                for (std::size_t object = byKey ? 7 : 0; object < (byKey ? 8 : objects.size()); ++object)
                    for (const Entry& entry : objects[object])
                        if (entry.mask & 1)
                            benchmark::DoNotOptimize(entry.call(static_cast<long>(object), 1, entry.data, 1, 5));
        });
        if (!byKey) continue;
        measure(name, "boost_signals2", kCalled, [](benchmark::State& state, long called) {
            boost::signals2::signal<bool(long, long, long, long, long)> signal;
            for (long i = 0; i < called; ++i) signal.connect(&listener);
            for (auto _ : state) benchmark::DoNotOptimize(signal(7, 1, 1, 1, 5));
        });
    }
}

void timers() {
    const Sizes kTimers = {1000, 10000, 100000};
    measure("timers_10k_poll", "kora", kTimers, [](benchmark::State& state, long count) {
        std::vector<std::unique_ptr<TmrTimer>> all;
        for (long i = 0; i < count; ++i) {
            all.push_back(std::make_unique<TmrTimer>(TmrTypeTimed));
            all.back()->TmrIntervalSet(1000000000);
            all.back()->TmrStart();
        }
        for (auto _ : state) TmrDoTimedTimers();
    });
    measure("timers_10k_poll", "std_priority_queue", kTimers, [](benchmark::State& state, long count) {
        using Clock = std::chrono::steady_clock;
        std::priority_queue<Clock::time_point, std::vector<Clock::time_point>, std::greater<>> due;
        for (long i = 0; i < count; ++i) due.push(Clock::now() + std::chrono::hours(1));
        for (auto _ : state) {
            bool expired = due.top() <= Clock::now();
            benchmark::DoNotOptimize(expired);
        }
    });
}

}  // namespace

void addTaskCases() {
    notify();
    timers();
}

}  // namespace kora::bench
