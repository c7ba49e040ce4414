#include <gtest/gtest.h>

#include <cstring>

#include "platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace {

using namespace kora::platform;
using kora::test::TestFolder;

std::string fixture(const char* name) { return environment().programDirectory() + "\\platform-fixtures\\" + name; }

class Modules : public testing::Test {
protected:
    void SetUp() override {
        LoadFailure failure;
        module = loadModule(fixture("platform-good.qzx"), failure);
        ASSERT_NE(module, 0u) << failure.code << ' ' << failure.detail;
    }
    void TearDown() override { unloadModule(module); }

    ModuleHandle module = 0;
};

TEST_F(Modules, GiveTheirFunctions) {
    const auto answer = reinterpret_cast<int (*)()>(moduleFunction(module, "platformFixtureAnswer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    EXPECT_EQ(moduleFunction(module, "platformFixtureNothing"), nullptr);
    EXPECT_EQ(moduleFunction(module, ""), nullptr);
    EXPECT_EQ(moduleFunction(module, "malloc"), nullptr) << "that is another library's";
    EXPECT_EQ(moduleFunction(0, "platformFixtureAnswer"), nullptr);
}

TEST_F(Modules, LoadedTwiceStayUntilTheLastOneGoes) {
    LoadFailure failure;
    const ModuleHandle again = loadModule(fixture("PLATFORM-GOOD.qzx"), failure);
    EXPECT_EQ(again, module);
    unloadModule(again);
    EXPECT_NE(moduleFunction(module, "platformFixtureAnswer"), nullptr);
}

TEST_F(Modules, GiveTheirStringsCutToTheBuffer) {
    struct Row {
        int id, size;
        const char* text;
    };
    static constexpr Row rows[] = {
        {7, 20, "seven"}, {7, 6, "seven"}, {7, 5, "seve"}, {7, 1, ""},   {60000, 40, "sixty thousand"},
        {8, 20, ""},      {9, 20, ""},     {0, 20, ""},    {-1, 20, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.id << " in " << row.size);
        char buffer[64];
        std::memset(buffer, '#', sizeof buffer);
        const int length = moduleString(module, row.id, buffer, row.size);
        EXPECT_EQ(length, static_cast<int>(std::strlen(row.text)));
        if (length > 0) {
            EXPECT_STREQ(buffer, row.text);
        }
        EXPECT_EQ(buffer[row.size], '#');
    }
    char untouched = '#';
    EXPECT_EQ(moduleString(module, 7, &untouched, 0), 0);
    EXPECT_EQ(moduleString(module, 7, &untouched, -1), 0);
    EXPECT_EQ(untouched, '#');
}

TEST(OwnModule, HasTheLibrarysStrings) {
    ASSERT_NE(ownModule(), 0u);
    EXPECT_EQ(ownModule(), ownModule());
    char text[16];
    EXPECT_EQ(moduleString(ownModule(), 1279, text, sizeof text), 4);
    EXPECT_STREQ(text, "Inch");
    EXPECT_EQ(moduleFunction(ownModule(), "platformFixtureAnswer"), nullptr);
}

TEST(LoadModule, SaysWhyNotInOneSetOfNumbers) {
    const TestFolder folder;
    const std::string good = [] {
        std::string bytes;
        Failure failure;
        EXPECT_TRUE(fileSystem().read(fixture("platform-good.qzx"), bytes, failure));
        return bytes;
    }();
    folder.write("text.qzx", "This is no library.\n");
    folder.write("empty.qzx", "");
    folder.write("head.qzx", good.substr(0, 40));
    folder.write("cut.qzx", good.substr(0, 2'000));
    // a library of the other platform, as far as its head tells
    std::string other(4096, '\0');
    other.replace(0, 4,
                  good.starts_with("MZ") ? std::string("\x7f"
                                                       "ELF")
                                         : std::string("MZ\x90\0", 4));
    folder.write("other.qzx", other);
    struct Row {
        std::string path;
        std::uint32_t code;
    };
    const Row rows[] = {
        {folder.path("none.qzx"), 2},         {folder.path("text.qzx"), 193}, {folder.path("empty.qzx"), 193},
        {folder.path("head.qzx"), 193},       {folder.path("cut.qzx"), 193},  {folder.path("other.qzx"), 193},
        {fixture("platform-needs.qzx"), 126},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path);
        LoadFailure failure;
        EXPECT_EQ(loadModule(row.path, failure), 0u);
        EXPECT_EQ(failure.code, row.code) << failure.detail;
    }
    // a missing directory is one of the two numbers that say "not there", depending on the loader
    LoadFailure failure;
    EXPECT_EQ(loadModule(folder.path("none\\none.qzx"), failure), 0u);
    EXPECT_TRUE(failure.code == 3 || failure.code == 2 || failure.code == 126) << failure.code;
}

}  // namespace
