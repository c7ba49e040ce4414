#include <kora/File.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "bench/Cases.h"

namespace kora::bench {

void addPathCases() {
    const Sizes kDirectories = {3, 6, 12};
    // Each number has directories of its own, which nobody else's preparation changes.
    const auto directories = [](long count) {
        CStringArray all;
        for (long i = 1; i <= count; ++i) {
            all.push_back(memoryFolder() + "/of" + std::to_string(count) + "/directory" + std::to_string(i));
            std::filesystem::create_directories(all.back());
            std::filesystem::remove(all.back() + "/part.lib");
        }
        std::ofstream(all.back() + "/part.lib") << "part";
        return all;
    };
    measure("file_locate", "kora", kDirectories, [=](benchmark::State& state, long count) {
        CStringArray in = directories(count);
        CString found;
        FilePath path;
        for (auto _ : state)
            if (!FileLocateFile(in, "part.lib", path, false)) state.SkipWithError("the file was not found");
    });
    measure("file_locate", "string_and_access", kDirectories, [=](benchmark::State& state, long count) {
        const CStringArray in = directories(count);
        for (auto _ : state) {
            std::string path;
            bool found = false;
            for (const CString& directory : in) {
                path = directory;
                path += "/part.lib";
                if ((found = access(path.c_str(), F_OK) == 0)) break;
            }
            if (!found) state.SkipWithError("the file was not found");
            benchmark::DoNotOptimize(path.data());
        }
    });
    measure("file_locate", "std_filesystem", kDirectories, [=](benchmark::State& state, long count) {
        const CStringArray in = directories(count);
        for (auto _ : state) {
            std::filesystem::path path;
            for (const CString& directory : in)
                if (path = std::filesystem::path(directory) / "part.lib"; std::filesystem::exists(path)) break;
            benchmark::DoNotOptimize(path.c_str());
        }
    });
}

}  // namespace kora::bench
