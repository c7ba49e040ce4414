#include <absl/container/flat_hash_map.h>
#include <kora/Dictionary.h>
#include <kora/DoubleList.h>
#include <kora/SortTree.h>

#include <QHash>
#include <QString>
#include <algorithm>
#include <boost/intrusive/list.hpp>
#include <list>
#include <memory>
#include <unordered_map>

#include "bench/Cases.h"

namespace kora::bench {

namespace {

struct Element : DoubleListElement {
    long value = 0;
};
struct Hooked : boost::intrusive::list_base_hook<> {
    long value = 0;
};

template <class Kind>
std::vector<std::unique_ptr<Kind>> elementsOf(long count) {
    std::vector<std::unique_ptr<Kind>> elements;
    for (long i = 0; i < count; ++i) elements.push_back(std::make_unique<Kind>());
    return elements;
}

void attachIterateDetach() {
    const Sizes kCounts = {10000, 100000, 1000000};
    measure("list_attach_iterate_detach_100k", "kora", kCounts, [](benchmark::State& state, long count) {
        const auto elements = elementsOf<Element>(count);
        DoubleList list;
        long sum = 0;
        for (auto _ : state) {
            for (const auto& element : elements) list.AttachAtTail(element.get());
            list.Reset();
            while (DoubleListElement* element = list.Next()) sum += static_cast<Element*>(element)->value;
            list.Reset();
            while (list.DetachNext()) ++sum;
        }
        benchmark::DoNotOptimize(sum);
        state.SetItemsProcessed(state.iterations() * count);
    });
    measure("list_attach_iterate_detach_100k", "boost_intrusive_list", kCounts,
            [](benchmark::State& state, long count) {
                const auto elements = elementsOf<Hooked>(count);
                boost::intrusive::list<Hooked> list;
                long sum = 0;
                for (auto _ : state) {
                    for (const auto& element : elements) list.push_back(*element);
                    for (const Hooked& element : list) sum += element.value;
                    for (; !list.empty(); ++sum) list.pop_front();
                }
                benchmark::DoNotOptimize(sum);
                state.SetItemsProcessed(state.iterations() * count);
            });
    measure("list_attach_iterate_detach_100k", "std_list", kCounts, [](benchmark::State& state, long count) {
        std::list<long> list;
        long sum = 0;
        for (auto _ : state) {
            for (long i = 0; i < count; ++i) list.push_back(0);
            for (const long value : list) sum += value;
            for (; !list.empty(); ++sum) list.pop_front();
        }
        benchmark::DoNotOptimize(sum);
        state.SetItemsProcessed(state.iterations() * count);
    });
}

struct ByValue : SortTree {
    short Compare(DoubleListElement* a, DoubleListElement* b) override {
        return static_cast<Element*>(a)->value > static_cast<Element*>(b)->value;
    }
};

void sortLists() {
    const Sizes kCounts = {2048, 8192, 32768};
    measure("list_sort_32k_random", "kora", kCounts, [](benchmark::State& state, long count) {
        const auto elements = elementsOf<Element>(count);
        Random random;
        for (const auto& element : elements) element->value = static_cast<long>(random.bits() >> 2);
        DoubleList list;
        for (auto _ : state) {
            ByValue tree;
            for (const auto& element : elements) tree.Insert(element.get());
            tree.Flatten(list);
            state.PauseTiming();
            list.Reset();
            while (list.DetachNext()) continue;
            state.ResumeTiming();
        }
    });
    const auto values = [](long count) {
        Random random;
        std::list<long> list;
        for (long i = 0; i < count; ++i) list.push_back(static_cast<long>(random.bits() >> 2));
        return list;
    };
    measure("list_sort_32k_random", "std_list_by_vector_sort", kCounts, [=](benchmark::State& state, long count) {
        const std::list<long> unsorted = values(count);
        for (auto _ : state) {
            state.PauseTiming();
            std::list<long> list = unsorted, sorted;
            state.ResumeTiming();
            std::vector<std::list<long>::iterator> order;
            order.reserve(list.size());
            for (auto it = list.begin(); it != list.end(); ++it) order.push_back(it);
            std::sort(order.begin(), order.end(), [](auto a, auto b) { return *a < *b; });
            for (const auto it : order) sorted.splice(sorted.end(), list, it);
            benchmark::DoNotOptimize(sorted.front());
        }
    });
    measure("list_sort_32k_random", "std_list_sort", kCounts, [=](benchmark::State& state, long count) {
        const std::list<long> unsorted = values(count);
        for (auto _ : state) {
            state.PauseTiming();
            std::list<long> list = unsorted;
            state.ResumeTiming();
            list.sort();
            benchmark::DoNotOptimize(list.front());
        }
    });
}

constexpr std::size_t kProbes = 1 << 16;

struct Keys {
    std::vector<long> numbers, numberProbes;
    std::vector<std::string> names, nameProbes;

