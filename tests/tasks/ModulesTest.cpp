#include <gmock/gmock.h>

#include <kora/Err.h>
#include <kora/Ini.h>
#include <kora/Tsk.h>

#include <cstdlib>
#include <filesystem>
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
    void SetUp() override {
#if !defined(_WIN32)
        setenv("HOME", folder_.nativeText().c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
#endif
        folder_.makeFolder("tools");
        folder_.write("ts.ini", "[System]\ntoolfolder = \"" + folder_.nativeText("tools") + "\"\n");
        ASSERT_TRUE(IniMainFileSet(folder_.nativeText("ts.ini").c_str()));
        add("a");
    }
    void TearDown() override {
        if (TskExitKoraQuery()) ExitInstance();
        IniMainFileSet(nullptr);
    }

    void add(const std::string& fixture, std::string as = "") {
        if (as.empty()) as = fixture + ".qzx";
        std::filesystem::copy_file(std::filesystem::path(KORA_FIXTURES) / (fixture + ".qzx"),
                                   folder_.native() / "tools" / as);
    }

    // What has been said since the last call.
    Log take() { return std::exchange(events_.log, {}); }
    // The same without progress, and without what module "a" tells, which is always there.
    Log takeOfOthers() {
        Log alerts = take();
        std::erase_if(alerts, [](const auto& text) { return text.starts_with("> ") || text.starts_with("a: "); });
        return alerts;
    }

    TestFolder folder_;
    RowOfEvents events_;
};

TEST_F(Modules, GoThroughTheirLifeInNameOrder) {
    add("b", "B.QZX");
    folder_.write("tools/c.qz", "not a module file by its name");
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    EXPECT_THAT(take(),
                ElementsAre("> Loading a.qzx", "> Loading B.QZX", "> Phase 1 initialization of a", "a: init 1",
                            "> Phase 1 initialization of b", "b: init 1", "> Phase 2 initialization of a", "a: init 2",
                            "> Phase 2 initialization of b", "b: init 2", "> Phase 3 initialization of a", "a: init 3",
                            "> Phase 3 initialization of b", "b: init 3", "> Phase 4 initialization of a", "a: init 4",
                            "> Phase 4 initialization of b", "b: init 4", "> Loading Files ...", "a: init final",
                            "b: init final"));
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
    std::filesystem::rename(folder_.native() / "tools" / "a.qzx", folder_.native() / "tools" / "z.qzx");
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
        EXPECT_TRUE(std::filesystem::remove(folder_.native() / "tools" / "bad.qzx"));
    }
}

TEST_F(Modules, ThatCannotBeLoadedAreNamedWithTheReason) {
    // The same library for another processor: the machine stands at 18 in one format, behind "PE\0\0" in the other.
    std::string foreign = folder_.read("tools/a.qzx");
    const bool windows = foreign.starts_with("MZ");
    foreign.replace(windows ? foreign.find(std::string("PE\0\0", 4)) + 4 : 18, 2, windows ? "\x64\x86" : "\x28\x00", 2);
    folder_.write("tools/foreign.qzx", foreign);
    folder_.write("tools/nothing.qzx", "");
    folder_.write("tools/text.qzx", "This is no library.\n");
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

}  // namespace
