#include <absl/strings/str_format.h>
#include <fmt/compile.h>
#include <fmt/printf.h>
#include <kora/Str.h>

#include <cstdio>

#include "bench/Cases.h"

namespace kora::bench {

namespace {

const Sizes kLines = {1, 8, 64};

void lines(const char* name, const char* who, const std::function<void(char*, int)>& format) {
    measure(name, who, kLines, [format](benchmark::State& state, long count) {
        char line[512];
        for (auto _ : state)
            for (long i = 0; i < count; ++i) {
                format(line, static_cast<int>(i));
                benchmark::DoNotOptimize(line);
                benchmark::ClobberMemory();
            }
        state.SetItemsProcessed(state.iterations() * count);
    });
}

double real(int i) { return 3.25 + i * 0.37; }

}  // namespace

void addFormatCases() {
    static const char* const kName = "counter4/q[2]";
    lines("sprintf_mixed/no_float", "kora",
          [](char* to, int i) { Strsprintf(to, "net %s: %d pins, %5d loads, 0x%08x", kName, i, 7 * i, 77u * i); });
    lines("sprintf_mixed/no_float", "snprintf",
          [](char* to, int i) { snprintf(to, 512, "net %s: %d pins, %5d loads, 0x%08x", kName, i, 7 * i, 77u * i); });
    lines("sprintf_mixed/no_float", "fmt_compile", [](char* to, int i) {
        *fmt::format_to(to, FMT_COMPILE("net {}: {} pins, {:5} loads, 0x{:08x}"), kName, i, 7 * i, 77u * i) = 0;
    });
    lines("sprintf_mixed/no_float", "absl_snprintf", [](char* to, int i) {
        absl::SNPrintF(to, 512, "net %s: %d pins, %5d loads, 0x%08x", kName, i, 7 * i, 77u * i);
    });
    lines("sprintf_mixed/with_float", "kora",
          [](char* to, int i) { Strsprintf(to, "net %s: %d pins, %.3f ns, 0x%08x", kName, i, real(i), 77u * i); });
    lines("sprintf_mixed/with_float", "snprintf",
          [](char* to, int i) { snprintf(to, 512, "net %s: %d pins, %.3f ns, 0x%08x", kName, i, real(i), 77u * i); });
    lines("sprintf_mixed/with_float", "fmt_compile", [](char* to, int i) {
        *fmt::format_to(to, FMT_COMPILE("net {}: {} pins, {:.3f} ns, 0x{:08x}"), kName, i, real(i), 77u * i) = 0;
    });
    lines("sprintf_mixed/with_float", "absl_snprintf", [](char* to, int i) {
        absl::SNPrintF(to, 512, "net %s: %d pins, %.3f ns, 0x%08x", kName, i, real(i), 77u * i);
    });
}

}  // namespace kora::bench
