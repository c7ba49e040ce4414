#include <kora/Dir.h>
#include <kora/File.h>

#include <memory>
#include <random>
#include <vector>

#include "paths/DirectoryScan.h"
#include "tests/paths/PathsTest.h"

namespace kora::test {

namespace {

TEST(DirStringSet, AppliesTextToTheDirectory) {
    // Directory before, text, directory after.
    const auto check = [](std::initializer_list<const char*> rows) {
        for (const char* row : rows) {
            SCOPED_TRACE(row);
            const auto column = columns(row);
            DirPath dir(column[0] == "(null)" ? nullptr : column[0].c_str());
            EXPECT_TRUE(dir.DirStringSet(column[1].c_str()));
            EXPECT_EQ(shown(dir.DirStringGet()), column[2]);
            EXPECT_EQ(dir.DirIsNull(), column[2] == "(null)");
        }
    };
    // whole paths replace, as they stand
    check({"(null) | c:\\a\\b | c:\\a\\b", "c:\\a | d:\\ | d:\\",
           "c:\\a | d: | d:", "c:\\a | d:\\x\\..\\y\\ | d:\\x\\..\\y\\",
           "c:\\a | \\\\server\\share\\x | \\\\server\\share\\x", "\\\\server\\share\\x | c:\\a | c:\\a"});
    // from the root
    check({"c:\\a\\b | \\x\\y | c:\\x\\y", "c: | \\x | c:\\x", "c:\\a | \\ | c:\\", "a\\b | \\x | \\x",
           "(null) | \\x | \\x", "\\\\server\\share\\a\\b | \\x | \\\\server\\share\\x",
           "\\\\server\\share\\ | \\x | \\\\server\\share\\x"});
    // part by part, as far as the root
    check({"c:\\a\\ | b\\ | c:\\a\\b", "c: | b | c:\\b", "c:\\a\\b\\ | .. | c:\\a", "c:\\a | ... | c:\\a\\...",
           "c:\\a | ..\\..\\..\\b | c:\\b", "\\\\server\\share | .. | \\\\server\\share", "\\a | ..\\..\\b | \\b"});
    // nothing before the first part
    check({"(null) | lib\\data | lib\\data", "(null) | .\\lib | lib", "(null) | ..\\lib | lib", "(null) | . | (null)",
           "lib | .. | (null)", "lib | ..\\x | x", "c:\\a | . | c:\\a"});
}

TEST(DirStringSet, RefusesWhatReaches255AndTakesItsOwnText) {
    const auto longer = [](std::size_t length) { return std::string(length, 'x'); };
    DirPath dir("c:\\old");
    for (const std::string& refused : {std::string(), "c:\\" + longer(252), longer(248)})
        EXPECT_FALSE(dir.DirStringSet(refused.c_str())) << refused.size();
    EXPECT_FALSE(dir.DirStringSet(nullptr));
    EXPECT_STREQ(dir.DirStringGet(), "c:\\old");
    EXPECT_TRUE(dir.DirStringSet(longer(247).c_str()));
    EXPECT_EQ(dir.DirStringGet(), "c:\\old\\" + longer(247));
    EXPECT_FALSE(dir.DirStringSet("y"));
    EXPECT_TRUE(dir.DirStringSet(("..\\..\\" + longer(248)).c_str())) << "too long on the way only";

    dir = DirPath("c:\\a\\bc");
    EXPECT_TRUE(dir.DirStringSet(dir.DirStringGet()) && dir.DirStringSet(dir.DirStringGet() + 5));
    dir = *&dir;
    EXPECT_STREQ(dir.DirStringGet(), "c:\\a\\bc\\bc");
}

// Lists of parts, joined at the end, against the text that is worked on in place.
TEST(DirStringSet, AgreesWithAModelOfParts) {
    std::mt19937 random(4207);
    const auto pick = [&](const std::vector<std::string>& from) { return from[random() % from.size()]; };
    for (int run = 0; run < 300; ++run) {
        const std::string root = pick({"c:\\", "\\\\server\\share", ""});
        std::vector<std::string> parts;
        DirPath dir(root.c_str());
        std::string history = root;
        for (int step = 0; step < 12; ++step) {
            std::vector<std::string> applied(1 + random() % 4);
            std::string text, expected = root;
            for (std::string& part : applied) {
                part = pick({"a", "bb", "..", "..", ".", "", "c.d"});
                text += (&part == applied.data() ? "" : "\\") + part;
            }
            if (text.empty() || (root.empty() && text[0] == '\\')) continue;
            if (text[0] == '\\') {
                parts = applied = {};
                text = "\\x\\yy";
                parts = {"x", "yy"};
            }
            history += " + " + text;
            for (const std::string& part : applied) {
                if (part == ".." && !parts.empty()) parts.pop_back();
                if (!part.empty() && part[0] != '.') parts.push_back(part);
            }
            for (const std::string& part : parts)
                expected += (expected.empty() || expected.back() == '\\' ? "" : "\\") + part;
            ASSERT_TRUE(dir.DirStringSet(text.c_str()));
            ASSERT_EQ(shown(dir.DirStringGet()), expected.empty() ? "(null)" : expected) << history;
        }
    }
}

class SharedDirectories : public PathsTest {};

TEST_F(SharedDirectories, ArePointedAtAndNeverFreedOrChangedByOneDirectory) {
    DirPath a, b;
    ASSERT_TRUE(a.DirInitTemporary());
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
    EXPECT_NE(b.DirStringGet(), path("temporary"));
    pathsStop();
    EXPECT_TRUE(a.DirStringSet("sub")) << "the texts outlive shut-down";
    EXPECT_EQ(a.DirStringGet(), path("temporary\\sub"));
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
    makeFiles({"work/b.TXT", "work/A.txt", "work/ab.txt.bak", "work/readme", "work/c.qzx"});
    places.folder.MakeFolder("work/sub.txt");
    EXPECT_EQ(list(nullptr, nullptr, true, false), "A.txt ab.txt.bak b.TXT c.qzx readme");
    EXPECT_EQ(list("*.*", "", true, true), "A.txt ab.txt.bak b.TXT c.qzx readme sub.txt");
    EXPECT_EQ(list("*", "*", false, true), "sub.txt");
    EXPECT_EQ(list("*.TXT", nullptr, true, true), "A.txt b.TXT sub.txt");
    EXPECT_EQ(list("*B.t*", "", true, false), "ab.txt.bak b.TXT");
    EXPECT_EQ(DirPath(path("missing").c_str()).DirFileFirst("*", nullptr, true, true), nullptr);
}

bool matchesLiterally(const char* name, const char* pattern) {
    if (*pattern == '\0') return *name == '\0';
    if (*pattern == '*') return matchesLiterally(name, pattern + 1) || (*name && matchesLiterally(name + 1, pattern));
    return *name && (*pattern == '?' || (*pattern | 32) == (*name | 32)) && matchesLiterally(name + 1, pattern + 1);
}

TEST(Wildcards, AgreeWithTheRuleTakenLiterally) {
    std::mt19937 random(99);
    for (int run = 0; run < 20000; ++run) {
        std::string name(random() % 7, ' '), pattern(random() % 7, ' ');
        for (char& c : name) c = "abAB"[random() % 4];
        for (char& c : pattern) c = "abB?**"[random() % 6];
        ASSERT_EQ(matchesWildcards(name, pattern), matchesLiterally(name.c_str(), pattern.c_str()))
            << name << " ~ " << pattern;
    }
}

}  // namespace

}  // namespace kora::test
