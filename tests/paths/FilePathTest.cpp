#include <kora/Err.h>
#include <kora/File.h>

#include <functional>

#include "core/TraceCodes.h"
#include "platform/Platform.h"
#include "tests/paths/PathsTest.h"
#include "tests/support/FileFault.h"

namespace kora::test {

namespace {

TEST(FileStringSet, SplitsAtTheLastSeparatorAndTheLastDot) {
    // Text, directory, base name, type, whole path; what is relative is so to z:\old.
    for (const char* row :
         {"c:\\dir\\name.ext.bak | c:\\dir | name.ext | bak | c:\\dir\\name.ext.bak",
          "c:\\name | c: | name |  | c:\\name", "c:\\d.x\\name | c:\\d.x | name |  | c:\\d.x\\name",
          "c:\\dir\\ | c:\\dir |  |  | c:\\dir\\", "c:\\dir\\.profile | c:\\dir |  | profile | c:\\dir\\.profile",
          "c:\\dir\\name. | c:\\dir | name |  | c:\\dir\\name",
          "\\\\server\\share\\n.t | \\\\server\\share | n | t | \\\\server\\share\\n.t",
          "new.txt | z:\\old | new | txt | z:\\old\\new.txt",
          "sub\\new.txt | z:\\old\\sub | new | txt | z:\\old\\sub\\new.txt",
          "..\\new.txt | z:\\ | new | txt | z:\\new.txt", "\\sub\\new.txt | z:\\sub | new | txt | z:\\sub\\new.txt",
          "\\new.txt | z:\\ | new | txt | z:\\new.txt"}) {
        FilePath path("z:\\old\\file.old");
        EXPECT_TRUE(path.FileStringSet(columns(row)[0].c_str()));
        const std::string dir = path.DirStringGet(), base = path.FileBaseNameGet(), type = path.FileTypeGet();
        EXPECT_EQ(columns(row)[0] + " | " + dir + " | " + base + " | " + type + " | " + path.FileStringGet(), row);
    }
}

TEST(FileStringSet, RefusesWhatReaches255AndTakesItsOwnTexts) {
    FilePath path("c:\\dir\\name.txt");
    EXPECT_FALSE(path.FileStringSet(nullptr) || path.FileStringSet(""));
    EXPECT_FALSE(path.FileStringSet(("c:\\" + std::string(252, 'x')).c_str()));
    EXPECT_FALSE(path.FileStringSet((std::string(248, 'x') + "\\new").c_str())) << "the directory would reach 255";
    EXPECT_STREQ(path, "c:\\dir\\name.txt");
    EXPECT_TRUE(FilePath(path).FileStringSet(("c:\\" + std::string(251, 'x')).c_str()));

    EXPECT_TRUE(path.FileStringSet(path) && path.FileFullNameSet(path.FileFullNameGet()));
    EXPECT_TRUE(path.FileBaseNameSet(path.FileBaseNameGet() + 1) && path.FileTypeSet(path.FileTypeGet() + 1));
    EXPECT_TRUE(path.SetDir(path.GetDir()));
    path = *&path;
    path = path.FileFullNameGet();
    EXPECT_STREQ(path, "c:\\dir\\ame.xt");
}

TEST(FileNameSetters, RefuseNamesOf255CharactersAndFileTheFault) {
    const std::string longest(254, 'n'), over(255, 'n');
    FilePath path("c:\\dir\\name.txt");
    const std::pair<bool (FilePath::*)(const char*), unsigned> setters[] = {
        {&FilePath::FileFullNameSet, 769}, {&FilePath::FileBaseNameSet, 1025}, {&FilePath::FileTypeSet, 1057}};
    for (const auto& [set, fault] : setters) {
        unsigned long code = 0;
        void* data = nullptr;
        int text = 0;
        EXPECT_FALSE((path.*set)(over.c_str()));
        ErrSevereGet(code, data, text);
        EXPECT_EQ(code, trace::code(trace::kFilePath, fault));
    }
    EXPECT_STREQ(path, "c:\\dir\\name.txt");
    EXPECT_TRUE(path.FileBaseNameSet(longest.c_str()) && path.FileTypeSet(longest.c_str()));
    EXPECT_TRUE(path.SetDir(("c:\\" + std::string(251, 'd')).c_str()));
    EXPECT_EQ(shown(path), shown(path.DirStringGet()) + '\\' + longest + '.' + longest);
}

class FileOnDisk : public PathsTest {
protected:
    FilePath file{path("work\\file.txt").c_str()};
};

TEST_F(FileOnDisk, IsWrittenReadAndDeleted) {
    CString bytes("one\r\ntwo\0three", 14), text = "kept";
    EXPECT_FALSE(file.FileExists());
    EXPECT_EQ(file.FileGetErrorCause(), FileErrorNone) << "not being there is an answer";
    EXPECT_FALSE(file.FileReadString(text) || text != "kept");
    EXPECT_TRUE(file.FileGetErrorCause() == FileErrorNotFound && file.FileGetErrorCode() != 0);

    EXPECT_TRUE(file.FileWriteString(bytes, true) && file.FileExists() && !file.FileReadOnly());
    EXPECT_EQ(file.GetSize(), 14);
    EXPECT_TRUE(file.FileReadString(text) && text == bytes);
    text = "short";
    EXPECT_TRUE(file.FileWriteString(text, false));
    EXPECT_EQ(places.folder.Read("work/file.txt"), "short");
    EXPECT_EQ(file.FileGetErrorCause(), FileErrorNotFound) << "the last failure, whatever went well since";
    EXPECT_TRUE(file.FileDelete() && !file.FileDelete());
}

TEST_F(FileOnDisk, ReportsWhateverFails) {
    places.folder.Write("work/file.txt", "x");
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
        FileFault fault(1, platform::Cause::denied);
        file = FilePath(file.FileStringGet());
        EXPECT_FALSE(operation()) << &operation - operations;
        EXPECT_EQ(file.FileGetErrorCause(), FileErrorDenied) << &operation - operations;
    }
}

TEST_F(FileOnDisk, MakesDirectoriesOnlyWhereTheLibraryKeepsItsOwn) {
    CString text = "x";
    places.instead["documents"] = path("documents\\deep\\down");
    for (auto init : {&DirPath::DirInitAppData, &DirPath::DirInitPublicData, &DirPath::DirInitDocRoot}) {
        FilePath own;
        ASSERT_TRUE((own.*init)());
        own.FileStringSet("sub\\file.txt");
        EXPECT_TRUE(own.FileWriteString(text, false) && own.FileExists()) << own.FileStringGet();
    }
    FilePath elsewhere(path("work\\sub\\file.txt").c_str());
    EXPECT_FALSE(elsewhere.FileWriteString(text, false));
    EXPECT_EQ(elsewhere.FileGetErrorCause(), FileErrorNotFound);
    EXPECT_FALSE(places.folder.Has("work/sub"));
}

TEST_F(FileOnDisk, TakesTemporaryNamesThatExistNowhere) {
    places.variables["TMP"] = path("work");
    FilePath a, b;
    CString text;
    a.SetTempName("q", "x");
    std::string name = a.FileBaseNameGet();
    const std::size_t number = name.rfind('_') + 1;
    a.FileBaseNameSet((name.substr(0, number) + std::to_string(std::stoi(name.substr(number)) + 1)).c_str());
    EXPECT_TRUE(a.FileWriteString(text, false));
    b.SetTempName("q", "x");
    EXPECT_FALSE(b.FileCompare(&a) || b.FileExists());
}

}  // namespace

}  // namespace kora::test
