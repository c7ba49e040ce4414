#include <gtest/gtest.h>
#include <kora/Test.h>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

std::string fixture(const char* name) { return environment().programDirectory() + "\\platform-fixtures\\" + name; }

std::string goodLibrary() {
    std::string bytes;
    Failure failure;
    EXPECT_TRUE(fileSystem().read(fixture("elsewhere\\platform-needed.qzx"), bytes, failure));
    return bytes;
}

TEST(LoadModule, SaysWhyNotInOneSetOfNumbers) {
    const TestFolder folder;
    folder.Write("text.qzx", "This is no library.\n");
    folder.Write("empty.qzx", "");
    // libraries of the other platform and of another machine, as far as their heads tell
    std::string machine = goodLibrary(), other(4096, '\0');
    const bool windows = machine.starts_with("MZ");
    folder.Write("other.qzx", other.replace(0, 4, windows ? "\177ELF" : std::string("MZ\x90\0", 4)));
    machine[windows ? static_cast<unsigned char>(machine[0x3C]) + 4u : 18u] ^= 0x55;
    folder.Write("machine.qzx", machine);
    // a table of segments that begins, or ends, behind the file's end
    std::string begins = goodLibrary(), ends = begins;
    begins[windows ? 0 : 34] ^= 0x7F;
    ends[windows ? 0 : 57] ^= 0x7F;
    folder.Write("begins.qzx", begins);
    folder.Write("ends.qzx", ends);
    const std::pair<std::string, std::uint32_t> rows[] = {
        {folder.Path("none.qzx"), 2},    {folder.Path("text.qzx"), 193},       {folder.Path("empty.qzx"), 193},
        {folder.Path("other.qzx"), 193}, {folder.Path("machine.qzx"), 193},    {folder.Path("begins.qzx"), 193},
        {folder.Path("ends.qzx"), 193},  {fixture("platform-needs.qzx"), 126},
    };
    for (const auto& [path, code] : rows) {
        LoadFailure failure;
        EXPECT_EQ(loadModule(path, failure), 0u) << path;
        EXPECT_EQ(failure.code, code) << path << ' ' << failure.detail;
    }
}

// However a library is cut, it loads or is refused; the process goes on.
TEST(LoadModule, SurvivesBrokenLibraries) {
    const std::string good = goodLibrary();
    const TestFolder folder;
    for (std::size_t length = 0; length < good.size(); length += 1 + good.size() / 60) {
        SCOPED_TRACE(length);
        const std::string name = std::to_string(length) + ".qzx";  // the loader knows files again
        folder.Write(name, good.substr(0, length));
        LoadFailure failure;
        unloadModule(loadModule(folder.Path(name), failure));
    }
}

}  // namespace
