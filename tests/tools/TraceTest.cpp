#include <gmock/gmock.h>
#include <kora/Err.h>
#include <kora/Ini.h>
#include <kora/Trace.h>

#include <fstream>
#include <random>
#include <regex>
#include <sstream>

#include "core/TraceCodes.h"
#include "tests/support/FileFault.h"
#include "tests/support/ScopedPlaces.h"
#include "tools/kora-trace/Escapes.h"
#include "tools/kora-trace/HomePaths.h"
#include "tools/kora-trace/ReadLog.h"
#include "tools/kora-trace/Run.h"
#include "tools/kora-trace/Zip.h"

using namespace kora::tracelog;
using testing::HasSubstr;

namespace {

using Words = std::vector<std::uint32_t>;

// A dump as the library writes it, with zeros in front of the words.
std::string dumpText(std::uint32_t count, const std::string& reason, Words words) {
    words.insert(words.begin(), 1024 - words.size(), 0);
    std::ostringstream out;
    out << "$STARTDUMP(" << std::hex << count << ')' << (reason.empty() ? "" : " " + reason) << '\n';
    for (std::size_t i = 0; i < words.size(); ++i) out << hexWord(words[i]) << (i % 8 == 7 ? '\n' : ' ');
    return out.str() + "$ENDDUMP\n";
}

std::string shown(const std::string& log, Format format = Format::text) {
    std::istringstream in(log);
    std::ostringstream out;
    const NameTable names;
    const auto page = format == Format::json   ? jsonPage(out, names, "a \"log\"")
                      : format == Format::html ? htmlPage(out, names, "a <log>")
                                               : textPage(out, names, false);
    readLog(in, *page, LastDumps::kAll);
    return out.str();
}

TEST(KoraTrace, ShowsALogByteForByte) {
    const std::string log = "Nov 05, 2026 - 19:12:30 - Hello!\n" +
                            dumpText(15, "Exit Trace",
                                     {0x4F011, 0x4F012, 0x4F011, 0x4F012, 0x4F011, 0x4F012, 0x65300, 0x74656E,
                                      0x3105B700, 0xABCD, 0, 0x5B700, 0, 0, 0x143120}) +
                            "\1\n";
    EXPECT_EQ(shown(log), R"(Nov 05, 2026 - 19:12:30  Hello!

== dump, line 2: Exit Trace
   after the note of Nov 05, 2026 - 19:12:30
   15 words written
   severest fault: level 3, kora RamArray 700 an index lies beyond the memory array, data 0000abcd, age 6

   age  word      level  module    file         place
/   14  0004f011         kora      DoubleList   011 an element is deleted
\   13  0004f012         kora      DoubleList   012 it is gone × 3 to age 9
     8  00065300         kora      CommandLine  300 modules are told of an option
     7  0074656e                                    its characters, the first lowest: "net"
     6  3105b700      3  kora      RamArray     700 an index lies beyond the memory array
     5  0000abcd                                    data pointer
     4  00000000                                    end of the fault
     3  0005b700      0  kora      RamArray     700 an index lies beyond the memory array
     2  00000000                                    no data
     1  00000000                                    end of the fault
     0  00143120         module 5  file 3       120

[line 132 skipped: no text]
1 dump, 1 note, 1 line skipped
)");
}

// What the library writes is what the tool reads: every word, its age, and what it is.
TEST(KoraTrace, ReadsRandomRings) {
    std::mt19937 random(61);
    for (const int steps : {0, 1, 200, 500, 5000}) {
        kora::test::ScopedPlaces places;
        std::vector<std::string> expected;  // the newest last
        const auto expectCode = [&](std::uint32_t word, const char* kind) {
            expected.push_back(hexWord(word) + ' ' + kind);
            for (const std::uint32_t field : {word >> 28, word >> 18 & 63, word >> 12 & 63, word & 4095})
                expected.back() += ' ' + std::to_string(field);
        };
        TraceInit();
        for (int i = 0; i < steps; ++i) {
            const auto code = static_cast<std::uint32_t>(random() % (62 * 0x40000) + 2 * 0x40000);
            const auto data = static_cast<std::uint32_t>(random() % 2 * (random() % 0x3FFFF));  // never a code
            void* const pointer = reinterpret_cast<void*>(std::uintptr_t{data});
            if (const auto level = static_cast<std::uint32_t>(random() % 16); i % 3 == 0 && level > 0) {
                ERR(eErrorLevel(level), code >> 18, code >> 12 & 63, code & 4095, pointer, 0);
                expectCode(level * 0x10000000 + (data != 0 ? 0x1000000 : 0) + code, "fault");
                expected.insert(expected.end(), {hexWord(data), hexWord(0)});
            } else if (i % 3 == 1) {
                TraceCode(code);
                expectCode(code, "step");
            } else {
                TraceData(data + 1);
                expected.push_back(hexWord(data + 1));
            }
        }
        if (expected.size() > 1024) expected.erase(expected.begin(), expected.end() - 1024);
        TraceDump("round", true);
        const std::string json = shown(places.folder.Read("documents/ts_error_log.txt"), Format::json);
        const std::regex word(
            R"re("age": (\d+), "word": "(\w+)"(?:, "kind": "(step|fault)", "level": (\d+), "dataFlag": \w+, )re"
            R"re("module": (\d+), "moduleName": [^,]*, "file": (\d+), "fileName": [^,]*, "location": (\d+))?)re");
        std::vector<std::string> read;
        for (std::sregex_iterator it(json.begin(), json.end(), word), end; it != end; ++it) {
            EXPECT_EQ(it->str(1), std::to_string(expected.size() - 1 - read.size()));
            read.push_back(it->str(2));
            for (std::size_t i = 3; (*it)[3].matched && i < it->size(); ++i) read.back() += ' ' + it->str(i);
        }
        EXPECT_EQ(read, expected);
    }
}

const std::string kFull = dumpText(1024, "one", Words(1024, 0x41100)),
                  kOther = dumpText(2000, "", Words(1024, 0x42100));

TEST(KoraTrace, ReadsDamagedLogsAsFarAsTheyGo) {
    const std::size_t middle = kFull.find('\n') + 1 + 72 * 50;  // behind 50 lines of words
    const std::string front = kFull.substr(0, middle), back = kFull.substr(middle), rubbish("\0\1\n", 3);
    const std::string cut = kFull.substr(0, middle + 13), endless = kFull.substr(0, kFull.size() - 9);
    const std::string holed = front + rubbish + back.substr(72), dated = "Nov 05, 2026 - 19:12:30 - Hello!\n";
    const struct {
        const char* what;
        std::string log;
        const char *summary, *told;
    } rows[] = {
        {"CR LF", std::regex_replace(kFull + dated, std::regex("\n"), "\r\n"), "1 dump, 1 note",
         "1: one\n   1024 words"},
        {"overwritten words", kOther, "1 dump, 0 notes",
         "2000 words written, the ring wrapped: the 976 oldest are overwritten, slot 0 has age 975\n"},
        {"a count that wrapped", dumpText(3, "", Words(1024, 0x41100)), "1 dump, 0 notes", "but there are more"},
        {"zeros of a lost power supply", std::string(9, '\0') + kFull + "x\x1Bxxxxxxx\n",
         "1 dump, 1 note, 1 line skipped", "dump, line 1: one\n   1024 words written\n\n"},
        {"cut behind a line", front, "1 dump, 0 notes", "\xC3\x97 400 to age 624\n"},
        {"cut within a word", cut, "1 dump, 0 notes, 1 line skipped", "cut off after 401 words"},
        {"then another process", cut + dated + kOther, "2 dumps, 1 note, 1 line skipped",
         "[line 52 skipped: a broken line of words]\nNov 05, 2026 - 19:12:30  Hello!\n"},
        {"a dump within a dump", front + kOther + back, "2 dumps, 0 notes", "words of the two may be confused"},
        {"a note within a dump", front + dated + back, "1 dump, 1 note", "\xC3\x97 1024 to age 0\n"},
        {"rubbish in a dump", holed, "1 dump, 0 notes, 1 line skipped", "(words are missing here)\n   615"},
        {"only the end", back, "1 dump, 0 notes", "   623  00041100"},
        {"an end alone", "$ENDDUMP\n", "0 dumps, 0 notes, 1 line skipped", "the end of a dump that did not begin"},
        {"no end", endless + kOther, "2 dumps, 0 notes", "its last line is missing"},
        {"too many words", endless + back.substr(0, 72) + "$ENDDUMP\n", "2 dumps, 0 notes", ""},
        {"rubbish", rubbish + rubbish, "0 dumps, 0 notes, 2 lines skipped", "[lines 1 to 2 skipped: no text]"},
        {"a long line", std::string(99999, 'x'), "0 dumps, 1 note, 1 line skipped", "of more than 65536 bytes"},
        {"no dumps", "$STARTDUMP(12\n$STARTDUMP(123456789)\n", "0 dumps, 2 notes", ""},
        {"nothing", "", "0 dumps, 0 notes", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        const std::string text = '\n' + shown(row.log);
        EXPECT_THAT(text, testing::EndsWith('\n' + std::string(row.summary) + '\n'));
        EXPECT_THAT(text, HasSubstr(row.told));
    }
}

// Nothing is left of a document when everything that is whole was taken out, from the inside to the outside.
std::string unnested(std::string text, const std::vector<std::pair<const char*, const char*>>& steps) {
    for (std::size_t before = 0; before != text.size();) {
        before = text.size();
        for (const auto& [what, with] : steps) text = std::regex_replace(text, std::regex(what), with);
    }
    return text;
}

TEST(KoraTrace, MakesWellFormedDocumentsOfAnything) {
    EXPECT_EQ(forTerminal("\x1B[\t\xE9\xC3\xA9\xC2\x9B\x9B\x7F"), "\\x1b[\t\xC3\xA9\xC3\xA9\\x9b\\x9b\\x7f");
    EXPECT_EQ(forHtml("<&\">\1\xF4\x90\x80\x80"),
              "&lt;&amp;&quot;&gt;\xEF\xBF\xBD\xC3\xB4\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    std::mt19937 random(62);
    for (int round = 0; round < 8; ++round) {
        SCOPED_TRACE(round);
        Words words(100);
        for (std::uint32_t& word : words) word = random() % 2 == 0 ? static_cast<std::uint32_t>(random()) : 0x3105B700;
        const std::string dump = dumpText(100, "</title>\\\xFF", words);
        std::string log = "Nov 05, 2026 - 19:12:30 - <b>&\"\xE9\n" + dump + dump.substr(0, 9000) + dump;
        for (auto deeds = random() % 20; deeds > 0; --deeds) {
            const std::size_t at = random() % log.size(), size = random() % 3000;
            random() % 2 == 0 ? log.erase(at, size) : log.insert(at, log.substr(random() % log.size(), size));
            log[random() % log.size()] = static_cast<char>(random());
        }
        EXPECT_EQ(unnested(shown(log, Format::json),
                           {{R"("([^"\\\x01-\x1F]|\\["\\]|\\u[0-9a-f]{4})*"|null|true|false|\b[0-9]+\b)", "0"},
                            {R"([\s]+)", ""},
                            {R"(\[(0(,0)*)?\]|\{(0:0(,0:0)*)?\})", "0"}}),
                  "0");
        EXPECT_EQ(unnested(shown(log, Format::html), {{"<!DOCTYPE html>|<meta [^<>]*>|<[a-z]+ [^<>]*/>", ""},
                                                      {"<([a-z0-9]+)( [^<>]*)?>[^<>]*</\\1>", ""}}),
                  "\n\n");
    }
}

// A source that marks a step or files a fault takes its place from the table, and the table has a name for it.
TEST(KoraTrace, NamesThePlacesOfTheLibraryAndOfModules) {
    NameTable names;
    std::string problem;
    EXPECT_EQ(names.place(kora::trace::kProfileSwapFailed)->data, std::vector<std::string>{"system's error number"});
    EXPECT_TRUE(names.place(kora::trace::kBadAngle)->fault && *names.file(kora::trace::kBadAngle) == "Geometry");
    for (const char* folder : {"core", "strings", "containers", "paths", "settings", "parse", "tasks", "sheet",
                               "geometry", "net", "platform"})
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(std::filesystem::path(KORA_SOURCE) / folder)) {
            const std::string name = entry.path().filename().string();
            if (!name.ends_with(".cpp") || name == "TraceLog.cpp" || name == "Faults.cpp") continue;
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string text{std::istreambuf_iterator<char>(file), {}};
            EXPECT_FALSE(std::regex_search(text, std::regex("\\b([Tt]raceCode|ERR) ?\\(|trace::code\\("))) << name;
        }
    EXPECT_TRUE(names.add("module 5 counter\r\nfile 3 Display more\r\nplace 0x120 shows | a | b\n", problem));
    EXPECT_TRUE(*names.file(0xF1143FFF) == "Display" && names.place(0x143120)->data.size() == 2);
    EXPECT_TRUE(names.add("# none\n\nmodule 5 counter 2", problem) && problem.empty() &&
                names.file(0x143120) == nullptr);
    EXPECT_FALSE(names.add("file 1 x", problem) || names.add("module 64 x", problem) || names.add("x", problem));
    EXPECT_FALSE(names.add("module 5 a\nfile 1 x\nplace 0x1000 y", problem)) << "a location has twelve bits";
    EXPECT_FALSE(names.add("module 5 a\nfile 1 x\nplace 16 y\nfault 0x10 z", problem)) << "one of them is wrong";
    EXPECT_THAT(problem, HasSubstr("line 4"));
    EXPECT_TRUE(names.add("\xEF\xBB\xBFmodule 5 other", problem) && *names.module(0x143120) == "other");
    EXPECT_EQ(problem, "module 5 is other here, and was counter");
}

TEST(KoraTrace, BundlesWhatItSaysWithoutHomePaths) {
    const HomePaths homes({"/home/anna", "C:\\Users\\anna b\\"}, {"ab"});
    EXPECT_EQ(homes.removedFrom("/home/anna/x /home/annabel/x srv\\ab ab\\srv"), "~/x /home/~/x srv\\~ ab\\srv");
    EXPECT_EQ(homes.removedFrom("\"C:\\\\Users\\\\eve\\\\x\" \\\\srv\\home\\eve\\x"),
              "\"C:\\\\Users\\\\~\\\\x\" \\\\srv\\home\\~\\x");
    EXPECT_EQ(homes.removedFrom("c:/users/ANNA B/x D:\\Anna\\x \\Users\\eve said"), "~/x D:\\~\\x \\Users\\~ said");
    kora::test::ScopedPlaces places;
    const std::string home = places.folder.NativeText("anna"), zip = places.folder.NativeText("out.zip");
    places.variables["HOME"] = home;
    for (const char* folder : {"anna", "tools"}) places.folder.MakeFolder(folder);
    places.folder.Write("tools/netlist.qzx", "12345");
    places.folder.Write("tools/counter.trace", "module 5 counter\nfile 3 Display\nplace 0x120 shows\n");
    places.folder.Write("anna/ts.ini", "[System]\ntoolfolder = " + places.folder.NativeText("tools") + "\nx = " + home);
    places.folder.Write("anna/log.txt",
                        "opened " + home + "/x\n" + dumpText(2, "why", {kora::trace::kIdlePass, 0x143120}));
    std::stringstream in, out, messages;
    const auto bundle = [&](const char* option, const char* more) {
        Options options;
        std::string problem;
        readOptions({home + "/log.txt", "--bundle", zip, "--settings", home + "/ts.ini", option, more}, options,
                    problem);
        const int code = run(options, {in, out, messages, false, false});
        return IniMainFileSet(nullptr) ? code : -1;
    };
    EXPECT_TRUE(bundle("--list-only", "--json") == 0 && !places.folder.Has("out.zip"));
    EXPECT_TRUE(bundle("--last", "1") == 0 && bundle("--last", "1") == 1);
    EXPECT_TRUE(bundle("--force", "--json") == 0 && messages.str().find("is there already") != std::string::npos);
    const std::string archive = places.folder.Read("out.zip");
    const auto number = [&](std::size_t at) {
        return std::uint8_t(archive.at(at)) + 256u * std::uint8_t(archive.at(at + 1));  // all are small
    };
    std::map<std::string, std::string> parts;
    std::size_t at = 0;
    while (archive.substr(at, 4) == "PK\3\4") {
        const std::string name = archive.substr(at + 30, number(at + 26));
        const std::string bytes = archive.substr(at + 30 + name.size(), number(at + 18));
        EXPECT_EQ(number(at + 14), crc32(bytes) % 0x10000);
        EXPECT_THAT(out.str(), HasSubstr(' ' + std::to_string(bytes.size()) + "  " + name + '\n'));
        EXPECT_THAT(bytes, testing::Not(HasSubstr("anna"))) << name;
        parts[name] = bytes;
        at += 30 + name.size() + bytes.size();
    }
    EXPECT_TRUE(number(archive.size() - 6) == at && parts.size() == 5) << "the directory follows";
    EXPECT_THAT(parts["modules.txt"] + parts["settings/ts.ini"],
                testing::ContainsRegex("netlist.qzx: .*\n.*\n.*\nx = ~$"));
    EXPECT_THAT(parts["decoded.txt"], HasSubstr("counter  Display  120 shows")) << "its table stands beside it";
    // Whichever file operation fails, the archive is the old one or a whole new one, and nothing lies beside it.
    for (int nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        places.folder.Write("out.zip", "old");
        kora::test::FileFault fault(nth);
        const int code = bundle("--force", "--json");
        const std::string now = places.folder.Read("out.zip");
        EXPECT_TRUE(code == 0 ? now.starts_with("PK\3\4") && now.substr(now.size() - 22, 4) == "PK\5\6" : now == "old");
        EXPECT_FALSE(places.folder.Has("out.zip.part"));
        if (!fault.wasHit()) break;
    }
}

}  // namespace
