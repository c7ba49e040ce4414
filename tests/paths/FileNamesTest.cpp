#include <kora/File.h>

#include <climits>

#include "tests/paths/PathsTest.h"

namespace kora::test {

namespace {

TEST(FileMakeFriendlyName, IsTheNameWithoutDirectoryAndType) {
    for (const char* row : {"plain | plain", "a.b.txt | a.b", "c:\\d.x\\name | name", "c:\\d\\n.t.x | n.t",
                            "c:\\d\\ | ", "c:\\d\\.x | ", "d/name.txt | d/name", " | "})
        EXPECT_EQ(FileMakeFriendlyName(columns(row)[0].c_str()), columns(row)[1]) << row;
    EXPECT_EQ(FileMakeFriendlyName(nullptr), "");
}

TEST(FileMakeLimitedName, ShortensTheDirectoryThenTheName) {
    // exactly the limit, one over, and then with hardly any room
    for (const char* row :
         {"c:\\dir\\file.txt | 15 | c:\\dir\\file.txt", "c:\\dir\\file.txt | 14 | ...\\fil...txt",
          "c:\\some\\where\\deep\\file.txt | 24 | c:\\som...e\\deep\\file.txt",
          "c:\\some\\where\\deep/file.txt | 16 | c:...ep\\file.txt",
          "c:\\d\\quite_a_long_name.txt | 20 | ...\\quite_...me.txt",
          "quite_a_long_name.txt | 20 | quite_a_...name.txt", "\\quite_a_long_name.txt | 20 | quite_a_...name.txt",
          "c:\\d\\name | 8 | ...\\...", "c:\\d\\name | 5 | ...\\...", "name | 3 | ...", " | -1 | ..."})
        EXPECT_EQ(FileMakeLimitedName(columns(row)[0].c_str(), std::stoi(columns(row)[1])), columns(row)[2]) << row;
    EXPECT_EQ(FileMakeLimitedName("name", INT_MIN) + FileMakeLimitedName("c:\\d\\name", INT_MIN), "......\\...");
    EXPECT_EQ(FileMakeLimitedName("c:\\d\\name", INT_MAX) + FileMakeLimitedName(nullptr, 4), "c:\\d\\name");
}

class RelativePaths : public PathsTest {};

TEST_F(RelativePaths, StartAtTheFirstDirectoryThatHoldsThem) {
    CStringArray dirs = {"", "c:\\lib", "c:\\lib\\deep\\", "d:\\"};
    for (const char* row :
         {"c:\\lib\\x.txt | x.txt", "C:\\LIB\\deep\\x.txt | deep\\x.txt", "d:\\a\\x | a\\x",
          "c:\\library\\x | c:\\library\\x", "c:\\lib | c:\\lib", "c:\\lib\\ | c:\\lib\\", "x.txt | x.txt"})
        EXPECT_EQ(FileMakePathRelative(columns(row)[0].c_str(), dirs), columns(row)[1]) << row;
    EXPECT_EQ(FileMakePathRelative(nullptr, dirs), "");
    EXPECT_EQ(FileMakePathRelative(path("program\\tools\\x.qzx").c_str()), "tools\\x.qzx");
    EXPECT_EQ(FileMakePathRelative(path("userdata\\Veltrane\\Tessera5\\x").c_str()), "x");
    EXPECT_EQ(FileMakePathRelative(path("work\\x").c_str()), path("work\\x"));
}

}  // namespace

}  // namespace kora::test
