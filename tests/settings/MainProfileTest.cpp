#include <kora/File.h>
#include <kora/Ini.h>

#include <gtest/gtest.h>

#include <string>

#include "paths/ProfileEntry.h"
#include "tests/settings/StoreFixture.h"

namespace {

class MainProfile : public kora::test::StoreFixture {
protected:
    static std::string k() { return get(eIniMain, "S", "k"); }
    /// The entries of section S as the store counts them.
    static std::string entries() {
        std::string lines;
        CString key, value;
        for (short line = 0; IniGetLine(eIniMain, "S", line, key, value); ++line) lines += key + '=' + value + ' ';
        return lines;
    }
};

TEST_F(MainProfile, IsTheSearchsFirstHitElseInTheDocumentRoot) {
    EXPECT_EQ(k(), "(not found)");
    EXPECT_TRUE(IniSetString(eIniMain, "S", "k", "1"));
    EXPECT_EQ(files.read(kMain), "[S]\nk = 1\n");
    EXPECT_EQ(k(), "(not found)") << "it is read back only when it is read again";
    // The switch that has documents searched makes it found under its name, too.
    FilePath found;
    EXPECT_FALSE(FileLocateFile("ts.ini", found, false));
    FileDocRootSearchSet(true);
    EXPECT_TRUE(FileLocateFile("ts.ini", found, false));
    FileDocRootSearchSet(false);
    EXPECT_EQ(found.FileStringGet(), files.path("documents\\ts.ini"));
    kora::settingsStop();
    EXPECT_EQ(k(), "1");
    EXPECT_TRUE(IniSetString(eIniMain, "s", "K", "2")) << "sections of the file are found without case";
    EXPECT_EQ(files.read(kMain), "[S]\nK = 2\n");

    files.makeFolder(kStateFolder);
    for (const char* place : {"program", "userdata/Veltrane/Tessera5"}) {
        files.write(std::string(place) + "/ts.ini", std::string("[S]\nk = ") + place);
        kora::settingsStop();
        EXPECT_EQ(k(), place);
    }
}

TEST_F(MainProfile, CanBeNamed) {
    main("[S]\nk = usual\n");
    files.makeFolder("work/sub");
    files.write("work/sub/own.ini", "[S]\nk = own\n");
    for (const std::string& name : {files.path("work\\sub\\own.ini"), files.nativeText("work/sub/own.ini"),
                                    std::string("sub\\own.ini"), std::string("sub/own.ini")}) {
        SCOPED_TRACE(name);
        EXPECT_TRUE(IniMainFileSet(name.c_str()));
        EXPECT_EQ(k(), "own");
        kora::settingsStop();  // it stays named
        for (const std::string& refused : {std::string(), std::string("sub\\"), std::string(300, 'x'),
                                           std::string("QZNEW96.ert"), std::string("sub\\qzold96.ERT")})
            EXPECT_FALSE(IniMainFileSet(refused.c_str())) << refused;
        EXPECT_EQ(k(), "own");
        EXPECT_TRUE(IniMainFileSet(nullptr));
        EXPECT_EQ(k(), "usual");
    }
    EXPECT_TRUE(IniMainFileSet("missing.ini"));
    EXPECT_EQ(k(), "(not found)");
    EXPECT_TRUE(IniSetString(eIniMain, "S", "k", "made"));
    EXPECT_EQ(files.read("work/missing.ini"), "[S]\nk = made\n");
}

TEST_F(MainProfile, PutsTheStateFileIntoTheSystemsDirectory) {
    main("[System]\nLocalStateFile = yes\n");
    EXPECT_TRUE(IniSetString(eIniState, "S", "k", "1"));
    EXPECT_EQ(files.read("system/tsstate.ini"), "[S]\nk = 1\n");
    EXPECT_FALSE(files.has(kState));
}

TEST_F(MainProfile, MergesTheFilesOfItsFolderInNameOrder) {
    files.makeFolder("documents/more.d/deep");
    files.write("documents/more.d/B.ini", "[S]\nb = B\nk = B\n[T]\nb = B\n");
    files.write("documents/more.d/a.INI", "[S]\na = a\nk = a\nb = a\nb = again\n[System]\nIncludeFolder = deep\n");
    files.write("documents/more.d/deep/x.ini", "[S]\nx = x\na = x\nb = x\n");
    files.write("documents/more.d/c.ini.bak", "[S]\nc = c\n");
    files.makeFolder("documents/more.d/d.ini");
    main("[System]\nincludefolder = more.d\n[S]\nk = main\n");
    EXPECT_EQ(get(eIniMain, "S", "b"), "a");
    EXPECT_EQ(get(eIniMain, "T", "b"), "B");
    // Entries that lose are not counted; a file's own doubles are.
    EXPECT_EQ(entries(), "k=main a=a b=a b=again x=x ");

    // cycles
    files.makeFolder("documents/a");
    files.makeFolder("documents/b");
    files.write("documents/a/a.ini", "[System]\nIncludeFolder = ..\\B\n[S]\na = 1\n");
    files.write("documents/b/b.ini", "[System]\nIncludeFolder = ..\\a\n[S]\nb = 1\n");
    files.write("documents/b/c.ini", "[System]\nIncludeFolder = ..\n[S]\nc = 1\n");
    main("[System]\nIncludeFolder = a\n[S]\nk = 1\n");
    EXPECT_EQ(entries(), "k=1 a=1 b=1 c=1 ");
}

TEST_F(MainProfile, IncludesFoldersByReferenceAndByPath) {
    files.makeFolder("shareddata/common");
    files.write("shareddata/common/a.ini", "[S]\nk = shared\n");
    const std::string common = files.path("shareddata\\common");
    places.variables["COMMON"] = common;
    for (const std::string& folder :
         {std::string("%COMMON%"), std::string("%ini:common%"), common + "\\", std::string("..\\shareddata\\common")}) {
        main("[Directories]\nCommon = " + common + "\n[System]\nIncludeFolder = " + folder + "\n");
        EXPECT_EQ(k(), "shared") << folder;
    }
    std::string directory = "untouched";
    EXPECT_FALSE(kora::profileDirectory("none", directory) || directory != "untouched");
    TraceToFileSet(true);
    files.write(kLog, "");
    main("[System]\nIncludeFolder = .\n");
    main("[System]\nIncludeFolder = nowhere\n[S]\nk = 1\n");
    EXPECT_EQ(k(), "1");
    const std::string main = "LoadIniFileInt: " + files.path("documents\\ts.ini") + "\n";  // each file once
    EXPECT_EQ(files.read(kLog),
              main + main + "LoadIniFileInt: " + files.path("documents\\nowhere") + ": no such folder\n");
}

TEST_F(MainProfile, ReadsHostileFiles) {
    // a directory in its place
    files.makeFolder(kMain);
    EXPECT_EQ(k(), "(not found)");
    EXPECT_FALSE(IniSetString(eIniMain, "S", "k", "1"));
    EXPECT_TRUE(files.has(kMain));
    // no place at all
    kora::settingsStop();
    places.instead = {{"documents", ""}, {"userdata", ""}};
    for (const eIniFile file : {eIniMain, eIniState}) {
        EXPECT_EQ(get(file, "S", "k"), "(not found)");
        EXPECT_FALSE(IniSetString(file, "S", "k", "1"));
    }
}

TEST_F(MainProfile, ReadsAHundredThousandLines) {
    std::string text;
    for (int i = 0; i < 100000; ++i) {
        const std::string number = std::to_string(i);
        if (i % 100 == 0)
            text.append("[S").append(std::to_string(i / 100)).append("]\n");
        else
            text.append("key").append(number).append(" = ").append(number).append("\n");
    }
    main(text);
    state(text);
    for (const int i : {1, 99, 50001, 99999})
        for (const eIniFile file : {eIniMain, eIniState})
            EXPECT_EQ(get(file, std::string("S").append(std::to_string(i / 100)).c_str(),
                          std::string("KEY").append(std::to_string(i)).c_str()),
                      std::to_string(i));
    EXPECT_TRUE(IniSetString(eIniState, "s999", "key99999", "new"));
    EXPECT_EQ(state(), text.substr(0, text.rfind("99999\n")) + "new\n");
}

}  // namespace
