#include <gmock/gmock.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>

#include "settings/KnownKeys.h"
#include "tests/settings/StoreFixture.h"

namespace {

class IniChecks : public kora::test::StoreFixture {
protected:
    ~IniChecks() override { kora::knownKeysStop(); }
    // A line of text for each finding.
    static std::string found(eIniFile file, bool unknownSections = false) {
        std::vector<IniFinding> findings(1);
        EXPECT_TRUE(IniCheck(file, findings, unknownSections));
        std::string text;
        for (const IniFinding& at : findings)
            text += at.file.substr(at.file.rfind('\\') + 1) + ':' + std::to_string(at.line) + " [" + at.section + "] " +
                    at.key + ": " + at.text + '\n';
        return text;
    }
};

// clang-format off
constexpr IniKnownKey kKeys[] = {
    {eIniMain, "M", "b", IniKindBool, "no", nullptr}, {eIniMain, "M", "n", IniKindLong, "1", nullptr},
    {eIniMain, "M", "s", IniKindShort, "1", nullptr}, {eIniMain, "M", "c", IniKindColour, "red", nullptr},
    {eIniMain, "M", "r", IniKindRect, "", nullptr},   {eIniMain, "M", "f", IniKindFont, "", nullptr},
    {eIniMain, "M", "p", IniKindPath, "", nullptr},   {eIniState, "Frame", "Zoomed", IniKindBool, "", nullptr}};
constexpr int kCount = std::size(kKeys);

TEST_F(IniChecks, NameEveryLineThatNobodyReads) {
    files.MakeFolder("documents/more");
    files.Write("documents/more/a.ini", "[netbios]\nPort = x\n[Stations]\nA = 5\n[Stations]\n[NetBIOS]\nNamePort = 7 ;x\n");
    main("stray = 1\n[System]\r\ntolfolder = x\n toolfolder = y\n; c\nLocalStateFile = ture\nIncludeFolder = more\n"
         "Colour = 1\nlengthunit = cm\n[Directories]\nAny = c:\\x\n");
    const std::string expected = "ts.ini:1 [] stray: stands in no section\n"
                                 "ts.ini:3 [System] tolfolder: no such key; is \"toolfolder\" meant?\n"
                                 "ts.ini:4 [System]  toolfolder: no such key; is \"toolfolder\" meant?\n"
                                 "ts.ini:6 [System] LocalStateFile: neither yes nor no; is \"true\" meant?\n"
                                 "ts.ini:8 [System] Colour: no such key\n"
                                 "a.ini:1 [netbios] : nobody knows this section; is \"NetBIOS\" meant?\n";
    EXPECT_EQ(found(eIniMain), expected);
    EXPECT_EQ(found(eIniMain, true), expected + "a.ini:3 [Stations] : nobody knows this section\n");
    state("[FRAME]\nzomed = 1\n");
    for (int times = 2; times > 0; --times) EXPECT_TRUE(IniKnownKeysSet(kKeys, kCount, true));
    const std::uint32_t mark = kora::knownKeysMark();
    EXPECT_TRUE(IniKnownKeysSet(kKeys + 7, 1, true) && IniKnownKeysSet(kKeys, 0, false));
    EXPECT_EQ(found(eIniState), "tsstate.ini:2 [FRAME] zomed: no such key; is \"Zoomed\" meant?\n");
    kora::knownKeysUndo(mark);
    EXPECT_EQ(found(eIniState) + found(eIniMain), expected) << "all were taken back";
    EXPECT_FALSE(IniKnownKeysSet(nullptr, 1, true) || IniKnownKeysSet(kKeys, -1, true));
}

TEST_F(IniChecks, WantAWholeValueOfItsKind) {
    IniKnownKeysSet(kKeys, kCount, true);
    const CStringArray good = {"b = Yes", "b = OFF", "b =", "n = -2147483648", "n = 2147483647 ; most", "n = +7;x",
        "s = -32768", "s = 32767", "c = Pink", "c = netset", "c = 0x80FF0000", "c = 0x0100000F", "c = 0xAA000002 x",
        "r = 1 -2\t3 4", "f = \"A b\" bold 10", "f = \"\"", "p = c:\\x\\y.z"};
    const CStringArray bad = {"b = 1", "b = yes!", "n = x", "n = 12abc", "n = 0x10", "n = 2147483648", "n = 1.5",
        "n = -2147483649", "n = 4294967297", "s = 32768", "s = -32769", "c = puce", "c = red ;", "c = 0xFF0000",
        "c = 0x180FF0000", "c = 0x", "c = 0x82000000", "c = 12", "r = 1 2 3", "r = 1,2,3,4", "r = 1 2 3 4x",
        "r = 1 2 3 2147483648", "f = Swiss 10", "f = \"A\" 10pt", "f = \"A\" Blod", "p = " + std::string(300, 'x')};
    for (const CStringArray* rows : {&good, &bad})
        for (const CString& row : *rows) {
            main("[M]\n" + row + '\n');
            EXPECT_EQ(found(eIniMain).empty(), rows == &good) << row;
        }
}
// clang-format on

// docs/settings.md has every key of the library, and no other, as the library tells it.
TEST(SettingsReference, IsWhatIsKnown) {
    constexpr const char* kinds[] = {"text", "bool", "int", "long", "short", "colour", "rect", "font", "path"};
    std::ifstream file(KORA_SETTINGS_REFERENCE);
    std::string section, rows, expected;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("## ")) section = line.substr(3);
        if (section.starts_with('[') && (line.starts_with("| `") || line.starts_with("| any")))
            rows += section + line + '\n';
    }
    const auto code = [](const char* text) { return CString("`").append(text).append("`"); };
    IniKnownKey key;
    for (int i = 0; IniKnownKeyGet(i, key); ++i)
        expected += CString("[") + key.section + "]| " + (key.key ? code(key.key) : "any") + " | " + kinds[key.kind] +
                    " | " + (*key.def ? code(key.def) : "none") + " | " + key.meaning + " |\n";
    EXPECT_EQ(rows, expected);
}

// The library's sources read every known key, and no other. A key that does not stand at the call would not be found.
TEST(KnownKeys, AreTheOnesThatTheSourcesRead) {
    const std::regex reads(R"re((IniGet\w+|profileValue|findProfileEntry)\((eIni\w+|text),\s*([^,]+),\s*([^,)]+))re");
    std::set<std::string> read, known;
    std::ifstream sources(KORA_LIBRARY_SOURCES);
    for (std::string path; std::getline(sources, path);) {
        std::ifstream file(path);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        for (std::sregex_iterator at(text.begin(), text.end(), reads), end; at != end; ++at) {
            if ((*at)[2] == "text" && path.find("/settings/") == path.npos) continue;  // of another file than a profile
            std::string section = (*at)[3], key = (*at)[4];
            std::smatch constant;
            if (std::regex_search(text, constant, std::regex("\\b" + section + " = (\"[^\"]*\");")))
                section = constant[1];
            read.insert(section + (section == "\"Directories\"" ? "" : ' ' + key));
        }
    }
    IniKnownKey key;
    for (int i = 0; IniKnownKeyGet(i, key); ++i)
        known.insert(CString("\"") + key.section + (key.key ? CString("\" \"") + key.key + '"' : CString("\"")));
    EXPECT_THAT(read, testing::ContainerEq(known));
}

}  // namespace
