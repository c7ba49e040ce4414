#include <gmock/gmock.h>

#include <kora/Err.h>
#include <kora/File.h>
#include <kora/Ini.h>
#include <kora/Str.h>
#include <kora/Tmr.h>
#include <kora/Tsk.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/TestFolder.h"

// Module files as users have them, loaded by the shared library.

namespace {

using kora::test::TestFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using Log = std::vector<std::string>;

// Everything that is said, in one row: what modules do, progress, and alerts of the library.
class RowOfEvents : public MsgPresenter {
public:
    RowOfEvents() : before_(MsgPresenterSet(this)) {}
    ~RowOfEvents() override { MsgPresenterSet(before_); }
    int Alert(const char* text, unsigned) override {
        log.emplace_back(text);
        return 1;
    }
    void ErrorDialog(const char* text, bool&) override {
        const std::string whole = text;
        log.push_back(whole.substr(0, whole.find(',')) + ")");  // without the location
    }
    void Progress(const char* text) override { log.emplace_back(std::string("> ") + text); }

    Log log;

private:
    MsgPresenter* before_;
};

class Modules : public testing::Test {
protected:
    static void SetUpTestSuite() {
        home() = std::make_unique<TestFolder>();
#if !defined(_WIN32)
        setenv("HOME", home()->nativeText().c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
#endif
    }
    static void TearDownTestSuite() { home().reset(); }

    void SetUp() override {
        folder_.write("ts.ini", "[System]\nNugPinNameDisplayUp = 7\n");
        folder_.makeFolder("tools");
        ASSERT_TRUE(IniMainFileSet(folder_.nativeText("ts.ini").c_str()));
        TskToolsFolderSet(folder_.nativeText("tools").c_str());
    }
    void TearDown() override {
        if (TskExitKoraQuery()) ExitInstance();
        TskToolsFolderSet(nullptr);
        IniMainFileSet(nullptr);
    }

    void add(const std::string& fixture, const std::string& as) {
        std::filesystem::copy_file(std::filesystem::path(KORA_FIXTURES) / (fixture + ".qzx"),
                                   folder_.native() / "tools" / as);
    }
    void add(const std::string& fixture) { add(fixture, fixture + ".qzx"); }

    // What has been said since the last call.
    Log take() { return std::exchange(events_.log, {}); }
    // The same without progress.
    Log takeAlerts() {
        Log alerts = take();
        std::erase_if(alerts, [](const std::string& text) { return text.starts_with("> "); });
        return alerts;
    }
    // The same without what module "a" tells, which is always there.
    Log takeAlertsOfOthers() {
        Log alerts = takeAlerts();
        std::erase_if(alerts, [](const std::string& text) { return text.starts_with("a: "); });
        return alerts;
    }

    TestFolder folder_;
    RowOfEvents events_;

private:
    static std::unique_ptr<TestFolder>& home() {
        static std::unique_ptr<TestFolder> folder;
        return folder;
    }
};

TEST_F(Modules, GoThroughTheirLifeInNameOrder) {
    add("b", "B.QZX");
    add("a");
    folder_.write("tools/c.qz", "not a module file by its name");
    folder_.makeFolder("tools/folder.qzx");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    EXPECT_THAT(take(),
                ElementsAre("> Loading a.qzx", "> Loading B.QZX", "> Phase 1 initialization of a", "a: init 1",
                            "> Phase 1 initialization of b", "b: init 1", "> Phase 2 initialization of a", "a: init 2",
                            "> Phase 2 initialization of b", "b: init 2", "> Phase 3 initialization of a", "a: init 3",
                            "> Phase 3 initialization of b", "b: init 3", "> Phase 4 initialization of a", "a: init 4",
                            "> Phase 4 initialization of b", "b: init 4", "> Loading Files ...", "a: init final",
                            "b: init final"));
    EXPECT_EQ(TskNugPinNameDisplayUp(), 7);
    EXPECT_STREQ(TskKoraModuleGet("b")->TskFileName(), "B.QZX");
    EXPECT_TRUE(TskModulesInitialized());

    EXPECT_NE(Startup(nullptr, nullptr), 0) << "once started, nothing happens again";
    EXPECT_THAT(take(), IsEmpty());

    TskExit();
    EXPECT_THAT(take(), IsEmpty()) << "nobody was asked";
    EXPECT_TRUE(TskExitKoraQuery());
    EXPECT_THAT(take(), ElementsAre("a: exit request", "b: exit request"));
    EXPECT_EQ(ExitInstance(), 0);
    EXPECT_THAT(take(), ElementsAre("a: exit 1", "b: exit 1", "a: exit 2", "b: exit 2", "a: gone", "b: gone"));
    EXPECT_FALSE(TskModulesInitialized());
    TskExit();
    EXPECT_EQ(ExitInstance(), 0);
    EXPECT_THAT(take(), IsEmpty());

    ASSERT_NE(Startup(nullptr, nullptr), 0) << "all over again";
    EXPECT_TRUE(TskModuleExists("a"));
    EXPECT_THAT(take(), testing::Contains("b: init final"));
}

TEST_F(Modules, StringsAndFunctionsAreFoundInTheirLibrary) {
    add("a");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    take();
    TskKoraModule* module = TskKoraModuleGet("a");
    ASSERT_NE(module, nullptr);
    const auto text = [&](int id) {
        char* string = StrRes(module, id);
        const std::string copy = string != nullptr ? string : "(none)";
        ::operator delete(string);
        return copy;
    };
    EXPECT_EQ(text(1), "first string");
    EXPECT_EQ(text(7000), "far away");
    EXPECT_EQ(text(2), "(none)");

    const unsigned long handle = TskKoraHandleGet("a");
    EXPECT_NE(handle, 0U);
    const auto answer = reinterpret_cast<int (*)()>(TskKoraConnect(handle, "a", "fixtureAnswer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_EQ(TskKoraConnect(handle, "a", "fixtureSecret"), nullptr);
    EXPECT_EQ(TskKoraConnect(0, "z", "fixtureAnswer"), nullptr);
    EXPECT_THAT(take(), ElementsAre("DLL Failure: Couldn't find function 'fixtureSecret' in Kora Module 'a'",
                                    "DLL Failure: Couldn't find Kora Module 'z'"));
}

TEST_F(Modules, ThatDoNotConnectLeaveNothingBehind) {
    const std::string declined = "The Kora Module bad.qzx did not connect to System Services";
    const struct {
        const char* fixture;
        Log said;
    } rows[] = {
        {"no-entry", {"Module bad.qzx is not compatible with this version."}},
        {"status", {declined, "declined: gone", "declined too: gone"}},
        {"withholds", {declined, "declined: gone", "declined too: gone"}},
        {"deletes-itself", {"declined: gone", declined, "declined too: gone"}},
        {"throws-entry", {declined, "declined: gone", "declined too: gone"}},
    };
    add("a");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.fixture);
        add(row.fixture, "bad.qzx");
        ASSERT_NE(Startup(nullptr, nullptr), 0);
        EXPECT_EQ(takeAlertsOfOthers(), row.said);
        EXPECT_TRUE(TskModuleExists("a"));
        EXPECT_FALSE(TskCmdLine({"-decl"})) << "its callback went with its library";
        EXPECT_TRUE(TskExitKoraQuery());
        EXPECT_EQ(ExitInstance(), 1);
        EXPECT_THAT(takeAlertsOfOthers(), IsEmpty());
        // On Windows only a library that is unloaded can be removed.
        EXPECT_TRUE(std::filesystem::remove(folder_.native() / "tools" / "bad.qzx"));
    }
}

TEST_F(Modules, ThatCannotBeLoadedAreNamedWithTheReason) {
    add("a");
    // The same library for another processor: the machine stands at 18 in one format, behind "PE\0\0" in the other.
    std::string foreign = folder_.read("tools/a.qzx");
    const std::size_t header = foreign.find(std::string("PE\0\0", 4));
    foreign.replace(foreign.starts_with("MZ") ? header + 4 : 18, 2, foreign.starts_with("MZ") ? "\x64\x86" : "\x28\x00",
                    2);
    folder_.write("tools/foreign.qzx", foreign);
    folder_.write("tools/nothing.qzx", "");
    folder_.write("tools/text.qzx", "This is no library.\n");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    const Log said = takeAlertsOfOthers();
    ASSERT_EQ(said.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        const std::string name = std::vector{"foreign", "nothing", "text"}[i];
        EXPECT_THAT(said[i], testing::StartsWith("Error \"(193): Unknown Error\" loading module "));
        EXPECT_THAT(said[i], testing::EndsWith("\\tools\\" + name + ".qzx"));
    }
    EXPECT_TRUE(TskModuleExists("a"));
    EXPECT_EQ(TskExitCodeGet(), 1);
}

TEST_F(Modules, MisbehavingInPhases) {
    const struct {
        const char* fixture;
        Log said;  // by the module and about it, up to the end of start-up
        bool exists, goodGoesOn;
        int exitCode;
    } rows[] = {
        {"false-phase", {"bad: init 1", "bad: misbehaves"}, false, true, 1},
        {"deletes-itself-in-phase", {"bad: init 1", "bad: init 2", "bad: misbehaves", "bad: gone"}, false, true, 0},
        {"throws-phase", {"bad: init 1", "bad: misbehaves", "Internal Error (Exception in TskInit)"}, true, false, 1},
    };
    add("a", "z.qzx");  // after the one that misbehaves
    for (const auto& row : rows) {
        SCOPED_TRACE(row.fixture);
        add(row.fixture, "bad.qzx");
        ASSERT_NE(Startup(nullptr, nullptr), 0);
        const Log log = take();
        Log said;
        for (const std::string& text : log)
            if (!text.starts_with("> ") && !text.starts_with("a: ")) said.push_back(text);
        EXPECT_EQ(said, row.said);
        EXPECT_EQ(TskModuleExists("bad"), row.exists);
        EXPECT_THAT(log, testing::Contains("a: init final").Times(row.goodGoesOn ? 1 : 0));
        EXPECT_TRUE(TskExitKoraQuery());
        EXPECT_EQ(ExitInstance(), row.exitCode);
        take();
        std::filesystem::remove(folder_.native() / "tools" / "bad.qzx");
    }
}

TEST_F(Modules, OfOneNameAreBothThereAndTheFirstIsFound) {
    add("a");
    add("twin");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    EXPECT_STREQ(TskKoraModuleGet("a")->TskFileName(), "a.qzx");
    delete TskKoraModuleGet("a");
    EXPECT_STREQ(TskKoraModuleGet("a")->TskFileName(), "twin.qzx");
}

TEST_F(Modules, MayRefuseToQuit) {
    add("a");
    add("refuses", "0.qzx");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    take();
    EXPECT_FALSE(TskExitKoraQuery());
    EXPECT_THAT(take(), ElementsAre("bad: misbehaves")) << "the first refusal ends the query";
    EXPECT_FALSE(TskGetApp()->TskAppQuit());
    EXPECT_FALSE(TskGetApp()->TskAppEnding());
    take();
    ExitInstance();
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_TRUE(TskModuleExists("a"));
    delete TskKoraModuleGet("bad");
}

TEST_F(Modules, ThrowingAtTheEndAreReportedAndEndAllTheSame) {
    add("a");
    add("throws-exit", "b.qzx");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    EXPECT_TRUE(TskExitKoraQuery());
    take();
    EXPECT_EQ(ExitInstance(), 1);
    EXPECT_THAT(take(), ElementsAre("a: exit 1", "bad: misbehaves", "Internal Error (Exception in TskExit)", "a: gone",
                                    "bad: gone"));
    EXPECT_FALSE(TskModulesInitialized());
}

TEST_F(Modules, AbsentFromTheirFolderAreMissed) {
    const std::string tools = folder_.nativeText("empty");
    folder_.write("ts.ini", "[System]\ntoolfolder = \"" + tools + "\"\n");
    IniMainFileSet(folder_.nativeText("ts.ini").c_str());  // read it again
    TskToolsFolderSet(nullptr);
    for (const bool there : {false, true}) {
        SCOPED_TRACE(there);
        if (there) folder_.makeFolder("empty");
        ASSERT_NE(Startup(nullptr, nullptr), 0);
        EXPECT_THAT(take(), ElementsAre(testing::MatchesRegex("There are no code modules in the specified tools "
                                                              "directory '.:\\\\.*\\\\empty'"),
                                        "> Loading Files ..."));
        EXPECT_TRUE(TskExitKoraQuery());
        EXPECT_EQ(ExitInstance(), 0);
    }
}

// A pending error may outlive the module that set it.
TEST_F(Modules, ThatAreGoneAreNotAskedAboutTheirErrors) {
    add("a");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    ErrSet(TskKoraModuleGet("a"), 5, 1, nullptr);
    EXPECT_TRUE(TskExitKoraQuery());
    ExitInstance();
    take();
    EXPECT_TRUE(ErrReport());
    EXPECT_THAT(take(), ElementsAre("Unknown error occurred. Kora Module ''  Location 0x1 (1)  Reference 0x0 (0)"));
}

// An expiry that ends everything returns into its module's library, which so has to be there still.
class EndsEverything : public TmrTimer {
public:
    EndsEverything() : TmrTimer(TmrTypeIdle) {}
    bool TmrExpiry() override {
        const auto call = answer;
        EXPECT_TRUE(TskExitKoraQuery());
        TskExit();  // deletes this timer too
        EXPECT_EQ(call(), 42);
        return false;
    }
    int (*answer)() = nullptr;
};

TEST_F(Modules, StayLoadedWhileTheirCodeMayRun) {
    add("a");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    auto* timer = new EndsEverything;
    timer->answer = reinterpret_cast<int (*)()>(TskKoraConnect(TskKoraHandleGet("a"), "a", "fixtureAnswer"));
    timer->TmrStart();
    Idle(0);
    EXPECT_FALSE(TskModulesInitialized());
}

}  // namespace
