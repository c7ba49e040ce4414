#include <gtest/gtest.h>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

TEST(Paths, TurnBetweenTheTwoForms) {
    static constexpr const char* rows[][3] = {
        // text, in library form, in native form
        {"/", "Z:\\", "/"},
        {"/home/u", "Z:\\home\\u", "/home/u"},
        {"/a//b/", "Z:\\a\\b\\", "/a/b/"},
        {"//server/x", "Z:\\server\\x", "/server/x"},
        {"Z:\\", "Z:\\", "/"},
        {"Z:", "Z:", "/"},
        {"z:\\a\\\\b\\", "z:\\a\\\\b\\", "/a/b/"},
        {"Z:a", "Z:a", "/a"},
        {"a/b", "a/b", "a/b"},
        {"a\\b", "a\\b", "a/b"},
        {"\\a", "\\a", "/a"},
        {"", "", ""},
        // what this system does not have
        {"C:\\x", "C:\\x", "C:\\x"},
        {"\\\\s\\share", "\\\\s\\share", "\\\\s\\share"},
    };
    for (const auto& [text, path, native] : rows) {
        EXPECT_EQ(libraryPath(text), path) << text;
        EXPECT_EQ(nativePath(text), native) << text;
    }
}

TEST(Paths, OfAListAreSplitAtColonsWhereThereIsNoSemicolon) {
    using List = std::vector<std::string>;
    EXPECT_EQ(splitDirectoryList("/usr/bin::/bin:"), (List{"Z:\\usr\\bin", "Z:\\bin"}));
    EXPECT_EQ(splitDirectoryList("/a:b;/c"), (List{"Z:\\a:b", "Z:\\c"}));
    EXPECT_EQ(splitDirectoryList("/a:z:\\b:/c"), (List{"Z:\\a", "z:\\b", "Z:\\c"}));
    EXPECT_EQ(splitDirectoryList(":"), List{});
    EXPECT_EQ(splitDirectoryList("a:b"), (List{"a", "b"}));
}

}  // namespace