    Keys(long count, bool same) {
        Random random;
        for (long i = 0; i < count; ++i) {
            numbers.push_back(static_cast<long>(random.bits()));
            char name[16];
            std::snprintf(name, sizeof name, "NET_%08x", static_cast<unsigned>(random.bits()));
            names.emplace_back(name);
        }
        for (std::size_t i = 0; i < kProbes; ++i) {
            const std::size_t at = same ? 77 : random.below(static_cast<unsigned>(count));
            numberProbes.push_back(numbers[at]);
            nameProbes.push_back(names[at]);
        }
    }
};

void* valueAt(std::size_t i) { return reinterpret_cast<void*>(i + 1); }

/// Fills a map from the keys and looks each probe up.
template <class Map, class Key, class Insert, class Find>
void lookUp(const std::string& name, const char* who, std::vector<Key> Keys::*keys, std::vector<Key> Keys::*probes,
            Insert insert, Find find) {
    for (const bool same : {false, true})
        measure((same ? "dict_lookup_same/" : "dict_lookup_10k_random/") + name, who, {1000, 10000, 100000},
                [=](benchmark::State& state, long count) {
                    const Keys input(count, same);
                    const std::vector<Key>& wanted = input.*probes;
                    const auto map = std::make_unique<Map>();
                    for (std::size_t i = 0; i < (input.*keys).size(); ++i) insert(*map, (input.*keys)[i], valueAt(i));
                    Map* seen = map.get();
                    benchmark::DoNotOptimize(seen);
                    std::size_t i = 0;
                    for (auto _ : state) benchmark::DoNotOptimize(find(*seen, wanted[i++ % kProbes]));
                });
}

void dictionaries() {
    const auto numbers = [](const char* who, auto map, auto insert, auto find) {
        lookUp<typename decltype(map)::type>("long", who, &Keys::numbers, &Keys::numberProbes, insert, find);
    };
    const auto names = [](const char* who, auto map, auto insert, auto find) {
        lookUp<typename decltype(map)::type>("string", who, &Keys::names, &Keys::nameProbes, insert, find);
    };
    const auto emplace = [](auto& map, const auto& key, void* value) { map.emplace(key, value); };
    const auto at = [](const auto& map, const auto& key) { return map.find(key)->second; };
    numbers(
        "kora", std::type_identity<Dictionary>(), [](Dictionary& d, long key, void* v) { d.Insert(key, v); },
        [](Dictionary& d, long key) { return d.Find(key); });
    numbers("absl_flat_hash_map", std::type_identity<absl::flat_hash_map<long, void*>>(), emplace, at);
    numbers("std_unordered_map", std::type_identity<std::unordered_map<long, void*>>(), emplace, at);
    numbers(
        "qhash", std::type_identity<QHash<long, void*>>(),
        [](auto& map, long key, void* value) { map.insert(key, value); },
        [](const auto& map, long key) { return map.constFind(key).value(); });
    names(
        "kora", std::type_identity<Dictionary>(),
        [](Dictionary& d, const std::string& key, void* v) { d.Insert(key.c_str(), v); },
        [](Dictionary& d, const std::string& key) { return d.Find(key.c_str()); });
    names("absl_flat_hash_map", std::type_identity<absl::flat_hash_map<std::string, void*>>(), emplace, at);
    names("std_unordered_map", std::type_identity<std::unordered_map<std::string, void*>>(), emplace, at);
}

}  // namespace

void addContainerCases() {
    attachIterateDetach();
    sortLists();
    dictionaries();
}

}  // namespace kora::bench
