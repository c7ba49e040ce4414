#include <kora/Err.h>
#include <kora/File.h>

#include <functional>

#include "core/TraceCodes.h"
#include "platform/Platform.h"
#include "tests/paths/PathsTest.h"
#include "tests/support/FileFault.h"
#include "tests/support/RecordedPresenter.h"

namespace kora::test {

namespace {

TEST(FileStringSet, SplitsAtTheLastSeparatorAndTheLastDot) {
    struct Row {
        const char *text, *dir, *base, *type, *whole;
    };
    static constexpr Row rows[] = {
        {"c:\\dir\\name.ext.bak", "c:\\dir", "name.ext", "bak", "c:\\dir\\name.ext.bak"},
        {"c:\\name", "c:", "name", "", "c:\\name"},
        {"c:\\d.x\\name", "c:\\d.x", "name", "", "c:\\d.x\\name"},
        {"c:\\dir\\", "c:\\dir", "", "", "c:\\dir\\"},
        {"c:\\dir\\.profile", "c:\\dir", "", "profile", "c:\\dir\\.profile"},
        {"c:\\dir\\name.", "c:\\dir", "name", "", "c:\\dir\\name"},
        {"\\\\server\\share\\n.t", "\\\\server\\share", "n", "t", "\\\\server\\share\\n.t"},
        // relative to z:\old
        {"new.txt", "z:\\old", "new", "txt", "z:\\old\\new.txt"},
        {"sub\\new.txt", "z:\\old\\sub", "new", "txt", "z:\\old\\sub\\new.txt"},
        {"..\\new.txt", "z:\\", "new", "txt", "z:\\new.txt"},
        {"\\sub\\new.txt", "z:\\sub", "new", "txt", "z:\\sub\\new.txt"},
        {"\\new.txt", "z:\\", "new", "txt", "z:\\new.txt"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        FilePath path("z:\\old\\file.old");
        EXPECT_TRUE(path.FileStringSet(row.text));
        EXPECT_EQ(shown(path.DirStringGet()), row.dir);
        EXPECT_STREQ(path.FileBaseNameGet(), row.base);
        EXPECT_STREQ(path.FileTypeGet(), row.type);
        EXPECT_STREQ(path.FileStringGet(), row.whole);
    }
}

TEST(FileStringSet, RefusesWhatReaches255AndKeepsEverything) {
    FilePath path("c:\\dir\\name.txt");
    EXPECT_FALSE(path.FileStringSet(nullptr));
    EXPECT_FALSE(path.FileStringSet(""));
    EXPECT_FALSE(path.FileStringSet(("c:\\" + std::string(252, 'x')).c_str()));
    EXPECT_FALSE(path.FileStringSet((std::string(248, 'x') + "\\new").c_str())) << "the directory would reach 255";
    EXPECT_STREQ(path.FileStringGet(), "c:\\dir\\name.txt");
    EXPECT_TRUE(path.FileStringSet(("c:\\" + std::string(251, 'x')).c_str()));
}

TEST(FileStringSet, TakesItsOwnTexts) {
    FilePath path("c:\\dir\\name.txt");
    EXPECT_TRUE(path.FileStringSet(path));
    EXPECT_TRUE(path.FileStringSet(path.FileStringGet()));
    EXPECT_STREQ(path, "c:\\dir\\name.txt");
    EXPECT_TRUE(path.FileFullNameSet(path.FileFullNameGet()));
    EXPECT_TRUE(path.FileBaseNameSet(path.FileBaseNameGet() + 1));
    EXPECT_TRUE(path.FileTypeSet(path.FileTypeGet() + 1));
    EXPECT_TRUE(path.SetDir(path.GetDir()));
    path = *&path;
    EXPECT_STREQ(path, "c:\\dir\\ame.xt");
    path = path.FileFullNameGet();
    EXPECT_STREQ(path, "c:\\dir\\ame.xt");
}

TEST(FileStringSet, TurnsNativeTextIntoLibraryForm) {
    if (platform::libraryPath("/a") == "/a") GTEST_SKIP() << "this system's paths are in library form";
    FilePath path("/home/u/x.txt");
    EXPECT_STREQ(path, "Z:\\home\\u\\x.txt");
    EXPECT_TRUE(path.SetDir("/tmp"));
    EXPECT_STREQ(path, "Z:\\tmp\\x.txt");
    EXPECT_FALSE(path.FileStringSet(("/" + std::string(252, 'x')).c_str())) << "Z: makes it 255";
    EXPECT_TRUE(path.FileStringSet(("/" + std::string(251, 'x')).c_str()));
}

TEST(FileNameSetters, RefuseNamesOf255CharactersAndFileTheFault) {
    const std::string longest(254, 'n'), over(255, 'n');
    FilePath path("c:\\dir\\name.txt");
    const auto filed = [] {
        unsigned long code = 0;
        void* data = nullptr;
        int text = 0;
        ErrSevereGet(code, data, text);
        return code;
    };
    EXPECT_FALSE(path.FileFullNameSet(over.c_str()));
    EXPECT_EQ(filed(), trace::code(trace::kFilePath, 769));
    EXPECT_FALSE(path.FileBaseNameSet(over.c_str()));
    EXPECT_EQ(filed(), trace::code(trace::kFilePath, 1025));
    EXPECT_FALSE(path.FileTypeSet(over.c_str()));
    EXPECT_EQ(filed(), trace::code(trace::kFilePath, 1057));
    EXPECT_STREQ(path, "c:\\dir\\name.txt");

    EXPECT_TRUE(path.FileBaseNameSet(longest.c_str()) && path.FileTypeSet(longest.c_str()));
    EXPECT_TRUE(path.SetDir(("c:\\" + std::string(251, 'd')).c_str()));
    EXPECT_EQ(shown(path), shown(path.DirStringGet()) + '\\' + longest + '.' + longest);
}

TEST(FileNameSetters, TakeNullDotsAndNothing) {
    FilePath path;
    EXPECT_TRUE(path.FileNullGet());
    EXPECT_STREQ(path, "");
    path.FileFullNameSet("a.b.c");
    EXPECT_STREQ(path.FileBaseNameGet(), "a.b");
    EXPECT_TRUE(path.FileTypeSet(".txt"));
    EXPECT_STREQ(path.FileTypeGet(), "txt");
    EXPECT_TRUE(path.FileTypeSet("..x"));
    EXPECT_STREQ(path, "a.b..x") << "a null directory leaves the name alone";
    EXPECT_TRUE(path.FileTypeSet(nullptr));
    EXPECT_STREQ(path, "a.b");
    EXPECT_TRUE(path.FileBaseNameSet(nullptr));
    EXPECT_TRUE(path.FileNullGet());
    path = "c:\\dir\\name.txt";
    EXPECT_TRUE(path.FileFullNameSet(nullptr));
    EXPECT_STREQ(path, "c:\\dir\\");
    EXPECT_FALSE(path.FileNullGet());
    path.FileNullSet();
    EXPECT_TRUE(path.FileNullGet());
}

TEST(FilePathMade, OfParts) {
    DirPath dir("c:\\dir");
    EXPECT_STREQ(FilePath(&dir, "name.txt", "base", "type"), "c:\\dir\\name.txt") << "the name wins";
    EXPECT_STREQ(FilePath("c:\\dir", nullptr, "base", ".type"), "c:\\dir\\base.type");
    EXPECT_STREQ(FilePath("c:\\dir", "", "base", nullptr), "c:\\dir\\base");
    EXPECT_STREQ(FilePath(static_cast<DirPath*>(nullptr), "name", nullptr, nullptr), "name");

    FilePath path("c:\\old\\name.txt");
    DirPath none, relative("sub");
    EXPECT_TRUE(path.SetDir(relative));
    EXPECT_STREQ(path, "sub\\name.txt") << "replaced, not applied";
    EXPECT_TRUE(path.SetDir(&none));
    EXPECT_STREQ(path, "name.txt");
    EXPECT_FALSE(path.SetDir(static_cast<DirPath*>(nullptr)));
    EXPECT_TRUE(path.FileSet(dir, "new.x"));
    EXPECT_FALSE(path.FileSet(relative, std::string(255, 'x').c_str()));
    EXPECT_STREQ(path, "c:\\dir\\new.x");
    path.FileCreatorSet(-7);
    const FilePath copy(path);
    EXPECT_EQ(FilePath(copy).FileCreatorGet(), -7);
    EXPECT_STREQ(FilePath(copy), "c:\\dir\\new.x");
}

TEST(FileDisplayGet, CapitalizesWithoutTouchingWhatIsStored) {
    FilePath path("c:\\projects\\my files\\netlist");
    EXPECT_STREQ(path.FileDisplayGet(FileDisplayPath), "c:\\Projects\\my files\\Netlist");
    EXPECT_STREQ(path.FileDisplayGet(FileDisplayName), "Netlist");
    EXPECT_STREQ(path, "c:\\projects\\my files\\netlist");
    path = "x.txt";
    EXPECT_STREQ(FilePath("a.b").FileDisplayGet(FileDisplayName), "a.b");
    EXPECT_STREQ(FilePath().FileDisplayGet(FileDisplayPath), "");
}

class FileOnDisk : public PathsTest {
protected:
    FilePath file{path("work\\file.txt").c_str()};
};

TEST_F(FileOnDisk, IsWrittenReadAndDeleted) {
    const CString bytes("one\r\ntwo\0three", 14);
    CString text = bytes;
    EXPECT_FALSE(file.FileExists());
    EXPECT_EQ(file.FileGetErrorCause(), FileErrorNone) << "not being there is an answer";
    EXPECT_FALSE(file.FileReadString(text));
    EXPECT_EQ(text, bytes);
    EXPECT_EQ(file.FileGetErrorCause(), FileErrorNotFound);
    EXPECT_NE(file.FileGetErrorCode(), 0u);
    EXPECT_EQ(file.GetSize(), -1);
    EXPECT_EQ(file.GetModificationTime(), -1);

    EXPECT_TRUE(file.FileWriteString(text, true));
    EXPECT_TRUE(file.FileExists());
    EXPECT_FALSE(file.FileReadOnly());
    EXPECT_EQ(file.GetSize(), 14);
    text.clear();
    EXPECT_TRUE(file.FileReadString(text));
    EXPECT_EQ(text, bytes);
    text = "short";
    EXPECT_TRUE(file.FileWriteString(text, false));
    EXPECT_EQ(places.folder.read("work/file.txt"), "short");
    EXPECT_EQ(file.FileGetErrorCause(), FileErrorNotFound) << "the last failure, whatever went well since";
    EXPECT_TRUE(file.FileDelete());
    EXPECT_FALSE(file.FileDelete());
    EXPECT_FALSE(places.folder.has("work/file.txt"));
}

TEST_F(FileOnDisk, KeepsTimesInSecondsSince1970) {
    places.folder.write("work/file.txt", "x");
    const std::int64_t now = std::time(nullptr);
    EXPECT_NEAR(static_cast<double>(file.GetModificationTime()), static_cast<double>(now), 10);
    if (!file.SetCreationTime(1'000'000'000)) {
        EXPECT_EQ(file.FileGetErrorCause(), FileErrorUnsupported);
        return;
    }
    EXPECT_EQ(file.GetCreationTime(), 1'000'000'000);
}

TEST_F(FileOnDisk, ReportsWhateverFails) {
    places.folder.write("work/file.txt", "x");
    CString text;
    const std::function<bool()> operations[] = {
        [&] { return file.FileExists(); },
        [&] { return file.GetSize() != -1; },
        [&] { return file.GetCreationTime() != -1; },
        [&] { return file.SetCreationTime(0); },
        [&] { return file.FileReadString(text); },
        [&] { return file.FileWriteString(text, false); },
        [&] { return file.FileDelete(); },
    };
    for (const auto& operation : operations) {
        SCOPED_TRACE(&operation - operations);
        FileFault fault(1, platform::Cause::denied);
        file = FilePath(file.FileStringGet());
        EXPECT_FALSE(operation());
        EXPECT_EQ(file.FileGetErrorCause(), FileErrorDenied);
    }
    FilePath directory(path("work").c_str());
    EXPECT_FALSE(directory.FileExists());
    EXPECT_FALSE(directory.FileReadString(text));
    EXPECT_EQ(directory.FileGetErrorCause(), FileErrorWrongKind);
    FilePath none;
    EXPECT_FALSE(none.FileExists() || none.FileReadString(text) || none.FileWriteString(text, false) ||
                 none.FileDelete() || none.Run(nullptr, 1, 1));
    FilePath missing(path("work\\nothing.exe").c_str());
    EXPECT_FALSE(missing.Run("x", 1, 1));
    EXPECT_NE(missing.FileGetErrorCause(), FileErrorNone);
}

TEST_F(FileOnDisk, MakesDirectoriesOnlyWhereTheLibraryKeepsItsOwn) {
    CString text = "x";
    places.instead["documents"] = path("documents\\deep\\down");
    for (auto init : {&DirPath::DirInitAppData, &DirPath::DirInitPublicData, &DirPath::DirInitDocRoot}) {
        FilePath own;
        ASSERT_TRUE((own.*init)());
        own.FileStringSet("sub\\file.txt");
        EXPECT_TRUE(own.FileWriteString(text, false)) << own.FileStringGet();
        EXPECT_TRUE(own.FileExists());
    }
    FilePath elsewhere(path("work\\sub\\file.txt").c_str());
    EXPECT_FALSE(elsewhere.FileWriteString(text, false));
    EXPECT_EQ(elsewhere.FileGetErrorCause(), FileErrorNotFound);
    EXPECT_FALSE(places.folder.has("work/sub"));
}

TEST_F(FileOnDisk, IsChosenByTheUser) {
    RecordedPresenter user;
    EXPECT_FALSE(file.FileDialogOpen("Open", "Text Files;txt"));
    user.chosen = "c:\\new\\chosen.txt";
    EXPECT_TRUE(file.FileDialogSaveAs(nullptr, nullptr));
    EXPECT_STREQ(file, "c:\\new\\chosen.txt");
    ASSERT_EQ(user.asked.size(), 2u);
    EXPECT_EQ(user.asked[0].filter, "Text Files;txt");
    EXPECT_EQ(user.asked[0].path, path("work\\file.txt"));
    EXPECT_FALSE(user.asked[0].saving);
    EXPECT_TRUE(user.asked[1].saving);
}

TEST_F(FileOnDisk, TakesTemporaryNamesThatExistNowhere) {
    places.variables["TMP"] = path("work");
    FilePath a, b;
    EXPECT_TRUE(a.SetTempName(nullptr, nullptr));
    EXPECT_EQ(shown(a.DirStringGet()), path("work"));
    EXPECT_EQ(shown(a.FileFullNameGet()).rfind("qztemp_", 0), 0u);
    EXPECT_STREQ(a.FileTypeGet(), "");
    EXPECT_TRUE(b.SetTempName("p", ".tar"));
    EXPECT_STREQ(b.FileTypeGet(), "tar");
    EXPECT_TRUE(b.SetTempName("", "ert"));
    EXPECT_STREQ(b.FileTypeGet(), "ert");
    EXPECT_FALSE(a.FileCompare(&b) || b.FileExists());

    // The names that come next are taken.
    CString text;
    for (int i = 1; i <= 3; ++i) {
        FilePath next;
        next.SetTempName("q", "x");
        std::string name = next.FileBaseNameGet();
        const std::size_t number = name.rfind('_') + 1;
        name = name.substr(0, number) + std::to_string(std::stoi(name.substr(number)) + 1);
        next.FileBaseNameSet(name.c_str());
        next.FileWriteString(text, false);
        FilePath after;
        after.SetTempName("q", "x");
        EXPECT_FALSE(after.FileExists()) << after.FileStringGet();
    }
    places.variables["TMP"] = path("missing");
    a.SetTempName(nullptr, nullptr);
    EXPECT_TRUE(a.DirExists());
    EXPECT_NE(shown(a.DirStringGet()), path("missing"));
    EXPECT_TRUE(a.SetTempName(std::string(300, 'p').c_str(), nullptr));
    EXPECT_TRUE(a.FileNullGet()) << "no old name to write to by mistake";
}

}  // namespace

}  // namespace kora::test
