#include <gmock/gmock.h>

#include <kora/Ini.h>
#include <kora/Tsk.h>

#include <string>

#include "paths/SharedDirectories.h"
#include "settings/Store.h"
#include "tasks/ToolsFolder.h"
#include "tests/support/ScopedPlaces.h"

namespace {

class ToolsFolder : public testing::Test {
protected:
    ToolsFolder() { forget(); }
    ~ToolsFolder() override {
        TskToolsFolderSet(nullptr);
        IniMainFileSet(nullptr);
        forget();
    }
    static void forget() {
        kora::pathsStop();
        kora::settingsStop();
    }
    kora::test::ScopedPlaces places_;
};

TEST_F(ToolsFolder, IsTheHostsTheSettingsOrTheOneBesideTheProgram) {
    const std::string program = places_.folder.path("program");
    EXPECT_EQ(kora::toolsFolder(), program + "\\tools");
    places_.variables["KORA_AT"] = "D:\\at";
    const std::string tooLong(300, 'x');
    const struct {
        const char* setting;
        std::string folder;
    } rows[] = {
        {"C:\\somewhere\\else\\", "C:\\somewhere\\else\\"},
        {"\"C:\\with blanks\"", "C:\\with blanks"},
        {"modules\\mine", program + "\\modules\\mine"},
        {"..\\tools", places_.folder.path("tools")},
        {"%KORA_AT%\\x", "D:\\at\\x"},
        {tooLong.c_str(), tooLong},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.setting);
        std::string profile = "[System]\ntoolfolder = ";
        places_.folder.write("ts.ini", profile += row.setting);
        IniMainFileSet(places_.folder.path("ts.ini").c_str());
        EXPECT_EQ(kora::toolsFolder(), row.folder);
        TskToolsFolderSet("E:\\host");
        EXPECT_EQ(kora::toolsFolder(), "E:\\host");
        TskToolsFolderSet(nullptr);
        EXPECT_EQ(kora::toolsFolder(), row.folder);
    }
}

TEST_F(ToolsFolder, ListsModuleFilesByNameRegardlessOfCase) {
    for (const char* name : {"b.qzx", "A.QzX", "a2.qzx", "a10.qzx", "C.qzx", "d.qz", "e.qzx.bak", "fqzx"})
        places_.folder.write(name, "");
    places_.folder.makeFolder("g.qzx");
    EXPECT_THAT(kora::moduleFiles(places_.folder.path()),
                testing::ElementsAre("A.QzX", "a10.qzx", "a2.qzx", "b.qzx", "C.qzx"));
    EXPECT_THAT(kora::moduleFiles(places_.folder.path("none")), testing::IsEmpty());
}

}  // namespace
