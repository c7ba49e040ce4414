#include <gmock/gmock.h>

#include <kora/Err.h>
#include <kora/File.h>
#include <kora/Ini.h>
#include <kora/Str.h>
#include <kora/Test.h>
#include <kora/Tmr.h>
#include <kora/Tsk.h>

#include <filesystem>
#include <string>
#include <vector>

// Module files as users have them, loaded by the shared library.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Log = std::vector<std::string>;

// Everything that is said, in one row: what modules do, progress, and alerts of the library.
class RowOfEvents : public TestPresenter {
public:
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
};

class Modules : public testing::Test {
protected:
    void SetUp() override {
        folder_.MakeFolder("tools");
        profile("NugPinNameDisplayUp = 7\ntoolfolder = \"" + folder_.NativeText("tools") + '"');
        add("a");
    }
    void TearDown() override {
        if (TskExitKoraQuery()) ExitInstance();
    }

    void profile(const std::string& system) { profile_.Set({"[System]", system}); }
    void add(const std::string& fixture, std::string as = "") {
        if (as.empty()) as = fixture + ".qzx";
        std::filesystem::copy_file(std::filesystem::path(KORA_FIXTURES) / (fixture + ".qzx"),
                                   folder_.Native() / "tools" / as);
    }

    // What has been said since the last call.
    Log take() { return std::exchange(events_.log, {}); }
    // The same without progress, and without what module "a" tells, which is always there.
    Log takeOfOthers() {
        Log alerts = take();
        std::erase_if(alerts, [](const auto& text) { return text.starts_with("> ") || text.starts_with("a: "); });
        return alerts;
    }

    TestPlaces places_;
    TestProfile profile_;
    TestFolder folder_;
    RowOfEvents events_;
};

TEST_F(Modules, GoThroughTheirLifeInNameOrder) {
    add("b", "B.QZX");
    folder_.Write("tools/c.qz", "not a module file by its name");
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
    EXPECT_EQ(ExitInstance(), 0);
    EXPECT_THAT(take(), IsEmpty());

    ASSERT_NE(Startup(nullptr, nullptr), 0) << "all over again";
    EXPECT_TRUE(TskModuleExists("a"));
    EXPECT_THAT(take(), testing::Contains("b: init final"));
}

TEST_F(Modules, StringsAndFunctionsAreFoundInTheirLibrary) {
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    take();
    const auto text = [](int id) {
        char* string = StrRes(TskKoraModuleGet("a"), id);
        const std::string copy = string != nullptr ? string : "(none)";
        ::operator delete(string);
        return copy;
    };
    EXPECT_EQ(text(1), "first string");
    EXPECT_EQ(text(7000), "far away");
    EXPECT_EQ(text(2), "(none)");

    const unsigned long handle = TskKoraHandleGet("a");
    const auto answer = reinterpret_cast<int (*)()>(TskKoraConnect(handle, "a", "fixtureAnswer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_EQ(TskKoraConnect(handle, "a", "fixtureSecret"), nullptr);
    EXPECT_EQ(TskKoraConnect(0, "z", "fixtureAnswer"), nullptr);
    EXPECT_THAT(take(), ElementsAre("DLL Failure: Couldn't find function 'fixtureSecret' in Kora Module 'a'",
                                    "DLL Failure: Couldn't find Kora Module 'z'"));
}

// One that does not behave, in front of one that does.
TEST_F(Modules, MisbehavingHarmNoOthers) {
    const std::string declined = "The Kora Module bad.qzx did not connect to System Services";
    const struct {
        const char* fixture;
        Log atStart, atExit;  // said by it and about it
        int exitCode;
        bool exists = false, othersGoOn = true;
    } rows[] = {
        {"no-entry", {"Module bad.qzx is not compatible with this version."}, {}, 1},
        {"status", {declined, "declined: gone", "declined too: gone"}, {}, 1},
        {"withholds", {declined, "declined: gone", "declined too: gone"}, {}, 1},
        {"deletes-itself", {"declined: gone", declined, "declined too: gone"}, {}, 1},
        {"throws-entry", {declined, "declined: gone", "declined too: gone"}, {}, 1},
        {"false-phase", {"bad: init 1", "bad: misbehaves"}, {"bad: gone"}, 1},
        {"deletes-itself-in-phase", {"bad: init 1", "bad: init 2", "bad: misbehaves", "bad: gone"}, {}, 0},
        {"throws-phase",
         {"bad: init 1", "bad: misbehaves", "Internal Error (Exception in TskInit)"},
         {"bad: exit request", "bad: exit 1", "bad: exit 2", "bad: gone"},
         1,
         true,
         false},
        {"throws-exit",
         {"bad: init 1", "bad: init 2", "bad: init 3", "bad: init 4", "bad: init final"},
         {"bad: exit request", "bad: misbehaves", "Internal Error (Exception in TskExit)", "bad: gone"},
         1,
         true},
    };
    std::filesystem::rename(folder_.Native() / "tools" / "a.qzx", folder_.Native() / "tools" / "z.qzx");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.fixture);
        add(row.fixture, "bad.qzx");
        ASSERT_NE(Startup(nullptr, nullptr), 0);
        EXPECT_THAT(events_.log, testing::Contains("a: init final").Times(row.othersGoOn ? 1 : 0));
        EXPECT_EQ(takeOfOthers(), row.atStart);
        EXPECT_EQ(TskModuleExists("bad"), row.exists);
        EXPECT_FALSE(TskCmdLine({"-decl"})) << "its callback went with its library";
        EXPECT_TRUE(TskExitKoraQuery());
        EXPECT_EQ(ExitInstance(), row.exitCode);
        EXPECT_THAT(events_.log, testing::Contains("a: gone"));
        EXPECT_EQ(takeOfOthers(), row.atExit);
        // On Windows only a library that is unloaded can be removed.
        EXPECT_TRUE(std::filesystem::remove(folder_.Native() / "tools" / "bad.qzx"));
    }
}

