#include "tools/kora-new/NewModule.h"

#include <gmock/gmock.h>
#include <kora/Test.h>

#include "tools/kora-new/ModuleName.h"

namespace {

using namespace kora::newmodule;
using testing::HasSubstr;

TEST(NewModule, RefusesWhatCannotNameEverything) {
    const std::pair<const char*, std::vector<std::string>> rows[] = {
        {"begins with a letter", {"", "7up", "_a", "a_", "a__b", "a-b", "../a", "a b", "\xC3\xA4", "a\n"}},
        {"40 characters at most", {std::string(41, 'a')}},
        {"is a word of C++", {"class", "xor_eq", "import", "static_assert"}},
        {"a target of CMake's own", {"test", "Test", "ALL_BUILD", "list_install_components"}},
        {"a device on Windows", {"con", "NUL", "Lpt1"}},
        {"the library's own", {"kora", "KoraNet", "tsk", "TskKora"}},
        {"", {"a", "Class", "wave_meter2", "Ini", "com", "testing", "com10", std::string(40, 'a')}}};
    for (const auto& [complaint, names] : rows)
        for (const std::string& name : names) {
            EXPECT_THAT(complaintOfName(name), HasSubstr(complaint)) << name;
            EXPECT_EQ(complaintOfName(name).empty(), *complaint == '\0') << name;
        }
}

TEST(NewModule, HasItsNameEverywhereAndTouchesNothingThatIsThere) {
    const TestFolder folder;
    std::vector<std::string> files, none;
    ASSERT_EQ(writeModule("wave_2m", folder.NativeText(), files), "");
    std::string all;
    for (const std::string& file : files) all += file + '\n' + folder.Read(file);
    for (const char* own : {"project(wave_2m ", "Wave2mModule.cpp", "\"-wave needs", "\"wave_2m\", WAVE_2M_STRINGS)"})
        EXPECT_THAT(all, HasSubstr(own));
    for (const char* other : {"puls", "Puls", "PULS"}) EXPECT_THAT(all, testing::Not(HasSubstr(other)));
    EXPECT_THAT(writeModule("wave_2m", folder.NativeText(), none), testing::EndsWith("wave_2m is there already."));
    for (const std::string& file : files) EXPECT_TRUE(folder.Has(file));
    EXPECT_THAT(writeModule("wave", folder.NativeText("none"), none), HasSubstr(" cannot be made: "));
}

#if !defined(_WIN32)
// In a path so long that there is room for the first files, which have short names, and none for the others.
TEST(NewModule, LeavesNothingHalf) {
    const TestFolder folder;
    std::string deep = folder.NativeText();
    while (deep.size() < 3845) std::filesystem::create_directory(deep += '/' + std::string(200, 'd'));
    std::filesystem::create_directory(deep += '/' + std::string(4052 - deep.size(), 'd'));
    std::vector<std::string> files;
    EXPECT_THAT(writeModule(std::string(20, 'w'), deep, files), testing::EndsWith("Module.cpp cannot be written."));
    EXPECT_TRUE(std::filesystem::is_empty(deep) && files.empty());
}
#endif

}  // namespace
