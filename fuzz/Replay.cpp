#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

/// Stands in for the fuzzer where the compiler has none: plays every file of the corpus in the given folder once.
int main(int count, char** arguments) {
    int played = 0;
    for (int i = 1; i < count; ++i)
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            std::printf("%s\n", entry.path().filename().c_str());
            std::fflush(stdout);  // the last name is the culprit
            const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
            LLVMFuzzerTestOneInput(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
            ++played;
        }
    return played > 0 ? 0 : 1;
}
