#include <kora/Dir.h>
#include <kora/File.h>
#include <kora/Trace.h>

#include <algorithm>

#include "platform/Platform.h"
#include "settings/Store.h"
#include "tests/paths/PathsTest.h"

namespace kora::test {

namespace {

/// Counts the questions to the file system.
class CountedQuestions : public platform::FileSystem {
public:
    CountedQuestions() : before_(platform::fileSystemSet(this)) {}
    ~CountedQuestions() override { platform::fileSystemSet(before_); }
    bool status(const std::string& path, platform::FileStatus& status, platform::Failure& failure) override {
        ++count;
        return FileSystem::status(path, status, failure);
    }
    bool kind(const std::string& path, platform::FileKind& kind, platform::Failure& failure) override {
        ++count;
        return FileSystem::kind(path, kind, failure);
    }
    bool list(const std::string& path, std::vector<platform::DirectoryEntry>& entries,
              platform::Failure& failure) override {
        ++count;
        return FileSystem::list(path, entries, failure);
    }
    int count = 0;

private:
    platform::FileSystem* before_;
};

class FileLocation : public PathsTest {
protected:
    FileLocation() {
        for (const char* name : {"userdata/Veltrane/Tessera5", "path1", "path2"}) places.folder.makeFolder(name);
        places.variables["PATH"] = path("path1") + ';' + path("path2") + ";;";
        workingDirectoryRemember();
        settingsStop();
    }
    ~FileLocation() override { settingsStop(); }

