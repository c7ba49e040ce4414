#include <gmock/gmock.h>
#include <kora/Err.h>
#include <kora/Test.h>
#include <kora/Tsk.h>

#include <filesystem>
#include <memory>
#include <string>

#include "tests/support/FileFault.h"

namespace {

// What a module prints for a command line that comes so many times, and behind that what it shows.
std::string told(const CStringArray& arguments, int times = 1) {
    TestPresenter presenter;
    eTskKoraModule status = TskKoraModuleFailed;
    TskKoraModule* made = nullptr;
    (TskKoraMain)(status, &made, 0);
    const std::unique_ptr<TskKoraModule> module(made);
    EXPECT_TRUE(status == TskKoraModuleOk && module->TskInit1());
    testing::internal::CaptureStdout();
    for (int i = 0; i < times; ++i) TskCmdLine(arguments);
    module->TskExit1();
    std::string text = testing::internal::GetCapturedStdout();
    for (const auto& alert : presenter.alerts) text += alert.text + '\n';
    return text;
}

// As the loader would have it: each option in turn, also behind a bad file, and as often as options come. Somebody
// else's error is shown first, not in place of ours.
TEST(NetlistModule, PrintsAndShowsWhatItsOptionsName) {
    TestFolder folder;
    folder.Write("good.blif", ".model good\n.inputs a\n.outputs y\n.names a y\n1 1\n.end\n");
    folder.Write("bad.blif", ".model bad\n.inputs a\n.names a\n.end\n");
    const std::string good = folder.NativeText("good.blif"), bad = folder.NativeText("bad.blif"),
                      none = folder.NativeText("none.blif");
    ErrSet(nullptr, 5, 6, nullptr);
    const std::string text = told({"-net", bad, "/net", good, "-net", none, "net", "-x", "-net", "", "-net"}, 2);
    EXPECT_THAT(text, testing::StartsWith("model good: 1 input, 1 output"));
    const std::string once = bad + ":3: \"a\" is driven twice, first in line 2\n" + none +
                             ": there is no such file\n-net needs the name of a netlist file\n" +
                             "-net needs the name of a netlist file\n";
    EXPECT_THAT(text, testing::HasSubstr("\nUnknown error occurred."));
    EXPECT_THAT(text, testing::EndsWith("\n" + once + once));
    EXPECT_FALSE(ErrReport());
    EXPECT_FALSE(TskCmdLine({"-net", good, "-csv", good}));
}

TEST(NetlistModule, WritesTablesOrTellsWhyNot) {
    TestFolder folder;
    folder.Write("n", ".model m\n.inputs a\n.outputs y\n.names a y\n1 1\n.end\n");
    const std::string n = folder.NativeText("n"), a = folder.NativeText("a"), b = folder.NativeText("b"),
                      whole = folder.NativeText(), deep = folder.NativeText("no") + "/x";
    EXPECT_EQ(told({"-csv", a}), "-csv stands behind the -net whose table it writes\n");
    EXPECT_EQ(told({"-net", "-csv", a}), "-net needs the name of a netlist file\n");
    EXPECT_EQ(told({"-net", n, "-html", a, "-tsv"}), "-tsv needs the name of the file to write\n");
    EXPECT_EQ(told({"-net", n, "-html", a, "-tsv", "-"}), "-tsv needs the name of the file to write\n");
    EXPECT_EQ(told({"-net", n, "-csv", n}), n + ": a table cannot replace its netlist\n");
    EXPECT_EQ(told({"-net", n, "-csv", a, "-tsv", a}), a + ": only one table can be written to a file\n");
    EXPECT_FALSE(folder.Has("a"));
    EXPECT_THAT(told({"-net", n, "-csv", deep, "-html", whole, "-net", n, "-tsv", a, "-csv", b}),
                testing::EndsWith(deep + ": there is no such folder\n" + whole + ": this is no file\n"));
    EXPECT_EQ(folder.Read("a"), "a\tinput\t0\t1\tinput\t\ry\toutput\t1\t0\tfunction of 1 input\t\r\t\t\t\t\t\r");
    const std::string csv = folder.Read("b");

    // Whichever file operation fails, no half of a table is left, with an old file and without.
    for (int i = 2, wasHit = 1; wasHit != 0 || i % 2 != 0; ++i) {
        std::filesystem::remove(b);
        if (i % 2 != 0) folder.Write("b", "old");
        const kora::test::FileFault fault(i / 2);
        const bool isQuiet = told({"-net", n, "-csv", b}).find(": the") == std::string::npos;
        wasHit = fault.wasHit();
        EXPECT_EQ(folder.Has("b") ? folder.Read("b") : "none", isQuiet ? csv : i % 2 != 0 ? "old" : "none") << i;
    }

    std::string names;
    for (int i = 1; i <= 32767; ++i) names += " n" + std::to_string(i);
    folder.Write("n", ".model m\n.inputs" + names + "\n.end\n");
    told({"-net", n, "-csv", b});
    EXPECT_THAT(folder.Read("b"), testing::EndsWith("\r\nn32767,input,0,0,input\r\n"));
    folder.Write("n", ".model m\n.inputs" + names + " one\n.end\n");
    folder.Write("b", "old");
    EXPECT_EQ(told({"-net", n, "-html", b, "-tsv", folder.NativeText("c")}),
              n + ": 32768 signals are too many for a table, which has 32767 rows at most\n");
    EXPECT_EQ(folder.Read("b") + (folder.Has("c") ? "c" : ""), "old");
}

}  // namespace
