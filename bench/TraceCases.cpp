#include <kora/Trace.h>
#include <spdlog/logger.h>
#include <spdlog/sinks/ringbuffer_sink.h>

#include <boost/circular_buffer.hpp>
#include <cstdint>
#include <memory>

#include "bench/Cases.h"

namespace kora::bench {

void addTraceCases() {
    const Sizes kWords = {1024, 8192, 65536};
    measure("trace_word", "kora", kWords, [](benchmark::State& state, long size) {
        for (auto _ : state)
            for (long i = 0; i < size; ++i) TraceData(static_cast<unsigned long>(i));
        state.SetItemsProcessed(state.iterations() * size);
    });
    measure("trace_word", "boost_circular_buffer", kWords, [](benchmark::State& state, long size) {
        boost::circular_buffer<std::uint32_t> ring(1024);
        boost::circular_buffer<std::uint32_t>* seen = &ring;
        benchmark::DoNotOptimize(seen);  // whoever looks after a crash finds it in memory
        for (auto _ : state)
            for (long i = 0; i < size; ++i) {
                ring.push_back(static_cast<std::uint32_t>(i));
                benchmark::ClobberMemory();
            }
        state.SetItemsProcessed(state.iterations() * size);
    });
    // What a program logs anyhow, kept back until something goes wrong.
    measure("trace_word", "spdlog_ringbuffer", kWords, [](benchmark::State& state, long size) {
        spdlog::logger log("trace", std::make_shared<spdlog::sinks::ringbuffer_sink_st>(1024));
        for (auto _ : state)
            for (long i = 0; i < size; ++i) log.info("{}", i);
        state.SetItemsProcessed(state.iterations() * size);
    });
}

}  // namespace kora::bench
