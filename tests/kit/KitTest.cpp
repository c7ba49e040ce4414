#include <gmock/gmock.h>

#include <kora/Test.h>
#include <kora/Trace.h>

#include <memory>

// The kit as the authors of modules use it: with the shared library, and with modules of all kinds.

namespace {

using testing::HasSubstr;

TEST(TestHost, SaysWhatFailedAndIsAsNewTheNextTime) {
    const struct {
        const char *fixture, *failures;
        bool loaded, starts;
    } rows[] = {
        {"no-entry", "bad.qzx: Module bad.qzx is not compatible with this version.", false, false},
        {"throws-entry", "bad.qzx: The Kora Module bad.qzx did not connect to System Services\n", false, false},
        {"false-phase", "bad.qzx: TskInit2() answered false\n", true, false},
        {"throws-phase", "bad.qzx: TskInit2() threw\n", true, false},
        {"refuses", "bad.qzx: TskExitRequest() refused\n", true, true},
        {"throws-exit", "bad.qzx: TskExit1() threw\n", true, true},
        {"deletes-itself-in-phase", "", true, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.fixture);
        TestHost host;
        host.ModuleAdd(KORA_FIXTURES "/a.qzx");
        host.ModuleAdd(KORA_FIXTURES "/" + std::string(row.fixture) + ".qzx", "bad.qzx");
        EXPECT_EQ(host.Start(), row.starts);
        EXPECT_EQ(host.Run(3, 5), 3);
        EXPECT_EQ(host.End(), *row.failures == '\0' ? 0 : 1);
        EXPECT_THAT(host.Failures(), testing::StartsWith(row.failures));
        EXPECT_EQ(host.Failures().empty(), *row.failures == '\0');
        ASSERT_EQ(host.modules.size(), 2u);
        EXPECT_EQ(host.modules[0].name + ' ' + host.modules[0].file, "a a.qzx");
        EXPECT_EQ(host.modules[1].loaded, row.loaded);
        EXPECT_FALSE(TskModulesInitialized());
    }
}

// What the user has is neither seen nor changed; what one run leaves behind is there in the next of the same host.
TEST(TestHost, KeepsOutOfTheUsersPlaces) {
    const CString documents = DirGetDocRootDir(), section = TestFolder().Path();  // of no other run
    CString option;
    for (int turn = 0; turn < 2; ++turn) {
        TestHost host;
        const TestFolder& folder = host.places.folder;
        DirPath temporary, startIn;
        EXPECT_TRUE(temporary.DirInitTemporary() && startIn.DirInitStartIn());
        EXPECT_EQ(temporary.DirStringGet(), folder.Path("temporary"));
        EXPECT_EQ(startIn.DirStringGet(), folder.Path("work"));
        TraceToFileSet(true);
        for (const bool again : {false, true}) {
            host.Start();
            EXPECT_FALSE(TskScratchPlacesSet(nullptr)) << "not while it runs";
            EXPECT_EQ(GetRegOption(section.c_str(), "con ", option), again);
            SetRegOption(section.c_str(), "con ", CString("kept"));
            CStringArray recent;
            FileGetMRUList(recent);
            EXPECT_EQ(recent.size(), again ? 1u : 0u);
            FileAddToMRUList("C:\\nets\\adder");
            IniSetString(eIniState, "Kit", "a", "b");
            IniSetString(eIniMain, "Kit", "c", "d");
            EXPECT_EQ(host.End(), 0);
        }
        TraceToFileSet(false);
        EXPECT_THAT(host.places.Log(), HasSubstr(" - Goodbye!\n"));
        EXPECT_THAT(host.places.State() + host.profile.Text(), HasSubstr("a = b\n[Kit]\nc = d\n"));
        folder.Write("file", "");
        EXPECT_FALSE(TskScratchPlacesSet(folder.Path("file").c_str()));
        EXPECT_NE(std::make_unique<TestPlaces>()->folder.Path(), folder.Path());
        EXPECT_EQ(DirGetDocRootDir(), folder.Path("documents"));
    }
    EXPECT_FALSE(GetRegOption(section.c_str(), "con ", option));
    EXPECT_EQ(DirGetDocRootDir(), documents);
}

TEST(TestHost, RunsOnAClockOfItsOwnUntilItIsAskedToQuit) {
    TestClock outer(0xFFFFFFFF);
    {
        TestHost host;
        host.Start();
        TskQuitRequest();
        EXPECT_EQ(host.Run(10, 5), 1);
        EXPECT_EQ(TmrElapse(), 1005u);
        ErrSet(nullptr, 5, 0, nullptr);
        EXPECT_EQ(host.End(), 1) << "an error that waits is a failure";
    }
    outer.Advance(2);
    EXPECT_EQ(TmrElapse(), 1u);
}

TEST(TestPresenter, AnswersInTurnAndThenAlike) {
    TestPresenter user;
    user.answers = {6, 1220};
    user.choices = {"C:\\a", ""};
    for (const auto& [buttons, answer] : {std::pair{MsgButtonYesNo, MsgReturnYes},
                                          {MsgButtonContinueAlert, MsgReturnContinueSecond},
                                          {MsgButtonContinueAlert, MsgReturnContinueFirst},
                                          {MsgButtonOkCancel, MsgReturnOk}})
        EXPECT_EQ(MsgAlert(MsgIconQuestion, buttons, 1, "", "?"), answer);
    DirPath folder;
    EXPECT_TRUE(folder.DirDialogOpen("where?") && !folder.DirDialogOpen("where else?"));
    EXPECT_EQ(user.asked.back().path, "C:\\a");
}

}  // namespace
