#include <gtest/gtest.h>
#include <kora/File.h>

#include <climits>
#include <random>

#include "tests/paths/PathsTest.h"

namespace kora::test {

namespace {

TEST(FileMakeFriendlyName, IsTheNameWithoutDirectoryAndType) {
    struct Row {
        const char *path, *name;
    };
    static constexpr Row rows[] = {
        {"plain", "plain"},       {"a.b.txt", "a.b"}, {"c:\\d.x\\name", "name"},
        {"c:\\d\\n.t.x", "n.t"},  {"c:\\d\\", ""},    {"c:\\d\\.x", ""},
        {"d/name.txt", "d/name"}, {"", ""},           {nullptr, ""},
    };
    for (const Row& row : rows) EXPECT_EQ(FileMakeFriendlyName(row.path), row.name) << shown(row.path);
}

TEST(FileMakeLimitedName, ShortensTheDirectoryThenTheName) {
    struct Row {
        const char* path;
        int limit;
        const char* limited;
    };
    static constexpr Row rows[] = {
        // exactly the limit, one over
        {"c:\\dir\\file.txt", 15, "c:\\dir\\file.txt"},
        {"c:\\dir\\file.txt", 14, "...\\fil...txt"},
        {"c:\\some\\where\\deep\\file.txt", 24, "c:\\som...e\\deep\\file.txt"},
        {"c:\\some\\where\\deep/file.txt", 16, "c:...ep\\file.txt"},
        {"c:\\d\\quite_a_long_name.txt", 20, "...\\quite_...me.txt"},
        {"quite_a_long_name.txt", 20, "quite_a_...name.txt"},
        {"\\quite_a_long_name.txt", 20, "quite_a_...name.txt"},
        // hardly any room, or less than none
        {"c:\\d\\name", 8, "...\\..."},
        {"c:\\d\\name", 5, "...\\..."},
        {"name", 3, "..."},
        {"name", INT_MIN, "..."},
        {"", -1, "..."},
        {"c:\\d\\name", INT_MIN, "...\\..."},
        {"c:\\d\\name", INT_MAX, "c:\\d\\name"},
        {nullptr, 4, ""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(FileMakeLimitedName(row.path, row.limit), row.limited) << shown(row.path) << " in " << row.limit;
}

class RelativePaths : public PathsTest {};

TEST_F(RelativePaths, StartAtTheFirstDirectoryThatHoldsThem) {
    CStringArray dirs = {"", "c:\\lib", "c:\\lib\\deep\\", "d:\\"};
    struct Row {
        const char *path, *relative;
    };
    static constexpr Row rows[] = {
        {"c:\\lib\\x.txt", "x.txt"}, {"C:\\LIB\\deep\\x.txt", "deep\\x.txt"},
        {"d:\\a\\x", "a\\x"},        {"c:\\library\\x", "c:\\library\\x"},
        {"c:\\lib", "c:\\lib"},      {"c:\\lib\\", "c:\\lib\\"},
        {"x.txt", "x.txt"},          {nullptr, ""},
    };
    for (const Row& row : rows) EXPECT_EQ(FileMakePathRelative(row.path, dirs), row.relative) << shown(row.path);
    EXPECT_EQ(FileMakePathRelative(path("program\\tools\\x.qzx").c_str()), "tools\\x.qzx");
    EXPECT_EQ(FileMakePathRelative(path("userdata\\Veltrane\\Tessera5\\x").c_str()), "x");
    EXPECT_EQ(FileMakePathRelative(path("work\\x").c_str()), path("work\\x"));
}

}  // namespace

}  // namespace kora::test
