#include <gtest/gtest.h>
#include <kora/Test.h>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

TEST(RunProgram, HandsItsArgumentsOver) {
    static constexpr const char* rows[][2] = {
        {"", ""},
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
    const TestFolder folder;
    Failure failure;
    for (const auto& [arguments, lines] : rows) {
        const std::string all = '"' + folder.NativeText("out put") + "\" " + arguments;
        const std::string program = environment().programDirectory() + "\\platform-fixtures\\" PLATFORM_ECHO;
        ASSERT_TRUE(runProgram(program, all, 1, /*wait=*/true, failure)) << failure.code;
        EXPECT_EQ(folder.Read("out put"), lines) << arguments;
    }
    for (const bool wait : {false, true}) {
        EXPECT_FALSE(runProgram(folder.Path("none"), "", 1, wait, failure));
        EXPECT_EQ(failure.cause, Cause::notFound);
    }
}

}  // namespace