TEST_F(Modules, ThatCannotBeLoadedAreNamedWithTheReason) {
    // The same library for another processor: the machine stands at 18 in one format, behind "PE\0\0" in the other.
    std::string foreign = folder_.Read("tools/a.qzx");
    const bool windows = foreign.starts_with("MZ");
    foreign.replace(windows ? foreign.find(std::string("PE\0\0", 4)) + 4 : 18, 2, windows ? "\x64\x86" : "\x28\x00", 2);
    folder_.Write("tools/foreign.qzx", foreign);
    folder_.Write("tools/nothing.qzx", "");
    folder_.Write("tools/text.qzx", "This is no library.\n");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    const auto failure = [](const std::string& name) {
        return testing::AllOf(testing::StartsWith("Error \"(193): Unknown Error\" loading module "),
                              testing::EndsWith("\\tools\\" + name));
    };
    EXPECT_THAT(takeOfOthers(), ElementsAre(failure("foreign.qzx"), failure("nothing.qzx"), failure("text.qzx")));
    EXPECT_TRUE(TskModuleExists("a"));
    EXPECT_EQ(TskExitCodeGet(), 1);
}

TEST_F(Modules, OfOneNameAreBothThereAndTheFirstIsFound) {
    add("twin");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    EXPECT_STREQ(TskKoraModuleGet("a")->TskFileName(), "a.qzx");
    delete TskKoraModuleGet("a");
    EXPECT_STREQ(TskKoraModuleGet("a")->TskFileName(), "twin.qzx");
}

TEST_F(Modules, MayRefuseToQuit) {
    add("refuses", "0.qzx");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    take();
    EXPECT_FALSE(TskGetApp()->TskAppQuit() || TskGetApp()->TskAppEnding());
    EXPECT_THAT(take(), ElementsAre("bad: misbehaves")) << "the first refusal ends the query";
    ExitInstance();
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_TRUE(TskModuleExists("a"));
    delete TskKoraModuleGet("bad");
}

TEST_F(Modules, AbsentFromTheirFolderAreMissed) {
    profile("toolfolder = \"" + folder_.NativeText("empty") + '"');
    folder_.MakeFolder("empty");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    EXPECT_THAT(take(), ElementsAre(testing::MatchesRegex("There are no code modules in the specified tools directory "
                                                          "'.:\\\\.*\\\\empty'"),
                                    "> Loading Files ..."));
    EXPECT_EQ(TskExitCodeGet(), 0);
}

// An expiry that ends everything returns into its module's library, which so has to be there still.
class EndsEverything : public TmrTimer {
public:
    EndsEverything() : TmrTimer(TmrTypeIdle) { TmrStart(); }
    bool TmrExpiry() override {
        const auto call = answer_;
        EXPECT_TRUE(TskExitKoraQuery());
        TskExit();  // deletes this timer too
        EXPECT_EQ(call(), 42);
        return false;
    }

private:
    int (*answer_)() = reinterpret_cast<int (*)()>(TskKoraConnect(TskKoraHandleGet("a"), "a", "fixtureAnswer"));
};

TEST_F(Modules, ThatHaveGoneAreStillLoadedWhileTheyRunAndAreNotAskedAboutTheirErrors) {
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    ErrSet(TskKoraModuleGet("a"), 5, 1, nullptr);
    new EndsEverything;
    Idle(0);
    EXPECT_FALSE(TskModulesInitialized());
    take();
    EXPECT_TRUE(ErrReport());
    EXPECT_THAT(take(), ElementsAre("Unknown error occurred. Kora Module ''  Location 0x1 (1)  Reference 0x0 (0)"));
}

}  // namespace
