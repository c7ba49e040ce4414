#include <gmock/gmock.h>
#include <kora/Err.h>
#include <kora/Tsk.h>

#include <string>

#include "tests/support/RecordedPresenter.h"
#include "tests/support/ScopedPlaces.h"

namespace {

using kora::test::RecordedPresenter;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// The module as the loader would have it, and what it prints and shows for a command line.
class NetlistModule : public testing::Test {
protected:
    NetlistModule() {
        (TskKoraMain)(status_, &module_, 0);
        EXPECT_EQ(status_, TskKoraModuleOk);
        EXPECT_TRUE(module_->TskInit1());
        places_.folder.write("good.blif", ".model good\n.inputs a\n.outputs y\n.names a y\n1 1\n.end\n");
        places_.folder.write("bad.blif", ".model bad\n.inputs a\n.names a\n.end\n");
    }
    ~NetlistModule() override {
        module_->TskExit1();
        delete module_;
    }

    std::string file(const std::string& name) { return places_.folder.nativeText(name); }

    std::string printed(const CStringArray& arguments) {
        testing::internal::CaptureStdout();
        TskCmdLine(arguments);
        return testing::internal::GetCapturedStdout();
    }

    std::vector<std::string> shown() {
        std::vector<std::string> texts;
        for (const auto& alert : presenter_.alerts) texts.push_back(alert.text);
        return texts;
    }

    kora::test::ScopedPlaces places_;
    RecordedPresenter presenter_;

private:
    eTskKoraModule status_ = TskKoraModuleFailed;
    TskKoraModule* module_ = nullptr;
};

TEST_F(NetlistModule, PrintsWhatTheOptionNames) {
    EXPECT_THAT(printed({"kora-host", "-net", file("good.blif"), "-x"}), HasSubstr("model good: 1 input, 1 output"));
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_EQ(printed({"net", file("good.blif")}), "");
}

TEST_F(NetlistModule, TakesEachOptionInTurnAndGoesOnBehindABadFile) {
    const CStringArray arguments = {"-net", file("bad.blif"),  "/net", file("good.blif"),
                                    "-net", file("none.blif"), "-net"};
    for (int round = 0; round < 2; ++round) {
        presenter_.alerts.clear();
        EXPECT_THAT(printed(arguments), HasSubstr("model good"));
        EXPECT_THAT(shown(), ElementsAre(file("bad.blif") + ":3: \"a\" is driven twice, first in line 2",
                                         file("none.blif") + ": the file cannot be read",
                                         "-net needs the name of a netlist file"));
    }
}

// Somebody else's error is shown first, not in place of ours.
TEST_F(NetlistModule, ShowsItsErrorsBehindThoseThatWait) {
    ErrSet(nullptr, 5, 6, nullptr);
    printed({"-net", file("bad.blif")});
    EXPECT_THAT(shown(), ElementsAre(HasSubstr("Unknown error occurred."), HasSubstr("driven twice")));
    EXPECT_FALSE(ErrReport());
}

}  // namespace
