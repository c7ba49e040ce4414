#include <gmock/gmock.h>
#include <kora/File.h>

#include <random>
#include <string>
#include <vector>

#include "modules/netlist/BlifReader.h"
#include "modules/netlist/Report.h"
#include "platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace {

using kora::test::TestFolder;
using netlist::Model;
using testing::ElementsAre;

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
    folder.write("text.blif", text);
    return readFile(folder.path("text.blif"));
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

}  // namespace
