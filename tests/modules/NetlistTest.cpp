#include <gmock/gmock.h>
#include <kora/File.h>

#include <algorithm>
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
using testing::HasSubstr;
using testing::IsEmpty;

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

// ---- what the circuits compute -----------------------------------------------------------------------------------

// The values of all signals of a model of functions whose rows stand in an order in which they can be computed.
class Simulation {
public:
    explicit Simulation(const Model& model) : model_(model), values_(model.nets.size()) {}

    void set(const std::string& prefix, unsigned bits, unsigned value) {
        for (unsigned i = 0; i < bits; ++i) at(prefix + std::to_string(i)) = (value >> i & 1) != 0;
    }
    void set(const std::string& name, bool value) { at(name) = value; }
    unsigned get(const std::string& prefix, unsigned bits) {
        unsigned value = 0;
        for (unsigned i = 0; i < bits; ++i) value |= static_cast<unsigned>(at(prefix + std::to_string(i))) << i;
        return value;
    }
    bool get(const std::string& name) { return at(name); }

    void run() {
        for (const netlist::Gate& gate : model_.gates) {
            const bool matches = std::ranges::any_of(gate.rows, [&](const CString& row) {
                for (std::size_t i = 0; i < row.size(); ++i)
                    if (row[i] != '-' && (row[i] == '1') != values_[gate.inputs[i]]) return false;
                return true;
            });
            values_[gate.output] = matches == gate.rowValue;
        }
    }

private:
    std::vector<bool>::reference at(const std::string& name) {
        return values_[static_cast<std::size_t>(model_.find(name) - model_.nets.data())];
    }
    const Model& model_;
    std::vector<bool> values_;
};

TEST(BundledNetlists, C17) {
    const Reading c17 = readFile(bundled("c17.blif"));
    ASSERT_TRUE(c17.good) << c17.complaint.text;
    Simulation circuit(c17.models[0]);
    for (unsigned in = 0; in < 32; ++in) {
        const bool n1 = in & 1, n2 = in & 2, n3 = in & 4, n6 = in & 8, n7 = in & 16;
        circuit.set("N1", n1), circuit.set("N2", n2), circuit.set("N3", n3), circuit.set("N6", n6),
            circuit.set("N7", n7);
        circuit.run();
        EXPECT_EQ(circuit.get("N22"), (n1 && n3) || (n2 && !(n3 && n6)));
        EXPECT_EQ(circuit.get("N23"), (n2 || n7) && !(n3 && n6));
    }
}

// All inputs of the arithmetic logic unit against its table of functions.
TEST(BundledNetlists, Alu74181) {
    const Reading alu = readFile(bundled("alu74181.blif"));
    ASSERT_TRUE(alu.good) << alu.complaint.text;
    Simulation circuit(alu.models[0]);
    for (unsigned s = 0; s < 16; ++s)
        for (unsigned data = 0; data < 256; ++data) {
            const unsigned a = data & 15, b = data >> 4, notB = ~b & 15;
            const unsigned logic[16] = {~a,     ~(a | b), ~a & b, 0,     ~(a & b), ~b,       a ^ b, a & notB,
                                        ~a | b, ~(a ^ b), b,      a & b, 15,       a | notB, a | b, a};
            // Each sum of the arithmetic functions; taking away 1 is adding 15.
            const unsigned sum[16][2] = {
                {a, 0},    {a | b, 0},     {a | notB, 0}, {15, 0}, {a, a & notB},     {a | b, a & notB},
                {a, notB}, {a & notB, 15}, {a, a & b},    {a, b},  {a | notB, a & b}, {a & b, 15},
                {a, a},    {a | b, a},     {a | notB, a}, {a, 15}};
            circuit.set("A", 4, a), circuit.set("B", 4, b), circuit.set("S", 4, s);
            for (const bool noCarry : {false, true}) {
                SCOPED_TRACE(testing::Message() << "S " << s << " A " << a << " B " << b << " Cn " << noCarry);
                circuit.set("Cn", noCarry);
                circuit.set("M", true);
                circuit.run();
                ASSERT_EQ(circuit.get("F", 4), logic[s] & 15);
                ASSERT_EQ(circuit.get("AeqB"), (logic[s] & 15) == 15);
                circuit.set("M", false);
                circuit.run();
                const unsigned result = sum[s][0] + sum[s][1] + !noCarry;
                ASSERT_EQ(circuit.get("F", 4), result & 15);
                ASSERT_EQ(circuit.get("Cn4"), result < 16);
                ASSERT_EQ(circuit.get("AeqB"), (result & 15) == 15);
                // for the look-ahead unit: the carry out with a carry in, and without
                ASSERT_EQ(circuit.get("Y"), sum[s][0] + sum[s][1] + 1 >= 16);
                ASSERT_EQ(circuit.get("X") && circuit.get("Y"), sum[s][0] + sum[s][1] >= 16);
            }
        }
}

// ---- what is read and reported -----------------------------------------------------------------------------------

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
        ".model m\n.inputs n9 n10 n8 x\n.outputs y10 y2 y1\n"
        ".names n9 n10 n8 x y1\n1111 1\n.names n10 n10 lost y2\n.gate INV a=n9 O=n11\n"
        ".subckt elsewhere a=n11 b=n12 c=y10\n.names x n13\n.latch n13 n14 2\n.end\n");
    ASSERT_TRUE(reading.good) << reading.complaint.text;
    EXPECT_THAT(netlist::report(reading.models[0]),
                ElementsAre("model m: 4 inputs, 3 outputs, 4 gates, 1 latch, 1 part, 12 signals",
                            "  largest fan-out: n10 3, n9 2, x 2", "  inputs: x n8..n10", "  outputs: y1 y2 y10",
                            "  latches: n14", "  internal: n11..n14", "  driven by nothing: lost"));
}

