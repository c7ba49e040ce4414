#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <string>

#include "platform/Platform.h"

/// Loading of modules, which only the library's inside does: this program has the library in itself.
namespace {

constexpr char kEntry[] = "_Z11TskKoraMainR14eTskKoraModulePP13TskKoraModuled";

void ours(benchmark::State& state) {
    using namespace kora::platform;
    const std::string path = libraryPath(KORA_TINY_MODULE);
    for (auto _ : state)
        for (long i = 0; i < state.range(0); ++i) {
            LoadFailure failure;
            const ModuleHandle module = loadModule(path, failure);
            if (!module || !moduleFunction(module, kEntry)) state.SkipWithError("the module did not load");
            unloadModule(module);
        }
}

void loader(benchmark::State& state) {
    for (auto _ : state)
        for (long i = 0; i < state.range(0); ++i) {
            void* const module = dlopen(KORA_TINY_MODULE, RTLD_NOW | RTLD_LOCAL);
            if (!module || !dlsym(module, kEntry)) state.SkipWithError("the module did not load");
            dlclose(module);
        }
}

}  // namespace

int main(int count, char** arguments) {
    // What a module needs is in memory already, as it is in every host.
    if (!dlopen(KORA_LIBRARY, RTLD_NOW | RTLD_LOCAL)) return 2;
    for (const long size : {1L, 4L, 16L}) {
        const std::string times = " " + std::to_string(size);
        benchmark::RegisterBenchmark(("module_load kora" + times).c_str(), ours)->Arg(size);
        benchmark::RegisterBenchmark(("module_load dlopen" + times).c_str(), loader)->Arg(size);
    }
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
