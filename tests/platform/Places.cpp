#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

TEST(Environment, NamesDirectories) {
    Environment& places = environment();
    for (const std::string& there :
         {places.temporary(), places.workingDirectory(), places.programDirectory(), places.systemDirectory()}) {
        FileKind kind = FileKind::none;
        Failure failure;
        EXPECT_TRUE(fileSystem().kind(there, kind, failure) && kind == FileKind::directory) << there;
        EXPECT_TRUE(there.find('/') == there.npos && !there.ends_with('\\')) << there;
    }
    for (const std::string& named : {places.documents(), places.userData(), places.sharedData()})
        EXPECT_EQ(named.substr(1, 2), ":\\") << named;
}

TEST(Environment, GivesVariablesAsTheyStand) {
    const char* path = std::getenv("PATH");
    EXPECT_EQ(environment().variable("PATH").value_or("not set"), path ? path : "not set");
    for (const std::string& name : {std::string("KORA_NO_SUCH_VARIABLE"), std::string(), std::string("PATH\0X", 6)})
        EXPECT_FALSE(environment().variable(name)) << name;
}

TEST(SplitDirectoryList, LeavesEmptyEntriesOut) {
    using List = std::vector<std::string>;
    EXPECT_EQ(splitDirectoryList(""), List{});
    EXPECT_EQ(splitDirectoryList(";;"), List{});
    EXPECT_EQ(splitDirectoryList("Z:\\a;;C:\\b c;"), (List{"Z:\\a", "C:\\b c"}));
    EXPECT_EQ(splitDirectoryList("Z:\\a"), List{"Z:\\a"});
}

TEST(Clock, OnlyMovesForward) {
    const std::uint32_t before = tickCount();
    pause(30);
    EXPECT_GE(tickCount() - before, 10u);
    EXPECT_LT(tickCount() - before, 0x80000000u);
    EXPECT_GT(freeMemory(), 0u);
}

}  // namespace
