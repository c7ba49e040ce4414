#include <kora/Err.h>

#include <cstdlib>
#include <filesystem>

#include "bench/Cases.h"

namespace kora::bench {

namespace {

/// Removed with all it holds at the end of the program.
struct Folder {
    explicit Folder(const std::filesystem::path& in) : path((in / "kora-bench-XXXXXX").string()) {
        if (!mkdtemp(path.data())) std::abort();
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    std::string path;
};

}  // namespace

const std::string& diskFolder() {
    static const Folder folder(std::filesystem::current_path());
    return folder.path;
}

const std::string& memoryFolder() {
    static const Folder folder("/dev/shm");
    return folder.path;
}

void measure(const std::string& name, const std::string& who, const Sizes& sizes, const Body& body) {
    for (const long size : sizes)
        benchmark::RegisterBenchmark((name + ' ' + who + ' ' + std::to_string(size)).c_str(),
                                     [body, size](benchmark::State& state) { body(state, size); });
}

}  // namespace kora::bench

int main(int count, char** arguments) {
    using namespace kora::bench;
    // Nobody's settings are read or written.
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DOCUMENTS_DIR"}) setenv(name, diskFolder().c_str(), 1);
    addTraceCases();
    addStringCases();
    addContainerCases();
    addSettingsCases();
    addPathCases();
    addTaskCases();
    addParseCases();
    addSheetCases();
    addGeometryCases();
    addFormatCases();
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;
    benchmark::RunSpecifiedBenchmarks();
}
