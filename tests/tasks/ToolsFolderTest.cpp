#include <gmock/gmock.h>

#include <kora/Ini.h>
#include <kora/Tsk.h>

#include <string>

#include "paths/SharedDirectories.h"
#include "settings/Store.h"
#include "tasks/ToolsFolder.h"
#include "tests/support/ScopedPlaces.h"

namespace {

TEST(ToolsFolder, IsTheHostsTheSettingsOrTheOneBesideTheProgram) {
    kora::test::ScopedPlaces places;
    kora::pathsStop();
    const std::string program = places.folder.Path("program"), tooLong(300, 'x');
    places.variables["KORA_AT"] = "D:\\at";
    const std::pair<std::string, std::string> rows[] = {
        {"", program + "\\tools"},
        {"C:\\somewhere\\else\\", "C:\\somewhere\\else\\"},
        {"\"C:\\with blanks\"", "C:\\with blanks"},
        {"modules\\mine\\", program + "\\modules\\mine"},
        {"..\\tools", places.folder.Path("tools")},
        {"%KORA_AT%\\x", "D:\\at\\x"},
        {places.folder.NativeText("here"), places.folder.Path("here")},
        {tooLong, tooLong},
    };
    IniMainFileSet(places.folder.Path("none.ini").c_str());
    EXPECT_EQ(kora::toolsFolder(), program + "\\tools");
    for (const auto& [setting, folder] : rows) {
        SCOPED_TRACE(setting);
        places.folder.Write("ts.ini", "[System]\ntoolfolder = " + setting);
        IniMainFileSet(places.folder.Path("ts.ini").c_str());
        EXPECT_EQ(kora::toolsFolder(), folder);
        TskToolsFolderSet("E:\\host");
        EXPECT_EQ(kora::toolsFolder(), "E:\\host");
        TskToolsFolderSet(nullptr);
    }
    IniMainFileSet(nullptr);
    kora::settingsStop();
    kora::pathsStop();
}

}  // namespace
