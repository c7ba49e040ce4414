#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

TEST(Environment, NamesDirectoriesThatAreThere) {
    Environment& places = environment();
    for (const std::string& directory :
         {places.temporary(), places.workingDirectory(), places.programDirectory(), places.systemDirectory()}) {
        SCOPED_TRACE(directory);
        FileStatus status;
        Failure failure;
        EXPECT_TRUE(fileSystem().status(directory, status, failure));
        EXPECT_EQ(status.kind, FileKind::directory);
        EXPECT_EQ(directory.find('/'), std::string::npos);
        EXPECT_FALSE(directory.ends_with('\\'));
    }
    for (const std::string& directory : {places.documents(), places.userData(), places.sharedData()})
        EXPECT_EQ(directory.substr(1, 2), ":\\") << directory;
}

TEST(Environment, GivesVariablesAsTheyStand) {
    const char* path = std::getenv("PATH");
    EXPECT_EQ(environment().variable("PATH").value_or("not set"), path ? path : "not set");
    EXPECT_FALSE(environment().variable("KORA_NO_SUCH_VARIABLE"));
    EXPECT_FALSE(environment().variable(""));
    EXPECT_FALSE(environment().variable(std::string("PATH\0X", 6)));
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
    EXPECT_NE(processId(), 0u);
}

}  // namespace
