#include <kora/Dir.h>
#include <kora/File.h>
#include <kora/Trace.h>

#include <algorithm>
#include <random>

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
    bool kind(const std::string& path, platform::FileKind& kind, platform::Failure& failure) override {
        ++count;
        return FileSystem::kind(path, kind, failure);
    }
    bool status(const std::string&, platform::FileStatus&, platform::Failure&) override { return ++count < 0; }
    bool list(const std::string&, std::vector<platform::DirectoryEntry>&, platform::Failure&) override {
        return ++count < 0;
    }
    int count = 0;

private:
    platform::FileSystem* before_;
};

class FileLocation : public PathsTest {
protected:
    FileLocation() {
        for (const char* name : {"userdata/Veltrane/Tessera5", "path1", "path2"}) places.folder.MakeFolder(name);
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
    const std::string order[] = {"documents", "userdata\\Veltrane\\Tessera5", "work", "program", "path1", "path2"};
    CString text;
    for (const std::string& place : order) FilePath(path(place + "\\tool.EXE").c_str()).FileWriteString(text, false);
    for (const std::string& place : order) {
        // The document root only when it is told to.
        EXPECT_NE(locate("tool.EXE"), path("documents\\tool.EXE"));
        FileDocRootSearchSet(true);
        EXPECT_EQ(locate("tool.EXE"), path(place + "\\tool.EXE"));
        FileDocRootSearchSet(false);
        FilePath(path(place + "\\tool.EXE").c_str()).FileDelete();
    }
    EXPECT_EQ(locate("tool.EXE"), "(none)");
    makeFiles({"path2/t.exe", "path2/t.com", "path2/t.BAT", "path2/t.cmd", "path2/t.txt", "path2/exe"});
    for (const char* name : {"t.exe", "t.com", "t.BAT", "t.cmd"}) EXPECT_NE(locate(name), "(none)") << name;
    for (const char* name : {"t.txt", "exe", "", "missing.exe"}) EXPECT_EQ(locate(name), "(none)") << name;
    TraceRecordSet(true);
    locate("missing");
    EXPECT_EQ(LastTrace(), 0x48A00u);
    pathsStop();
    EXPECT_EQ(rememberedWorkingDirectory(), "");
}

TEST_F(FileLocation, FindsAFullPathOnlyWhereItStands) {
    places.folder.MakeFolder("work/server/share");
    places.folder.MakeFolder("work/directory.x");
    makeFiles({"system/x.txt", "work/server/share/x.txt"});
    EXPECT_EQ(locate(path("system\\x.txt")), path("system\\x.txt"));
    EXPECT_EQ(locate(path("work\\x.txt")), "(none)");
    EXPECT_EQ(locate("\\\\server\\share\\x.txt"), path("work\\server\\share\\x.txt")) << "a relative name";
    EXPECT_EQ(locate("server\\\\share\\x.txt"), "(none)") << "a full path by its two backslashes";
    EXPECT_EQ(locate("..\\work\\server\\.\\share\\x.txt"), path("work\\server\\share\\x.txt"));
    EXPECT_EQ(locate("directory.x"), "(none)");
}

TEST_F(FileLocation, ExpandsReferences) {
    makeFiles({"system/x.txt", "documents/x.txt", "work/%NO%x.txt", "work/a%b", "work/%NOx"});
    places.folder.Write("documents/ts.ini", "[Directories]\nParts = " + path("system") + "\n");
    places.variables.insert({{"VAR", path("system")}, {"SHORT", "x"}, {"NO%", "never asked"}});
    for (const char* place :
         {"userdata/Veltrane/Tessera5", "shareddata/Veltrane/Tessera5", "program", "work", "temporary"}) {
        places.folder.MakeFolder(place);
        makeFiles({std::string(place) + "/y.txt"});
    }
    // Name and where it is found. What nothing answers to stays, and its closing percent sign may open the next one.
    for (const char* row :
         {"%VAR%\\x.txt | system\\x.txt", "%VAR%\\%SHORT%.txt | system\\x.txt",
          "%My Documents%\\x.txt | documents\\x.txt", "%windows%\\x.txt | system\\x.txt",
          "%NO%%SHORT%.txt | work\\%NO%x.txt", "a%b | work\\a%b", "%NO%SHORT% | work\\%NOx",
          "%app data%\\y.txt | userdata\\Veltrane\\Tessera5\\y.txt",
          "%public data%\\y.txt | shareddata\\Veltrane\\Tessera5\\y.txt", "%program%\\y.txt | program\\y.txt",
          "%start in%\\y.txt | work\\y.txt", "%temp%\\y.txt | temporary\\y.txt", "%Ini:PARTS%\\x.txt | system\\x.txt",
          "%ini:missing%\\x.txt | ", "%ini%\\x.txt | "}) {
        const auto column = columns(row);
        EXPECT_EQ(locate(column[0]), column[1].empty() ? "(none)" : path(column[1])) << row;
    }
    places.variables["temp"] = path("system");
    EXPECT_EQ(locate("%temp%\\x.txt"), path("system\\x.txt")) << "variables come first";
}

TEST_F(FileLocation, LooksInExplicitDirectoriesFirst) {
    makeFiles({"path1/x.txt", "path2/x.txt", "work/x.txt", "work/w.txt"});
    CStringArray dirs = {"", path("system"), path("path2"), path("path1")};
    FilePath found;
    EXPECT_TRUE(FileLocateFile(dirs, "x.txt", found, true));
    EXPECT_EQ(shown(found), path("path2\\x.txt"));
    EXPECT_TRUE(FileLocateFile(path("path1").c_str(), dirs, "x.txt", found, true));
    EXPECT_EQ(shown(found), path("path1\\x.txt"));
    EXPECT_TRUE(FileLocateFile("", dirs, "w.txt", found, true));
    EXPECT_EQ(shown(found), path("work\\w.txt"));
    EXPECT_FALSE(FileLocateFile(nullptr, dirs, "missing", found, true) || FileLocateFile(dirs, nullptr, found, true));
    EXPECT_FALSE(FileLocateFile(nullptr, found, true));
    EXPECT_EQ(shown(found), path("work\\w.txt")) << "not finding leaves the result alone";
    dirs = {places.folder.NativeText("path1")};
    EXPECT_TRUE(FileLocateFile(dirs, "x.txt", found, true)) << "a native directory";
    EXPECT_EQ(shown(found), path("path1\\x.txt"));
    dirs = {std::string(300, 'd'), path("work") + std::string(254 - path("work").size(), '\\')};
    EXPECT_TRUE(FileLocateFile(dirs, "w.txt", found, true)) << "overlong directories are skipped";

    dirs.assign(5, path("system"));
    dirs.push_back(path("path2"));
    CountedQuestions questions;
    EXPECT_TRUE(FileLocateFile(dirs, "x.txt", found, false));
    EXPECT_EQ(questions.count, 6) << "one for each directory";
}

TEST_F(FileLocation, CollectsEveryMatchOnce) {
    makeFiles({"path1/x.txt", "program/x.txt", "work/x.txt"});
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

/// Keeps what was asked for, and denies what lies in one directory.
struct WatchedQuestions : CountedQuestions {
    bool kind(const std::string& path, platform::FileKind& kind, platform::Failure& failure) override {
        asked.push_back(path);
        if (path.find("path2") == path.npos) return FileSystem::kind(path, kind, failure);
        failure = {platform::Cause::denied, 5};
        return false;
    }
    CStringArray asked;
};

TEST_F(FileLocation, IsExplainedAsItComesAbout) {
    const std::string longPath = path(std::string(260, '\\') + "work\\x.exe");
    places.variables.insert({{"VAR", path("path1")}, {"EXT", "exe"}});
    FileExplanation told;
    for (unsigned seed = 0; seed < 1000; ++seed) {
        std::mt19937 random(seed);
        const auto one = [&](const CStringArray& choices) { return choices[random() % choices.size()]; };
        for (const char* place : {"documents", "userdata/Veltrane/Tessera5", "work", "program", "path1", "path2"}) {
            std::filesystem::remove(places.folder.Native() / place / "x.exe");
            if (random() % 4 == 0) makeFiles({std::string(place) + "/x.exe"});
        }
        FileDocRootSearchSet(random() % 2);
        const std::string name = one({"x.exe", "x.exe", "x.%EXT%", "%VAR%\\x.exe", "..\\work\\x.exe", "x.txt", "path1",
                                      "", path("work\\x.exe"), longPath});
        CStringArray dirs(random() % 3), all, matches, asked;
        for (CString& dir : dirs)
            dir = one({"", path("path2"), path("path1"), places.folder.NativeText("program"), std::string(300, 'd')});
        const std::string dir = one({"", path("work"), places.folder.Path()});
        SCOPED_TRACE(testing::Message() << "seed " << seed << ' ' << name);
        FilePath found;
        WatchedQuestions questions;
        const bool success = FileLocateFile(dir.c_str(), dirs, name.c_str(), found, false);
        questions.asked.swap(asked);
        ASSERT_EQ(FileLocateExplain(dir.c_str(), dirs, name.c_str(), told), success);
        EXPECT_EQ(questions.asked, asked);
        EXPECT_EQ(told.found, success ? found.FileStringGet() : "");
        std::erase_if(told.tries, [](auto& at) { return at.verdict == FileVerdictNotAsked || at.path.empty(); });
        ASSERT_EQ(told.tries.size(), asked.size());
        for (std::size_t i = 0; i < asked.size(); ++i) {
            EXPECT_EQ(told.tries[i].path, asked[i]);
            EXPECT_EQ(told.tries[i].verdict == FileVerdictDenied, told.tries[i].cause == FileErrorDenied);
        }
        FileLocateFile(name.c_str(), dirs, dir.c_str(), all, false);
        EXPECT_EQ(FileLocateExplain(dir.c_str(), dirs, name.c_str(), told, /*everywhere=*/true), success);
        for (const FileTry& tried : told.tries)
            if (tried.verdict == FileVerdictFound && std::ranges::find(matches, tried.path) == matches.end())
                matches.push_back(tried.path);
        ASSERT_TRUE(matches == all || name == longPath);
    }
    EXPECT_FALSE(FileLocateExplain("%NO%EXT%%ini:K%", told));
    CString seen;
    for (const FileReference& part : told.references)
        seen += part.name + std::to_string(part.answer) + part.value + ' ';
    EXPECT_EQ(seen, "NO0 EXT1exe ini:K0 ");
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
