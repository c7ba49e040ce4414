#include <gtest/gtest.h>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

TEST(LibraryPath, TurnsNativeTextOnly) {
    static constexpr const char* rows[][2] = {
        {"/", "Z:\\"},
        {"/home/u/x", "Z:\\home\\u\\x"},
        {"/a//b/", "Z:\\a\\b\\"},
        {"//server/x", "Z:\\server\\x"},
        {"a/b", "a/b"},
        {"", ""},
        {"C:\\x", "C:\\x"},
        {"\\x", "\\x"},
        {"\\\\s\\x", "\\\\s\\x"},
    };
    for (const auto& [text, path] : rows) EXPECT_EQ(libraryPath(text), path) << text;
}

TEST(NativePath, TurnsWhatThisSystemHas) {
    static constexpr const char* rows[][2] = {
        {"Z:\\", "/"},
        {"Z:", "/"},
        {"z:\\a\\b", "/a/b"},
        {"Z:\\a\\\\b\\", "/a/b/"},
        {"a\\b", "a/b"},
        {"\\a", "/a"},
        {"Z:a", "/a"},
        {"", ""},
        {"C:\\x", "C:\\x"},
        {"/a/b", "/a/b"},
        {"\\\\s\\share", "\\\\s\\share"},
    };
    for (const auto& [path, text] : rows) EXPECT_EQ(nativePath(path), text) << path;
}

TEST(SplitDirectoryList, TakesColonsWhereThereIsNoSemicolon) {
    using List = std::vector<std::string>;
    EXPECT_EQ(splitDirectoryList("/usr/bin::/bin:"), (List{"Z:\\usr\\bin", "Z:\\bin"}));
    EXPECT_EQ(splitDirectoryList("/a:b;/c"), (List{"Z:\\a:b", "Z:\\c"}));
    EXPECT_EQ(splitDirectoryList("/a:z:\\b:/c"), (List{"Z:\\a", "z:\\b", "Z:\\c"}));
    EXPECT_EQ(splitDirectoryList(":"), List{});
    EXPECT_EQ(splitDirectoryList("a:b"), (List{"a", "b"}));
}

}  // namespace
