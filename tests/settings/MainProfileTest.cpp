#include <kora/Ini.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "settings/ProfileTable.h"
#include "strings/Bytes.h"
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
    EXPECT_EQ(files.Read(kMain), "[S]\nk = 1\n");
    EXPECT_EQ(k(), "(not found)") << "it is read back only when it is read again";
    kora::settingsStop();
    EXPECT_EQ(k(), "1");
    EXPECT_TRUE(IniSetString(eIniMain, "s", "K", "2")) << "sections of the file are found without case";
    EXPECT_EQ(files.Read(kMain), "[S]\nK = 2\n");

    files.MakeFolder(kStateFolder);
    for (const char* place : {"program", "userdata/Veltrane/Tessera5"}) {
        files.Write(std::string(place) + "/ts.ini", std::string("[S]\nk = ") + place);
        kora::settingsStop();
        EXPECT_EQ(k(), place);
    }
}

TEST_F(MainProfile, PutsTheStateFileIntoTheSystemsDirectory) {
    main("[System]\nLocalStateFile = yes\n");
    EXPECT_TRUE(IniSetString(eIniState, "S", "k", "1"));
    EXPECT_EQ(files.Read("system/tsstate.ini"), "[S]\nk = 1\n");
    EXPECT_FALSE(files.Has(kState));
}

TEST_F(MainProfile, MergesTheFilesOfItsFolderInNameOrder) {
    files.MakeFolder("documents/more.d/deep");
    files.Write("documents/more.d/B.ini", "[S]\nb = B\nk = B\n[T]\nb = B\n");
    files.Write("documents/more.d/a.INI", "[S]\na = a\nk = a\nb = a\nb = again\n[System]\nIncludeFolder = deep\n");
    files.Write("documents/more.d/deep/x.ini", "[S]\nx = x\na = x\nb = x\n");
    files.Write("documents/more.d/c.ini.bak", "[S]\nc = c\n");
    files.MakeFolder("documents/more.d/d.ini");
    main("[System]\nincludefolder = more.d\n[S]\nk = main\n");
    EXPECT_EQ(get(eIniMain, "S", "b"), "a");
    EXPECT_EQ(get(eIniMain, "T", "b"), "B");
    // Entries that lose are not counted; a file's own doubles are.
    EXPECT_EQ(entries(), "k=main a=a b=a b=again x=x ");

    // cycles
    files.MakeFolder("documents/a");
    files.MakeFolder("documents/b");
    files.Write("documents/a/a.ini", "[System]\nIncludeFolder = ..\\B\n[S]\na = 1\n");
    files.Write("documents/b/b.ini", "[System]\nIncludeFolder = ..\\a\n[S]\nb = 1\n");
    files.Write("documents/b/c.ini", "[System]\nIncludeFolder = ..\n[S]\nc = 1\n");
    main("[System]\nIncludeFolder = a\n[S]\nk = 1\n");
    EXPECT_EQ(entries(), "k=1 a=1 b=1 c=1 ");
    main("[System]\nIncludeFolder = nowhere\n[S]\nk = 1\n");
    EXPECT_EQ(entries(), "k=1 ");
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

// Whatever is asked for after whatever: the first entry of the key.
TEST(ProfileTable, AgreesWithAListUnderRandomQuestions) {
    struct Item {
        std::string section, key, value;
    };
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::vector<Item> items;
        kora::ProfileTable table;
        for (int file = 0; file < 2; ++file) {
            std::string text, section;
            for (auto lines = random() % 60; lines > 0; --lines) {
                if (section.empty() || random() % 8 == 0)
                    text += '[' + (section = std::string(1, "abA"[random() % 3])) + "]\n";
                items.push_back({section, std::string(1 + random() % 9, "kK"[random() % 2]), std::to_string(random())});
                text += items.back().key + '=' + items.back().value + '\n';
            }
            table.add(text);
        }
        for (std::size_t i = 0, at = 0; i < 2 * items.size(); ++i, ++at) {
            if (random() % 4 == 0 || at >= items.size()) at = random() % items.size();
            const auto first = std::ranges::find_if(items, [&](const Item& item) {
                return item.section == items[at].section && kora::equalIgnoringCase(item.key, items[at].key);
            });
            EXPECT_EQ(table.value(items[at].section, items[at].key), first->value);
        }
    }
}

}  // namespace
