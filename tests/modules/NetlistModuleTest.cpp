#include <gmock/gmock.h>
#include <kora/Err.h>
#include <kora/Tsk.h>

#include <memory>
#include <string>

#include "tests/support/RecordedPresenter.h"
#include "tests/support/TestFolder.h"

namespace {

// As the loader would have it: each option in turn, also behind a bad file, and as often as options come. Somebody
// else's error is shown first, not in place of ours.
TEST(NetlistModule, PrintsAndShowsWhatItsOptionsName) {
    kora::test::TestFolder folder;
    kora::test::RecordedPresenter presenter;
    folder.write("good.blif", ".model good\n.inputs a\n.outputs y\n.names a y\n1 1\n.end\n");
    folder.write("bad.blif", ".model bad\n.inputs a\n.names a\n.end\n");
    const std::string good = folder.nativeText("good.blif"), bad = folder.nativeText("bad.blif"),
                      none = folder.nativeText("none.blif");
    eTskKoraModule status = TskKoraModuleFailed;
    TskKoraModule* made = nullptr;
    (TskKoraMain)(status, &made, 0);
    const std::unique_ptr<TskKoraModule> module(made);
    ASSERT_EQ(status, TskKoraModuleOk);
    ASSERT_TRUE(module->TskInit1());
    for (int round = 0; round < 2; ++round) {
        presenter.alerts.clear();
        ErrSet(nullptr, 5, 6, nullptr);
        testing::internal::CaptureStdout();
        TskCmdLine({"-net", bad, "/net", good, "-net", none, "net", "-x", "-net", "", "-net"});
        EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::StartsWith("model good: 1 input, 1 output"));
        std::string shown;
        for (const auto& alert : presenter.alerts) shown += alert.text + '\n';
        EXPECT_THAT(shown, testing::StartsWith("Unknown error occurred."));
        EXPECT_EQ(shown.substr(shown.find('\n') + 1),
                  bad + ":3: \"a\" is driven twice, first in line 2\n" + none + ": there is no such file\n" +
                      "-net needs the name of a netlist file\n" + "-net needs the name of a netlist file\n");
        EXPECT_FALSE(ErrReport());
    }
    module->TskExit1();
    EXPECT_FALSE(TskCmdLine({"-net", good}));
}

}  // namespace
