#include <gtest/gtest.h>

#include <cstring>

#include "platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace {

using namespace kora::platform;
using kora::test::TestFolder;

std::string fixture(const char* name) { return environment().programDirectory() + "\\platform-fixtures\\" + name; }

TEST(Modules, GiveTheirFunctionsUntilTheLastLoadIsUndone) {
    LoadFailure failure;
    const ModuleHandle module = loadModule(fixture("platform-good.qzx"), failure);
    ASSERT_NE(module, 0u) << failure.code << ' ' << failure.detail;
    EXPECT_EQ(loadModule(fixture("PLATFORM-GOOD.qzx"), failure), module);
    unloadModule(module);
    const auto answer = reinterpret_cast<int (*)()>(moduleFunction(module, "platformFixtureAnswer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    // malloc is another library's
    for (const char* name : {"platformFixtureNothing", "", "malloc"})
        EXPECT_EQ(moduleFunction(module, name), nullptr) << name;
    EXPECT_EQ(moduleFunction(0, "platformFixtureAnswer"), nullptr);
    EXPECT_EQ(moduleFunction(ownModule(), "platformFixtureAnswer"), nullptr);
    unloadModule(module);
}

TEST(Modules, GiveTheirStringsCutToTheBuffer) {
    LoadFailure failure;
    const ModuleHandle good = loadModule(fixture("platform-good.qzx"), failure), own = ownModule();
    struct Row {
        ModuleHandle module;
        int id, size;
        const char* text;
    };
    const Row rows[] = {
        {good, 7, 20, "seven"}, {good, 7, 6, "seven"},  {good, 7, 5, "seve"}, {good, 7, 1, ""},
        {good, 8, 20, ""},      {good, 9, 20, ""},      {good, 0, 20, ""},    {good, 60000, 40, "sixty thousand"},
        {good, -1, 20, ""},     {own, 1279, 5, "Inch"}, {own, 1, 20, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.id << " in " << row.size);
        char buffer[64];
        std::memset(buffer, '#', sizeof buffer);
        EXPECT_EQ(moduleString(row.module, row.id, buffer, row.size), static_cast<int>(std::strlen(row.text)));
        EXPECT_STREQ(buffer, row.text);
        EXPECT_EQ(buffer[row.size], '#');
    }
    char untouched = '#';
    EXPECT_EQ(moduleString(good, 7, &untouched, 0) + moduleString(good, 7, &untouched, -1), 0);
    EXPECT_EQ(untouched, '#');
    unloadModule(good);
}

TEST(LoadModule, SaysWhyNotInOneSetOfNumbers) {
    const TestFolder folder;
    std::string good;
    Failure ignored;
    ASSERT_TRUE(fileSystem().read(fixture("platform-good.qzx"), good, ignored));
    folder.write("text.qzx", "This is no library.\n");
    folder.write("empty.qzx", "");
    folder.write("head.qzx", good.substr(0, 40));
    folder.write("cut.qzx", good.substr(0, 2'000));
    // libraries of the other platform and of another machine, as far as their heads tell
    const bool windows = good.starts_with("MZ");
    std::string other(4096, '\0');
    folder.write("other.qzx", other.replace(0, 4, windows ? "\177ELF" : std::string("MZ\x90\0", 4)));
    good[windows ? static_cast<unsigned char>(good[0x3C]) + 4u : 18u] ^= 0x55;
    folder.write("machine.qzx", good);
    const std::pair<std::string, std::uint32_t> rows[] = {
        {folder.path("none.qzx"), 2},      {folder.path("text.qzx"), 193},       {folder.path("empty.qzx"), 193},
        {folder.path("head.qzx"), 193},    {folder.path("cut.qzx"), 193},        {folder.path("other.qzx"), 193},
        {folder.path("machine.qzx"), 193}, {fixture("platform-needs.qzx"), 126},
    };
    for (const auto& [path, code] : rows) {
        LoadFailure failure;
        EXPECT_EQ(loadModule(path, failure), 0u) << path;
        EXPECT_EQ(failure.code, code) << path << ' ' << failure.detail;
    }
    // a missing directory is one of the numbers that say "not there", depending on the loader
    LoadFailure failure;
    EXPECT_EQ(loadModule(folder.path("none\\none.qzx"), failure), 0u);
    EXPECT_TRUE(failure.code == 3 || failure.code == 2 || failure.code == 126) << failure.code;
}

}  // namespace