    std::string locate(const std::string& name) {
        CString found = "(none)";
        const bool success = FileLocateFile(name.c_str(), found, false);
        EXPECT_EQ(success, found != "(none)");
        return found;
    }
};

TEST_F(FileLocation, FollowsTheFixedOrder) {
    FileDocRootSearchSet(true);
    const std::string order[] = {"documents", "userdata\\Veltrane\\Tessera5", "work", "program", "path1", "path2"};
    for (const std::string& place : order) {
        std::string native = place + "/tool.EXE";
        std::replace(native.begin(), native.end(), '\\', '/');
        places.folder.write(native, "");
    }
    for (const std::string& place : order) {
        EXPECT_EQ(locate("tool.EXE"), path(place + "\\tool.EXE"));
        FilePath(path(place + "\\tool.EXE").c_str()).FileDelete();
    }
    EXPECT_EQ(locate("tool.EXE"), "(none)");
}

TEST_F(FileLocation, LooksInPathForProgramsAndInDocumentsWhenToldTo) {
    for (const char* name : {"t.exe", "t.com", "t.BAT", "t.cmd", "t.txt", "exe"})
        places.folder.write(std::string("path2/") + name, "");
    places.folder.write("documents/x.txt", "");
    for (const char* name : {"t.exe", "t.com", "t.BAT", "t.cmd"}) EXPECT_NE(locate(name), "(none)") << name;
    for (const char* name : {"t.txt", "exe", "", "missing.exe"}) EXPECT_EQ(locate(name), "(none)") << name;
    EXPECT_FALSE(FileDocRootSearchGet());
    EXPECT_EQ(locate("x.txt"), "(none)");
    FileDocRootSearchSet(true);
    EXPECT_NE(locate("x.txt"), "(none)");
    pathsStop();
    EXPECT_EQ(rememberedWorkingDirectory(), "");
}

TEST_F(FileLocation, FindsAFullPathOnlyWhereItStands) {
    places.folder.write("system/x.txt", "");
    places.folder.makeFolder("work/server/share");
    places.folder.write("work/server/share/x.txt", "");
    EXPECT_EQ(locate(path("system\\x.txt")), path("system\\x.txt"));
    EXPECT_EQ(locate(path("work\\x.txt")), "(none)");
    EXPECT_EQ(locate("\\\\server\\share\\x.txt"), path("work\\server\\share\\x.txt")) << "a relative name";
    EXPECT_EQ(locate("server\\\\share\\x.txt"), "(none)") << "a full path by its two backslashes";
    EXPECT_EQ(locate("..\\work\\server\\.\\share\\x.txt"), path("work\\server\\share\\x.txt"));
    places.folder.makeFolder("work/directory.x");
    EXPECT_EQ(locate("directory.x"), "(none)");
}

TEST_F(FileLocation, ExpandsReferences) {
    for (const char* name : {"system/x.txt", "documents/x.txt", "work/%NO%x.txt", "work/a%b"})
        places.folder.write(name, "");
    places.variables["VAR"] = path("system");
    places.variables["SHORT"] = "x";
    EXPECT_EQ(locate("%VAR%\\x.txt"), path("system\\x.txt"));
    EXPECT_EQ(locate("%VAR%\\%SHORT%.txt"), path("system\\x.txt"));
    EXPECT_EQ(locate("%My Documents%\\x.txt"), path("documents\\x.txt"));
    EXPECT_EQ(locate("%windows%\\x.txt"), path("system\\x.txt"));
    EXPECT_EQ(locate("%NO%%SHORT%.txt"), path("work\\%NO%x.txt")) << "what nothing answers to stays";
    EXPECT_EQ(locate("a%b"), path("work\\a%b"));
    places.variables["NO%"] = "never asked";
    places.folder.write("work/%NOx", "");
    EXPECT_EQ(locate("%NO%SHORT%"), path("work\\%NOx")) << "a closing percent sign may open the next reference";
    struct Row {
        const char *reference, *place;
    };
    for (const Row& row :
         {Row{"app data", "userdata/Veltrane/Tessera5"}, Row{"public data", "shareddata/Veltrane/Tessera5"},
          Row{"program", "program"}, Row{"start in", "work"}, Row{"temp", "temporary"}}) {
        places.folder.makeFolder(row.place);
        places.folder.write(std::string(row.place) + "/y.txt", "");
        EXPECT_NE(locate('%' + std::string(row.reference) + "%\\y.txt"), "(none)") << row.reference;
    }
    places.folder.write("documents/ts.ini", "[Directories]\nParts = " + path("system") + "\n");
    settingsStop();
    EXPECT_EQ(locate("%Ini:PARTS%\\x.txt"), path("system\\x.txt"));
    EXPECT_EQ(locate("%ini:missing%\\x.txt"), "(none)");
    EXPECT_EQ(locate("%ini%\\x.txt"), "(none)");
    places.variables["temp"] = path("system");
    EXPECT_EQ(locate("%temp%\\x.txt"), path("system\\x.txt")) << "variables come first";
}

TEST_F(FileLocation, LooksInExplicitDirectoriesFirst) {
    for (const char* name : {"path1/x.txt", "path2/x.txt", "work/x.txt", "work/w.txt"}) places.folder.write(name, "");
    CStringArray dirs = {"", path("system"), path("path2"), path("path1")};
    FilePath found;
    EXPECT_TRUE(FileLocateFile(dirs, "x.txt", found, true));
    EXPECT_EQ(shown(found), path("path2\\x.txt"));
    EXPECT_TRUE(FileLocateFile(path("path1").c_str(), dirs, "x.txt", found, true));
    EXPECT_EQ(shown(found), path("path1\\x.txt"));
    EXPECT_TRUE(FileLocateFile("", dirs, "w.txt", found, true));
    EXPECT_EQ(shown(found), path("work\\w.txt"));
    EXPECT_FALSE(FileLocateFile(nullptr, dirs, "missing", found, true));
    EXPECT_FALSE(FileLocateFile(dirs, nullptr, found, true));
    EXPECT_FALSE(FileLocateFile(nullptr, found, true));
    EXPECT_EQ(shown(found), path("work\\w.txt")) << "not finding leaves the result alone";
    dirs = {places.folder.nativeText("path1")};
    EXPECT_TRUE(FileLocateFile(dirs, "x.txt", found, true)) << "a native directory";
    EXPECT_EQ(shown(found), path("path1\\x.txt"));
    dirs = {std::string(300, 'd'), path("work") + std::string(254 - path("work").size(), '\\')};
    EXPECT_TRUE(FileLocateFile(dirs, "w.txt", found, true)) << "overlong directories are skipped";
}

TEST_F(FileLocation, CollectsEveryMatchOnce) {
    for (const char* name : {"path1/x.txt", "program/x.txt", "work/x.txt"}) places.folder.write(name, "");
    std::string workInCapitals = path("work");
    std::replace(workInCapitals.begin(), workInCapitals.end(), 'k', 'K');
    CStringArray dirs = {path("path1"), path("work"), "", workInCapitals}, results = {"kept", "c:\\y", "C:\\Y"};
    FileLocateFile("x.txt", dirs, path("path1").c_str(), results, false);
    EXPECT_EQ(results,
              (CStringArray{"kept", "c:\\y", path("path1\\x.txt"), path("work\\x.txt"), path("program\\x.txt")}));
    FileLocateFile(nullptr, dirs, nullptr, results, false);
    EXPECT_EQ(results.size(), 5u);
    FileLocateFile("x.txt", dirs, nullptr, dirs, false);  // one array for both
    EXPECT_EQ(dirs.size(), 6u) << "three directories, one of which stood there twice, and three matches";
}

TEST_F(FileLocation, AsksOneQuestionForEachDirectory) {
    places.folder.write("path2/x.txt", "");
    CStringArray dirs(5, path("system"));
    dirs.push_back(path("path2"));
    FilePath found;
    CountedQuestions questions;
    EXPECT_TRUE(FileLocateFile(dirs, "x.txt", found, false));
    EXPECT_EQ(questions.count, 6);
}

TEST_F(FileLocation, MarksItsSteps) {
    TraceRecordSet(true);
    locate("missing");
    EXPECT_EQ(LastTrace(), 0x48A00u);
}

TEST_F(FileLocation, ListsTheSearchDirectoriesOnce) {
    CStringArray dirs = {"before"};
    FileGetSearchDirs(dirs);
    EXPECT_EQ(dirs, (CStringArray{"before", path("documents"), path("userdata\\Veltrane\\Tessera5"), path("program")}));
    places.instead["documents"] = path("USERDATA\\veltrane\\tessera5");
    places.instead["program"] = path("userdata\\Veltrane\\TESSERA5");
    pathsStart();
    dirs.clear();
    FileGetSearchDirs(dirs);
    EXPECT_EQ(dirs, CStringArray{path("USERDATA\\veltrane\\tessera5")});
    FileGetProgramDir(dirs[0]);
    EXPECT_EQ(dirs[0], path("userdata\\Veltrane\\TESSERA5"));
}

}  // namespace

}  // namespace kora::test
