#include <kora/Dir.h>
#include <kora/File.h>

#include <memory>
#include <random>
#include <vector>

#include "paths/DirectoryScan.h"
#include "tests/paths/PathsTest.h"
#include "tests/support/RecordedPresenter.h"

namespace kora::test {

namespace {

TEST(DirStringSet, AppliesTextToTheDirectory) {
    struct Row {
        const char *before, *text, *after;
    };
    static constexpr Row rows[] = {
        // whole paths replace, as they stand
        {nullptr, "c:\\a\\b", "c:\\a\\b"},
        {"c:\\a", "d:\\", "d:\\"},
        {"c:\\a", "d:", "d:"},
        {"c:\\a", "d:\\x\\..\\y\\", "d:\\x\\..\\y\\"},
        {"c:\\a", "\\\\server\\share\\x", "\\\\server\\share\\x"},
        {"\\\\server\\share\\x", "c:\\a", "c:\\a"},
        // from the root
        {"c:\\a\\b", "\\x\\y", "c:\\x\\y"},
        {"c:", "\\x", "c:\\x"},
        {"c:\\a", "\\", "c:\\"},
        {"\\\\server\\share\\a\\b", "\\x", "\\\\server\\share\\x"},
        {"\\\\server\\share\\", "\\x", "\\\\server\\share\\x"},
        {"a\\b", "\\x", "\\x"},
        {nullptr, "\\x", "\\x"},
        // part by part
        {"c:\\a", "b", "c:\\a\\b"},
        {"c:\\a\\", "b\\", "c:\\a\\b"},
        {"c:\\", "b\\c", "c:\\b\\c"},
        {"c:", "b", "c:\\b"},
        {"c:\\a", "b\\\\.\\c", "c:\\a\\b\\c"},
        {"c:\\a\\b", "..\\c", "c:\\a\\c"},
        {"c:\\a\\b\\", "..", "c:\\a"},
        {"c:\\a", "...", "c:\\a\\..."},
        {"c:\\a", ".", "c:\\a"},
        {"\\\\server\\share\\a", "..\\b", "\\\\server\\share\\b"},
        // the root stops it
        {"c:\\a", "..", "c:\\"},
        {"c:\\a", "..\\..\\..\\b", "c:\\b"},
        {"\\\\server\\share\\a", "..\\..\\..\\b", "\\\\server\\share\\b"},
        {"\\\\server\\share", "..", "\\\\server\\share"},
        {"\\a", "..\\..\\b", "\\b"},
        // nothing before the first part
        {nullptr, "lib\\data", "lib\\data"},
        {nullptr, ".\\lib", "lib"},
        {nullptr, "..\\lib", "lib"},
        {nullptr, ".", nullptr},
        {"lib", "..", nullptr},
        {"lib", "..\\x", "x"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(shown(row.before) + " + " + row.text);
        DirPath dir(row.before);
        EXPECT_TRUE(dir.DirStringSet(row.text));
        EXPECT_EQ(shown(dir.DirStringGet()), shown(row.after));
        EXPECT_EQ(dir.DirIsNull(), row.after == nullptr);
    }
}

TEST(DirStringSet, RefusesWhatReaches255AndKeepsTheOldValue) {
    DirPath dir("c:\\old");
    EXPECT_FALSE(dir.DirStringSet(nullptr));
    EXPECT_FALSE(dir.DirStringSet(""));
    EXPECT_FALSE(dir.DirStringSet(("c:\\" + std::string(252, 'x')).c_str()));
    EXPECT_FALSE(dir.DirStringSet(std::string(254 - 6, 'x').c_str())) << "255 with the separator";
    EXPECT_STREQ(dir.DirStringGet(), "c:\\old");
}

TEST(DirStringSet, TakesWhatComesTo254) {
    DirPath dir(("c:\\" + std::string(251, 'x')).c_str());
    EXPECT_EQ(shown(dir.DirStringGet()).size(), 254u);
    EXPECT_FALSE(dir.DirStringSet("y"));
    EXPECT_TRUE(dir.DirStringSet(("..\\" + std::string(251, 'z')).c_str())) << "too long on the way only";
    EXPECT_EQ(dir.DirStringGet(), "c:\\" + std::string(251, 'z'));

    DirPath relative("c:\\old");
    EXPECT_TRUE(relative.DirStringSet(std::string(254 - 7, 'x').c_str()));
    EXPECT_EQ(shown(relative.DirStringGet()).size(), 254u);
}

TEST(DirStringSet, TakesItsOwnText) {
    DirPath dir("c:\\a\\bc");
    EXPECT_TRUE(dir.DirStringSet(dir.DirStringGet()));
    EXPECT_TRUE(dir.DirStringSet(dir.DirStringGet() + 5));
    EXPECT_STREQ(dir.DirStringGet(), "c:\\a\\bc\\bc");
    dir = *&dir;
    EXPECT_STREQ(dir.DirStringGet(), "c:\\a\\bc\\bc");
}

// Lists of parts, joined at the end, against the text that is worked on in place.
TEST(DirStringSet, AgreesWithAModelOfParts) {
    constexpr unsigned kSeed = 4207;
    std::mt19937 random(kSeed);
    const auto pick = [&](const std::vector<std::string>& from) { return from[random() % from.size()]; };
    for (int run = 0; run < 300; ++run) {
        const std::string root = pick({"c:\\", "\\\\server\\share", ""});
        std::vector<std::string> parts;
        DirPath dir(root.c_str());
        std::string history = root;
        for (int step = 0; step < 12; ++step) {
            std::vector<std::string> applied(1 + random() % 4);
            std::string text;
            for (std::string& part : applied) {
                part = pick({"a", "bb", "..", "..", ".", "", "c.d"});
                text += (&part == applied.data() ? "" : "\\") + part;
            }
            const bool fromRoot = !root.empty() && random() % 5 == 0;
            if (fromRoot) {
                applied = {"x", "yy"};
                text = "\\x\\yy";
                parts.clear();
            } else if (text.empty() || text[0] == '\\') {
                continue;
            }
            history += " + " + text;
            for (const std::string& part : applied) {
                if (part == ".." && !parts.empty()) parts.pop_back();
                if (!part.empty() && part[0] != '.') parts.push_back(part);
            }
            std::string expected = root;
            for (const std::string& part : parts)
                expected += (expected.empty() || expected.back() == '\\' ? "" : "\\") + part;
            ASSERT_TRUE(dir.DirStringSet(text.c_str()));
            ASSERT_EQ(shown(dir.DirStringGet()), expected.empty() ? "(null)" : expected)
                << history << ", seed " << kSeed;
        }
    }
}

TEST(DirDisplayGet, CapitalizesPartsOfLowerCaseLettersOnly) {
    struct Row {
        const char *text, *display;
    };
    static constexpr Row rows[] = {
        {"c:\\projects", "c:\\Projects"},
        {"c:\\my files\\notes2\\Docs\\x", "c:\\my files\\notes2\\Docs\\X"},
        {"\\\\server\\a-b\\", "\\\\Server\\a-b\\"},
        {"lib\\\xE4", "Lib\\\xE4"},
        {"c:\\aZ\\z", "c:\\aZ\\Z"},
    };
    for (const Row& row : rows) {
        DirPath dir(row.text);
        EXPECT_STREQ(dir.DirDisplayGet(), row.display);
        EXPECT_STREQ(dir.DirStringGet(), row.display) << "the stored text is the one that changes";
    }
    EXPECT_EQ(DirPath().DirDisplayGet(), nullptr);
}

TEST(DirCompare, RegardsNoCase) {
    DirPath a("c:\\Dir"), b("C:\\dIR"), c("c:\\dir2"), none, none2;
    EXPECT_TRUE(a.DirCompare(&b));
    EXPECT_FALSE(a.DirCompare(&c));
    EXPECT_FALSE(a.DirCompare(nullptr));
    EXPECT_FALSE(a.DirCompare(&none));
    EXPECT_FALSE(none.DirCompare(&a));
    EXPECT_TRUE(none.DirCompare(&none2));
}

class SharedDirectories : public PathsTest {};

TEST_F(SharedDirectories, ArePointedAtAndNeverFreedOrChangedByOneDirectory) {
    DirPath a, b;
    ASSERT_TRUE(a.DirInitTemporary());
    EXPECT_EQ(a.DirStringGet(), path("temporary"));
    {
        DirPath c(a);
        ASSERT_TRUE(b.DirInitTemporary());
        EXPECT_EQ(c.DirStringGet(), b.DirStringGet());
        b.DirDisplayGet();
        EXPECT_NE(a.DirStringGet(), b.DirStringGet());
        c.DirStringSet("..");
        c.DirInitTemporary();
    }
    EXPECT_EQ(a.DirStringGet(), path("temporary"));
    EXPECT_TRUE(a.DirCompare(&b));
    EXPECT_NE(shown(b.DirStringGet()), path("temporary"));
}

TEST_F(SharedDirectories, KnowTheirPlaces) {
    DirPath dir;
    EXPECT_TRUE(dir.DirInitStartIn());
    EXPECT_EQ(dir.DirStringGet(), path("work"));
    EXPECT_TRUE(dir.DirInitExecutable());
    EXPECT_EQ(dir.DirStringGet(), path("program"));
    EXPECT_TRUE(dir.DirInitOSBase());
    EXPECT_EQ(dir.DirStringGet(), path("system"));
    EXPECT_TRUE(dir.DirInitDocRoot());
    EXPECT_EQ(dir.DirStringGet(), path("documents"));
    EXPECT_TRUE(dir.DirInitAppData());
    EXPECT_EQ(dir.DirStringGet(), path("userdata\\Veltrane\\Tessera5"));
    EXPECT_TRUE(dir.DirInitPublicData());
    EXPECT_EQ(dir.DirStringGet(), path("shareddata\\Veltrane\\Tessera5"));
}

TEST_F(SharedDirectories, ThatTheSystemDoesNotNameLeaveTheOldValue) {
    for (const char* name : {"documents", "userdata", "shareddata", "system", "temporary", "work", "program"})
        places.instead[name] = "";
    places.instead["program"] = "c:\\" + std::string(252, 'x');
    DirPath dir("c:\\old");
    EXPECT_FALSE(dir.DirInitStartIn() || dir.DirInitExecutable() || dir.DirInitOSBase() || dir.DirInitTemporary());
    EXPECT_FALSE(dir.DirInitDocRoot() || dir.DirInitAppData() || dir.DirInitPublicData());
    EXPECT_STREQ(dir.DirStringGet(), "c:\\old");
}

TEST_F(SharedDirectories, TakeTheTemporaryOneFromTempThenTmp) {
    places.variables = {{"TEMP", "c:\\one"}, {"TMP", "c:\\two"}};
    DirPath dir;
    dir.DirInitTemporary();
    EXPECT_STREQ(dir.DirStringGet(), "c:\\one");
    places.variables = {{"TEMP", ""}, {"TMP", "c:\\two"}};
    pathsStart();
    EXPECT_STREQ(dir.DirStringGet(), "c:\\two") << "the shared text itself was filled afresh";
}

TEST_F(SharedDirectories, OutliveShutDown) {
    DirPath dir;
    dir.DirInitStartIn();
    pathsStop();
    EXPECT_EQ(dir.DirStringGet(), path("work"));
    EXPECT_TRUE(dir.DirStringSet("sub"));
    EXPECT_EQ(dir.DirStringGet(), path("work\\sub"));
}

class Enumeration : public PathsTest {
protected:
    std::string list(const char* pattern, const char* type, bool files, bool directories) {
        DirPath dir(path("work").c_str());
        std::string names;
        std::unique_ptr<FilePath> hit(dir.DirFileFirst(pattern, type, files, directories));
        for (; hit; hit.reset(dir.DirFileNext())) {
            EXPECT_EQ(shown(hit->DirStringGet()), path("work"));
            names += (names.empty() ? "" : " ") + shown(hit->FileFullNameGet());
        }
        EXPECT_EQ(dir.DirFileNext(), nullptr);
        return names;
    }
};

TEST_F(Enumeration, FiltersAndSorts) {
    for (const char* name : {"b.TXT", "A.txt", "ab.txt.bak", "readme", "c.qzx"})
        places.folder.write(std::string("work/") + name, "");
    places.folder.makeFolder("work/sub.txt");
    EXPECT_EQ(list(nullptr, nullptr, true, false), "A.txt ab.txt.bak b.TXT c.qzx readme");
    EXPECT_EQ(list("*.*", "", true, true), "A.txt ab.txt.bak b.TXT c.qzx readme sub.txt");
    EXPECT_EQ(list("*", "*", false, true), "sub.txt");
    EXPECT_EQ(list("*.TXT", nullptr, true, true), "A.txt b.TXT sub.txt");
    EXPECT_EQ(list("?", ".txt", true, false), "A.txt b.TXT");
    EXPECT_EQ(list("*B.t*", "", true, false), "ab.txt.bak b.TXT");
    EXPECT_EQ(list("README", nullptr, true, false), "readme");
    EXPECT_EQ(list("*", "t", true, true), "");
    EXPECT_EQ(list("*", nullptr, false, false), "");
    EXPECT_EQ(DirPath().DirFileFirst("*", nullptr, true, true), nullptr);
    EXPECT_EQ(DirPath(path("missing").c_str()).DirFileFirst("*", nullptr, true, true), nullptr);
}

TEST_F(Enumeration, GoesOnOverItsDirectoryUntilClosed) {
    for (const char* name : {"work/a", "work/b", "work/c"}) places.folder.write(name, "");
    DirPath dir(path("work").c_str());
    std::unique_ptr<FilePath> hit(dir.DirFileFirst("*", nullptr, true, true));
    dir.DirStringSet(path("system").c_str());
    hit.reset(dir.DirFileNext());
    ASSERT_TRUE(hit);
    EXPECT_EQ(shown(hit->FileStringGet()), path("work\\b"));
    dir.DirFileClose();
    EXPECT_EQ(dir.DirFileNext(), nullptr);
}

bool matchesLiterally(const char* name, const char* pattern) {
    if (*pattern == '\0') return *name == '\0';
    if (*pattern == '*') return matchesLiterally(name, pattern + 1) || (*name && matchesLiterally(name + 1, pattern));
    return *name && (*pattern == '?' || (*pattern | 32) == (*name | 32)) && matchesLiterally(name + 1, pattern + 1);
}

TEST(Wildcards, AgreeWithTheRuleTakenLiterally) {
    constexpr unsigned kSeed = 99;
    std::mt19937 random(kSeed);
    for (int run = 0; run < 20000; ++run) {
        std::string name(random() % 7, ' '), pattern(random() % 7, ' ');
        for (char& c : name) c = "abAB"[random() % 4];
        for (char& c : pattern) c = "abB?**"[random() % 6];
        ASSERT_EQ(matchesWildcards(name, pattern), matchesLiterally(name.c_str(), pattern.c_str()))
            << name << " ~ " << pattern << ", seed " << kSeed;
    }
}

class DirectoryOnDisk : public PathsTest {};

TEST_F(DirectoryOnDisk, IsMadeFoundAndRemoved) {
    DirPath dir(path("work\\new\\").c_str());
    EXPECT_FALSE(dir.DirExists());
    EXPECT_FALSE(dir.DirDelete());
    EXPECT_TRUE(dir.DirCreate());
    EXPECT_TRUE(dir.DirExists());
    EXPECT_FALSE(dir.DirReadOnly());
    EXPECT_FALSE(dir.DirCreate()) << "it is there";
    places.folder.write("work/new/file", "x");
    EXPECT_FALSE(dir.DirDelete()) << "it holds something";
    DirPath file(path("work\\new\\file").c_str());
    EXPECT_FALSE(file.DirExists()) << "a file is no directory";
    DirPath deep(path("work\\x\\y").c_str());
    EXPECT_FALSE(deep.DirCreate()) << "one level only";
    DirPath none;
    EXPECT_FALSE(none.DirExists() || none.DirCreate() || none.DirDelete() || none.DirReadOnly());
    EXPECT_EQ(dir.GetFilePathInDir("f.x"), path("work\\new\\f.x"));
    EXPECT_EQ(none.GetFilePathInDir("f.x"), "f.x");
}

TEST_F(DirectoryOnDisk, IsChosenByTheUser) {
    RecordedPresenter user;
    DirPath dir("c:\\old");
    EXPECT_FALSE(dir.DirDialogOpen(nullptr));
    EXPECT_STREQ(dir.DirStringGet(), "c:\\old");
    user.chosen = "c:\\new";
    EXPECT_TRUE(dir.DirDialogOpen("Where to?"));
    EXPECT_STREQ(dir.DirStringGet(), "c:\\new");
    ASSERT_EQ(user.asked.size(), 2u);
    EXPECT_EQ(user.asked[1].prompt, "Where to?");
    EXPECT_EQ(user.asked[1].path, "c:\\old");
}

}  // namespace

}  // namespace kora::test
