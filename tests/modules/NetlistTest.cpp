#include <gmock/gmock.h>
#include <kora/File.h>
#include <kora/Test.h>

#include <random>
#include <regex>
#include <string>
#include <vector>

#include "modules/netlist/BlifReader.h"
#include "modules/netlist/Report.h"
#include "modules/netlist/SheetPage.h"
#include "modules/netlist/SheetText.h"
#include "modules/netlist/SignalTable.h"
#include "platform/Platform.h"

namespace {

using netlist::Model;
using testing::ElementsAre;
using testing::HasSubstr;

std::string bundled(const std::string& name) {
    return kora::platform::environment().programDirectory() + "\\netlists\\" + name;
}

struct Reading {
    bool good;
    std::vector<Model> models;
    netlist::Complaint complaint;
};

Reading readFile(const std::string& path) {
    Reading reading;
    FilePath file(path.c_str());
    reading.good = netlist::readBlif(file, nullptr, reading.models, reading.complaint);
    return reading;
}

Reading readText(const std::string& text) {
    TestFolder folder;
    folder.Write("text.blif", text);
    return readFile(folder.Path("text.blif"));
}

TEST(NetlistReport, OfTheCounter) {
    const Reading counter = readFile(bundled("counter4.blif"));
    ASSERT_TRUE(counter.good) << counter.complaint.text;
    ASSERT_EQ(counter.models.size(), 2U);
    EXPECT_THAT(
        netlist::report(counter.models[0]),
        ElementsAre("model counter4: 2 inputs, 5 outputs, 0 gates, 4 parts, 10 signals", "  largest fan-out: clock 4",
                    "  inputs: clock enable", "  outputs: carry q[0] q[1] q[2] q[3]", "  internal: c1..c3"));
    EXPECT_THAT(
        netlist::report(counter.models[1]),
        ElementsAre("model stage: 2 inputs, 2 outputs, 2 gates, 1 latch, 5 signals", "  largest fan-out: in 2, q 2",
                    "  inputs: clock in", "  outputs: out q", "  latches: q", "  internal: next"));
}

TEST(NetlistReport, RangesLeadersAndLooseEnds) {
    const Reading reading = readText(
        ".model m\n.inputs n9 n10 N9 n8 x n100000\n.outputs y10 y2 y1\n"
        ".names n9 n10 n8 x y1\n1111 1\n.names n10 n10 lost y2\n.gate INV a=n9 O=n11\n"
        ".subckt elsewhere a=n11 b=n12 c=y10\n.names x n13\n.latch n13 n14 2\n.end\n");
    ASSERT_TRUE(reading.good) << reading.complaint.text;
    EXPECT_THAT(
        netlist::report(reading.models[0]),
        ElementsAre("model m: 6 inputs, 3 outputs, 4 gates, 1 latch, 1 part, 14 signals",
                    "  largest fan-out: n10 3, n9 2, x 2", "  inputs: N9 n8..n10 n100000 x", "  outputs: y1 y2 y10",
                    "  latches: n14", "  internal: n11..n14", "  driven by nothing: lost"));
}

TEST(BlifReader, TakesLinesAsTheFormatHasThem) {
    static constexpr struct {
        const char *text, *inputs;
    } rows[] = {
        // comments and continued lines
        {"# c\n.model m # c\n.inputs a\\\n  b \\\n\n.inputs c# \\\n.end", "a b c "},
        {"\r\n.model m\r\n.inputs a \\\r\n\tb\r\n.end\r\n", "a b "},
        // what the library's own reader gives a meaning to
        {"#{\n.model m\n.inputs a{0} ;b { }\n.end\n", "a{0} ;b { } "},
        {"\n\n.model {\n.inputs \\a[0] b\\\n\n.end\n", "\\a[0] b "},
        // a model ends where the next one begins; statements that tell of other things
        {".model m\n.inputs a\n.default_input_arrival 0 0\n.model n\n.blackbox\n.end\n", "a "},
        {".model m\n.inputs a\n.names a b\n.attr src x\n1 1\n.end\n", "a "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const Reading reading = readText(row.text);
        ASSERT_TRUE(reading.good) << reading.complaint.line << ": " << reading.complaint.text;
        std::string names;
        for (const netlist::NetId net : reading.models[0].inputs) names += reading.models[0].nets[net].name + ' ';
        EXPECT_EQ(names, row.inputs);
    }
}

TEST(BlifReader, SaysWhatIsWrongAndWhere) {
    struct Row {
        const char* text;
        long line;
        const char* complaint;
    };
    static constexpr Row rows[] = {
        // cut short
        {"", 1, "the file ends without a .model"},
        {"# nothing\n", 2, "the file ends without a .model"},
        {".model m\n.inputs a\n", 3, "the file ends without an .end"},
        {".model m\n.inputs a \\", 2, "the file ends within a statement"},
        // no statements
        {"{netlist}\n.model m\n.end\n", 1, "\"{netlist}\" is no statement"},
        {".model m\n.node a\n.end\n", 2, "\".node\" is no statement"},
        {".model m\n\x01\xff\n.end\n", 2, "\"?\" is no statement"},
        {".model m\n.end\n.names a\n", 3, "\".names\" stands outside a model"},
        {".model\n", 1, ".model needs a name"},
        {".model m\n.end\n.model m\n.end\n", 3, "a second model \"m\""},
        {".model m\n.latch a\n.end\n", 2, ".latch needs an input and an output"},
        {".model m\n.latch a b re c 0 1\n.end\n", 2, ".latch has too many words"},
        {".model m\n.gate INV\n.end\n", 2, ".gate needs a type and an output"},
        {".model m\n.gate INV a=x \\\nO\n.end\n", 3, "\"O\" is no pin and signal"},
        {".model m\n.subckt n a=\n.end\n", 2, "\"a=\" is no pin and signal"},
        // rows that do not fit
        {".model m\n.names a b c\n1 1\n.end\n", 3, "\"1\" begins no row of a function of 2 inputs"},
        {".model m\n.names a b\n2 1\n.end\n", 3, "\"2\" begins no row of a function of 1 input"},
        {".model m\n.names c\n1 1\n.end\n", 3, "\"1\" begins no row of a function of 0 inputs"},
        {".model m\n.names a b\n0 1\n1 0\n.end\n", 4, "a row for 0 among rows for the opposite"},
        // two drivers
        {".model m\n.inputs a\n.names b \\\n a\n.end\n", 4, "\"a\" is driven twice, first in line 2"},
        {".model m\n.gate INV I=a O=b\n.latch a b\n.end\n", 3, "\"b\" is driven twice, first in line 2"},
        {".model m\n.subckt n y=a\n.subckt n y=a\n.end\n.model n\n.outputs y\n.end\n", 3,
         "\"a\" is driven twice, first in line 2"},
        // a part that does not fit its model
        {".model m\n.subckt n z=a\n.end\n.model n\n.names z\n.end\n", 2, "model \"n\" has no pin \"z\""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        const Reading reading = readText(row.text);
        EXPECT_FALSE(reading.good);
        EXPECT_EQ(reading.complaint.text, row.complaint);
        EXPECT_EQ(reading.complaint.line, row.line);
    }
}

// Wherever a file is cut, there is one line that says so; a byte that is wrong is never more than that.
TEST(BlifReader, DamagedFiles) {
    const std::string whole =
        ".model counter\n.inputs a b\n.outputs q\n.latch n q re a 0\n.gate AND A=a B=b Y=g\n"
        ".names a g \\\n q n\n1-0 1\n-11 1\n.subckt half x=q y=z\n.end\n";
    for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
        const Reading reading = readText(whole.substr(0, length));
        ASSERT_FALSE(reading.good || reading.complaint.text.empty()) << length;
        ASSERT_GT(reading.complaint.line, 0);
    }
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        std::string damaged = whole;
        for (int i = 0; i < 3; ++i) damaged[random() % damaged.size()] = static_cast<char>(random());
        const Reading reading = readText(damaged);
        ASSERT_EQ(reading.good, reading.complaint.text.empty()) << damaged;
        if (reading.good)
            for (const Model& model : reading.models) netlist::report(model);
    }
}

// A sheet that is ready, and whose buffers hold less than they may.
struct SmallBuffers : ShtSheet {
    SmallBuffers() : ShtSheet(nullptr, nullptr, 0) {}
    bool ShtSheetToBuffer(char*& buffer, long& length, bool selectionOnly) override {
        if (ShtSheet::ShtSheetToBuffer(buffer, length, selectionOnly) && length <= most) return true;
        ShtBufferFree(buffer);
        return false;
    }
    void put(int r, int c, std::string text) {
        ShtCellSet(static_cast<short>(r), static_cast<short>(c), true, text.data(), static_cast<long>(text.size()),
                   nullptr, ShtCellUpdateNone, ShtCellShowNone, ShtCellShowNone);
    }
    long most = 64000;
};

TEST(SignalTable, OfEveryKindOfSignal) {
    const Reading reading = readText(
        ".model m\n.inputs s10 s9 a\n.outputs y a\n.names s10 s9 y\n11 1\n.names one\n1\n.gate INV A=lost O=g\n"
        ".latch g q re s9 0\n.latch q p\n.subckt n x=one x2=q z=part\n.subckt other u=what\n.end\n"
        ".model n\n.inputs x x2\n.outputs z\n.names x x2 z\n11 1\n.end\n");
    SmallBuffers sheet;
    ASSERT_TRUE(netlist::fillSignalTable(sheet, reading.models));
    std::string rows;
    for (short r = 0; r < 14; ++r, rows += '\n') {
        rows += netlist::rowHeading(sheet, r);
        for (short c = 0; c < 6; ++c) {
            char mark;
            int rank = 0;
            sheet.ShtCellMarkGet(r, c, mark, rank);
            rows += sheet.ShtCellProtectGet(r, c) ? '#' : '|';
            rows += netlist::cellText(sheet, r, c);
            if (mark != 0) rows += mark + std::to_string(rank);
        }
    }
    EXPECT_EQ(rows,
              "1#m#a|input, output|0|0|input\n2#m#g|internal|1|1|gate INV\n3#m#lost|undriven|0|1|nothing!0\n"
              "4#m#one|internal|0|1|constant\n5#m#p|latch|1|0!0|latch\n6#m#part|internal|2|0!0|part n\n"
              "7#m#q|latch|2|2*1|latch\n8#m#s9|input|0|2*2|input\n9#m#s10|input|0|1|input\n"
              "10#m#what|internal||0|unknown?0\n11#m#y|output|2|0|function of 2 inputs\n"
              "12#n#x|input|0|1|input\n13#n#x2|input|0|1|input\n14#n#z|output|2|0|function of 2 inputs\n");
    EXPECT_THAT(netlist::sheetAsCsv(sheet),
                HasSubstr("Model,Name,Kind,Fan-in,Fan-out,Driver\r\nm,a,\"input, output\","));
    const std::string page = netlist::sheetAsHtml(sheet, "<m>");
    EXPECT_THAT(page, HasSubstr("<title>&#60;m&#62;</title>"));
    EXPECT_THAT(page, HasSubstr("<tr><th scope=\"row\">7</th><td class=\"p\">m</td><td class=\"p\">q</td><td>latch</td>"
                                "<td class=\"r\">2</td><td class=\"r\" data-mark=\"*\">2</td><td>latch</td></tr>\n"));
    EXPECT_THAT(page, HasSubstr("<col style=\"width:22.00ch\"></colgroup>"));  // "function of 2 inputs" and a margin
    sheet.put(0, 0, "<&\"'>\x01\t\x7f\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80");
    // no UTF-8: alone, cut off, longer than need be, half of a pair, too large; and a control character
    sheet.put(0, 1, "\xe9.\xe2\x82.\xc0\xaf\xe0\x80\xed\xa0\xf4\x90\xc2\x85");
    EXPECT_THAT(
        netlist::sheetAsHtml(sheet, ""),
        HasSubstr(
            "&#60;&#38;&#34;&#39;&#62;&#9217;&#9225;&#9249;\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80</td><td class=\"p\">"
            "&#233;.&#226;&#65533;.&#192;&#175;&#224;&#65533;&#237;&#160;&#244;&#65533;&#194;&#65533;<"));
}

// Reads as RFC 4180 has it; "end" stands for the end of a line.
std::vector<std::string> readCsv(const std::string& csv) {
    static const std::regex field(R"x((?:"((?:[^"]|"")*)"|([^,"\r\n]*))(,|\r\n))x"), pair("\"\"");
    std::vector<std::string> fields;
    std::sregex_iterator match(csv.begin(), csv.end(), field, std::regex_constants::match_continuous);
    for (; match != std::sregex_iterator(); ++match) {
        fields.push_back(std::regex_replace(match->str(1), pair, "\"") + match->str(2));
        if (match->str(3) != ",") fields.emplace_back("end");
    }
    return fields;
}

// Random texts of the characters that matter: CSV reads back as it was, a table in pieces is the table in one.
TEST(SheetText, KeepsEveryCharacter) {
    std::mt19937 random(7);
    for (int round = 0; round < 60; ++round) {
        SmallBuffers sheet;
        std::vector<std::string> texts{"0", "1", "end"};
        for (int cell = 0; cell < 2 + round / 2 * 2; ++cell) {
            texts.emplace_back();
            while (random() % 4 != 0) texts.back() += ",\"\r\n\t ;a\xe9"[random() % 9];
            sheet.put(cell / 2, cell % 2, texts.back());
            if (cell % 2 != 0) texts.emplace_back("end");
        }
        EXPECT_EQ(readCsv(netlist::sheetAsCsv(sheet)), texts) << round;
        char* buffer;
        ASSERT_TRUE(sheet.ShtSheetToBuffer(buffer, sheet.most, false));
        const std::string whole(buffer, static_cast<std::size_t>(sheet.most));
        ShtBufferFree(buffer);
        sheet.ShtSheetSelectSet(ShtSelectRows, 1, 2, 3, 4);
        for (std::string pieces; netlist::sheetAsTsv(sheet, pieces); --sheet.most) ASSERT_EQ(pieces, whole);
        EXPECT_LT(sheet.most, static_cast<long>(whole.size()));
        EXPECT_EQ(sheet.ShtSheetSelectGet(nullptr, nullptr, nullptr, nullptr), ShtSelectRows);
    }
}

}  // namespace
