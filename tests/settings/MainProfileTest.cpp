#include <kora/File.h>
#include <kora/Ini.h>

#include <gtest/gtest.h>

#include <string>

#include "paths/ProfileEntry.h"
#include "platform/Platform.h"
#include "tests/settings/StoreFixture.h"

namespace {

class MainProfile : public kora::test::StoreFixture {
protected:
    std::string k(const char* section = "S") const { return get(eIniMain, section, "k"); }
};

TEST_F(MainProfile, IsTheSearchsFirstHitElseInTheDocumentRoot) {
    files.makeFolder(kStateFolder);
    files.write(kMain, "[S]\nk = documents\n");
    EXPECT_EQ(k(), "documents");
    kora::settingsStop();
    files.write("program/ts.ini", "[S]\nk = program\n");
    EXPECT_EQ(k(), "program");
    kora::settingsStop();
    files.write("userdata/Veltrane/Tessera5/ts.ini", "[S]\nk = user\n");
    EXPECT_EQ(k(), "user");
}

TEST_F(MainProfile, IsMadeInTheDocumentRootAndReadBackOnlyWhenReadAgain) {
    EXPECT_EQ(k(), "(not found)");
    EXPECT_TRUE(IniSetString(eIniMain, "S", "k", "1"));
    EXPECT_EQ(files.read(kMain), "[S]\nk = 1\n");
    EXPECT_EQ(k(), "(not found)");
    kora::settingsStop();
    EXPECT_EQ(k(), "1");
    // Sections of the file are found without case when it is written.
    EXPECT_TRUE(IniSetString(eIniMain, "s", "K", "2"));
    EXPECT_EQ(files.read(kMain), "[S]\nK = 2\n");
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
        EXPECT_EQ(k(), "own");
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

TEST_F(MainProfile, AnswersNamedDirectories) {
    std::string directory = "untouched";
    EXPECT_FALSE(kora::profileDirectory("LIB", directory));
    EXPECT_EQ(directory, "untouched");
    main("[Directories]\nlib = c:\\lib\n");
    EXPECT_TRUE(kora::profileDirectory("LIB", directory));
    EXPECT_EQ(directory, "c:\\lib");
}

TEST_F(MainProfile, MergesTheFilesOfItsFolderInNameOrder) {
    files.makeFolder("documents/more.d/deep");
    files.write("documents/more.d/B.ini", "[S]\nb = B\nk = B\n[T]\nb = B\n");
    files.write("documents/more.d/a.INI", "[S]\na = a\nk = a\nb = a\nb = again\n[System]\nIncludeFolder = deep\n");
    files.write("documents/more.d/deep/x.ini", "[S]\nx = x\na = x\nb = x\n");
    files.write("documents/more.d/c.ini.bak", "[S]\nc = c\n");
    files.makeFolder("documents/more.d/d.ini");
    main("[System]\nincludefolder = more.d\n[S]\nk = main\n");
    EXPECT_EQ(k(), "main");
    EXPECT_EQ(get(eIniMain, "S", "a"), "a");
    EXPECT_EQ(get(eIniMain, "S", "b"), "a");
    EXPECT_EQ(get(eIniMain, "S", "x"), "x");
    EXPECT_EQ(get(eIniMain, "S", "c"), "(not found)");
    EXPECT_EQ(get(eIniMain, "T", "b"), "B");
    // Entries that lose are not counted; a file's own doubles are.
    std::string lines;
    CString key, value;
    for (short line = 0; IniGetLine(eIniMain, "S", line, key, value); ++line) lines += key + '=' + value + ' ';
    EXPECT_EQ(lines, "k=main a=a b=a b=again x=x ");
}

TEST_F(MainProfile, IncludesFoldersByReferenceAndByWholePath) {
    files.makeFolder("shareddata/common");
    files.write("shareddata/common/a.ini", "[S]\nk = shared\n");
    places.variables["COMMON"] = files.path("shareddata\\common");
    main("[System]\nIncludeFolder = %COMMON%\n");
    EXPECT_EQ(k(), "shared");
    main("[System]\nIncludeFolder = " + files.path("shareddata\\common") + "\\\n");
    EXPECT_EQ(k(), "shared");
    main("[System]\nIncludeFolder = ..\\shareddata\\common\n");
    EXPECT_EQ(k(), "shared");
    // By way of an entry that stands in the profile itself.
    main("[Directories]\ncommon = " + files.path("shareddata\\common") + "\n[System]\nIncludeFolder = %ini:common%\n");
    EXPECT_EQ(k(), "shared");
}

TEST_F(MainProfile, PassesOverMissingFoldersAndCycles) {
    main("[System]\nIncludeFolder = nowhere\n[S]\nk = 1\n");
    EXPECT_EQ(k(), "1");
    files.makeFolder("documents/a");
    files.makeFolder("documents/b");
    files.write("documents/a/a.ini", "[System]\nIncludeFolder = ..\\B\n[S]\na = 1\n");
    files.write("documents/b/b.ini", "[System]\nIncludeFolder = ..\\a\n[S]\nb = 1\n");
    files.write("documents/b/c.ini", "[System]\nIncludeFolder = ..\n[S]\nc = 1\n");
    main("[System]\nIncludeFolder = a\n[S]\nk = 1\n");
    std::string lines;
    CString key, value;
    for (short line = 0; IniGetLine(eIniMain, "S", line, key, value); ++line) lines += key;
    EXPECT_EQ(lines, "kabc");
}

TEST_F(MainProfile, TellsTheTraceWhatItReads) {
    TraceToFileSet(true);
    main("[System]\nIncludeFolder = .\n");
    EXPECT_EQ(files.read(kLog), "LoadIniFileInt: " + files.path("documents\\ts.ini") + "\n") << "each file once";
    files.write(kLog, "");
    main("[System]\nIncludeFolder = nowhere\n");
    EXPECT_EQ(files.read(kLog), "LoadIniFileInt: " + files.path("documents\\ts.ini") +
                                    "\nLoadIniFileInt: " + files.path("documents\\nowhere") + ": no such folder\n");
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
    EXPECT_EQ(k(), "(not found)");
    EXPECT_EQ(get(eIniState, "S", "k"), "(not found)");
    EXPECT_FALSE(IniSetString(eIniMain, "S", "k", "1"));
    EXPECT_FALSE(IniSetString(eIniState, "S", "k", "1"));
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
    for (const int i : {1, 99, 50001, 99999}) {
        const std::string section = std::string("S") + std::to_string(i / 100);
        const std::string key = std::string("KEY") + std::to_string(i);
        for (const eIniFile file : {eIniMain, eIniState})
            EXPECT_EQ(get(file, section.c_str(), key.c_str()), std::to_string(i));
    }
    EXPECT_TRUE(IniSetString(eIniState, "s999", "key99999", "new"));
    EXPECT_EQ(state(), text.substr(0, text.rfind("99999\n")) + "new\n");
}

}  // namespace
