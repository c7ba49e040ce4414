#include <gtest/gtest.h>

#include "platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace {

using namespace kora::platform;
using kora::test::TestFolder;

std::string echoProgram() {
#if defined(_WIN32)
    return environment().programDirectory() + "\\platform-fixtures\\platform-echo.exe";
#else
    return environment().programDirectory() + "\\platform-fixtures\\platform-echo";
#endif
}

TEST(RunProgram, HandsItsArgumentsOver) {
    struct Row {
        const char* arguments;
        const char* lines;
    };
    static constexpr Row rows[] = {
        {"", ""},
        {"a", "a\n"},
        {"  a \t b  ", "a\nb\n"},
        {"\"a b\" c", "a b\nc\n"},
        {"a\" \"b", "a b\n"},
        {"\"\" x", "\nx\n"},
        {"\"open end", "open end\n"},
        // backslashes count in front of a quote only
        {"Z:\\a\\b \\\\server\\share", "Z:\\a\\b\n\\\\server\\share\n"},
        {"\\\"a \\\\\\\"b", "\"a\n\\\"b\n"},
        {"\"Z:\\dir\\\\\" x", "Z:\\dir\\\nx\n"},
        // nothing is a shell
        {"$HOME `x` ;echo", "$HOME\n`x`\n;echo\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.arguments);
        const TestFolder folder;
        Failure failure;
        const std::string arguments = '"' + folder.nativeText("out put") + "\" " + row.arguments;
        ASSERT_TRUE(runProgram(echoProgram(), arguments, 1, /*wait=*/true, failure)) << failure.code;
        EXPECT_EQ(folder.read("out put"), row.lines);
    }
}

TEST(RunProgram, SaysWhatIsNotThere) {
    const TestFolder folder;
    for (const bool wait : {false, true}) {
        Failure failure;
        EXPECT_FALSE(runProgram(folder.path("none"), "", 1, wait, failure));
        EXPECT_EQ(failure.cause, Cause::notFound);
    }
}

}  // namespace