std::vector<std::string> inputsOf(const std::string& text) {
    const Reading reading = readText(text);
    EXPECT_TRUE(reading.good) << reading.complaint.line << ": " << reading.complaint.text;
    std::vector<std::string> names;
    if (reading.good)
        for (const netlist::NetId net : reading.models[0].inputs) names.push_back(reading.models[0].nets[net].name);
    return names;
}

TEST(BlifReader, TakesLinesAsTheFormatHasThem) {
    // comments and continued lines
    EXPECT_THAT(inputsOf("# c\n.model m # c\n.inputs a\\\n  b \\\n\n.inputs c# \\\n.end"), ElementsAre("a", "b", "c"));
    EXPECT_THAT(inputsOf("\r\n.model m\r\n.inputs a \\\r\n\tb\r\n.end\r\n"), ElementsAre("a", "b"));
    // what the library's own reader gives a meaning to
    EXPECT_THAT(inputsOf("#{\n.model m\n.inputs a{0} ;b { }\n.end\n"), ElementsAre("a{0}", ";b", "{", "}"));
    EXPECT_THAT(inputsOf("\n\n.model {\n.inputs \\a[0] b\\\n\n.end\n"), ElementsAre("\\a[0]", "b"));
    // a model ends where the next one begins; statements that tell of other things
    EXPECT_THAT(inputsOf(".model m\n.inputs a\n.default_input_arrival 0 0\n.model n\n.end\n"), ElementsAre("a"));
    EXPECT_THAT(inputsOf(".model m\n.inputs a\n.names a b\n.attr src x\n1 1\n.end\n"), ElementsAre("a"));
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
        {".model m\n.inputs a \\\n", 3, "the file ends within a statement"},
        // no statements
        {"{netlist}\n.model m\n.end\n", 1, "\"{netlist}\" is no statement"},
        {".model m\n.node a\n.end\n", 2, "\".node\" is no statement"},
        {".model m\n10 1\n.end\n", 2, "\"10\" is no statement"},
        {".model m\n\x01\xff\n.end\n", 2, "\"?\" is no statement"},
        {".inputs a\n", 1, "\".inputs\" stands outside a model"},
        {".model m\n.end\n.names a\n", 3, "\".names\" stands outside a model"},
        {".model\n", 1, ".model needs a name"},
        {".model m\n.end\n.model m\n.end\n", 3, "a second model \"m\""},
        {".model m\n.names\n.end\n", 2, ".names needs an output"},
        {".model m\n.latch a\n.end\n", 2, ".latch needs an input and an output"},
        {".model m\n.latch a b re c 0 1\n.end\n", 2, ".latch has too many words"},
        {".model m\n.subckt\n.end\n", 2, ".subckt needs a model"},
        {".model m\n.gate INV\n.end\n", 2, ".gate needs a type and an output"},
        {".model m\n.gate INV a=x \\\nO\n.end\n", 3, "\"O\" is no pin and signal"},
        {".model m\n.subckt n a=\n.end\n", 2, "\"a=\" is no pin and signal"},
        // rows that do not fit
        {".model m\n.names a b c\n1 1\n.end\n", 3, "\"1\" begins no row of a function of 2 inputs"},
        {".model m\n.names a b\n2 1\n.end\n", 3, "\"2\" begins no row of a function of 1 input"},
        {".model m\n.names a b\n1 x\n.end\n", 3, "\"1\" begins no row of a function of 1 input"},
        {".model m\n.names c\n1 1\n.end\n", 3, "\"1\" begins no row of a function of 0 inputs"},
        {".model m\n.names a b\n0 1\n1 0\n.end\n", 4, "a row for 0 among rows for the opposite"},
        // two drivers
        {".model m\n.inputs a a\n.end\n", 2, "\"a\" is driven twice, first in line 2"},
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

TEST(BlifReader, FilesThatCannotBeRead) {
    TestFolder folder;
    folder.makeFolder("folder.blif");
    for (const std::string& path :
         {folder.path("missing.blif"), folder.path("folder.blif"), folder.path() + "\\", std::string()}) {
        const Reading reading = readFile(path);
        EXPECT_FALSE(reading.good);
        EXPECT_EQ(reading.complaint.text, "the file cannot be read") << path;
        EXPECT_EQ(reading.complaint.line, 0);
    }
}

// Wherever a file is cut, there is one line that says so; a byte that is wrong is never more than that.
TEST(BlifReader, DamagedFiles) {
    TestFolder folder;
    const std::string path = folder.path("damaged.blif");
    std::string whole =
        ".model counter\n.inputs a b\n.outputs q\n.latch n q re a 0\n.gate AND A=a B=b Y=g\n"
        ".names a g \\\n q n\n1-0 1\n-11 1\n.subckt half x=q y=z\n.end\n";
    for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
        folder.write("damaged.blif", whole.substr(0, length));
        const Reading reading = readFile(path);
        ASSERT_FALSE(reading.good) << length;
        ASSERT_THAT(reading.complaint.text, testing::Not(IsEmpty()));
        ASSERT_GT(reading.complaint.line, 0);
    }
    std::mt19937 random(1);
    for (int round = 0; round < 300; ++round) {
        std::string damaged = whole;
        for (int i = 0; i < 3; ++i) damaged[random() % damaged.size()] = static_cast<char>(random());
        folder.write("damaged.blif", damaged);
        const Reading reading = readFile(path);
        ASSERT_EQ(reading.good, reading.complaint.text.empty()) << damaged;
        if (reading.good)
            for (const Model& model : reading.models) netlist::report(model);
    }
}

}  // namespace
