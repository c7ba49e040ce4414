#include <gmock/gmock.h>

#include <kora/File.h>
#include <kora/Ini.h>
#include <kora/Test.h>
#include <kora/Tmr.h>
#include <kora/Trace.h>
#include <kora/Tsk.h>

#include <string>
#include <vector>

#include "paths/SharedDirectories.h"
#include "tasks/Registry.h"
#include "tests/support/ScopedPlaces.h"

namespace {

using testing::ElementsAre;

std::vector<std::string> steps;

struct HostApplication : TskApplication {
    void TskAppPrepareOnce() override { steps.push_back("prepare once"); }
    void TskAppPrepare() override { steps.push_back("prepare"); }
    bool TskAppInit() override {
        steps.push_back("init");
        return true;
    }
    bool TskAppStart(void* start) override {
        steps.push_back(start == this ? "start" : "start without value");
        return true;
    }
    int TskAppIdle(long count) override {
        if (throwing) throw 1;
        return static_cast<int>(count) + TskApplication::TskAppIdle(count);
    }
    int TskAppPreTranslate(tagMSG* message) override {
        if (throwing) throw 1;
        return message == nullptr ? 3 : 4;
    }
    bool throwing = false;
};

class Application : public testing::Test {
protected:
    Application() { kora::pathsStop(); }
    ~Application() override {
        TskApplicationSet(nullptr);
        TskExitKoraQuery();
        ExitInstance();
        kora::pathsStop();
        steps.clear();
    }
    std::vector<std::string> take() { return std::exchange(steps, {}); }

    kora::test::ScopedPlaces places_;
    TestPresenter presenter_;
    HostApplication host_;
};

TEST_F(Application, OfTheHostTakesPartInOrder) {
    TskApplication* own = TskGetApp();
    EXPECT_EQ(TskApplicationSet(&host_), own);
    TskPrepareOnceRequest();
    EXPECT_NE(Startup(&host_, nullptr), 0);
    EXPECT_THAT(take(), ElementsAre("prepare once", "prepare", "init", "start"));
    TskExitKoraQuery();
    ExitInstance();
    EXPECT_NE(Startup(nullptr, &host_), 0);
    EXPECT_THAT(take(), ElementsAre("prepare", "init", "start without value"));
    EXPECT_EQ(PreTranslateMessage(nullptr), 3);
    EXPECT_EQ(Idle(5), 5);
    EXPECT_THAT(presenter_.errors, ElementsAre());
    host_.throwing = true;
    EXPECT_EQ(PreTranslateMessage(nullptr), 0);
    EXPECT_EQ(Idle(5), 0);
    ASSERT_EQ(presenter_.errors.size(), 2U);
    EXPECT_THAT(presenter_.errors[1], testing::StartsWith("Internal Error (Exception in theApp.OnIdle, location "));
    {
        HostApplication brief;
        EXPECT_EQ(TskApplicationSet(&brief), &host_);
    }
    EXPECT_EQ(TskGetApp(), own) << "one that has gone is not used";
}

TEST_F(Application, IsBusyWhileSomethingIsLeftToDoAndQuitsByMessage) {
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    TskApplication& application = *TskGetApp();
    EXPECT_FALSE(application.TskAppBusy());
    for (const bool on : {true, true, false}) application.TskAppStay(on);
    EXPECT_TRUE(application.TskAppBusy());
    application.TskAppStay(false);
    for (const eTmrType type : {TmrTypeTimed, TmrTypeIdle, TmrTypeIdleHighPriority}) {
        TmrTimer timer(type);
        timer.TmrIntervalSet(1'000'000);
        EXPECT_FALSE(application.TskAppBusy());
        timer.TmrStart();
        EXPECT_TRUE(application.TskAppBusy());
        EXPECT_EQ(Idle(0), type == TmrTypeIdleHighPriority ? 1 : 0);
    }
    TskQuitRequest();
    EXPECT_FALSE(application.TskAppBusy() || application.TskAppEnding()) << "only once messages are handled";
    EXPECT_EQ(TskMessagePump(), 1);
    EXPECT_TRUE(application.TskAppEnding());
    for (const int code : {0, 4, 5}) TskExitCodeSet(code);
    EXPECT_EQ(ExitInstance(), 4) << "the first failure";
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    EXPECT_FALSE(application.TskAppEnding() || TskExitCodeGet());
}

TEST_F(Application, NotesItsBeginningAndEndInTheLog) {
    TraceToFileSet(true);
    Startup(nullptr, nullptr);
    ExitInstance();
    TraceToFileSet(false);
    const std::string log = places_.folder.Read("documents/ts_error_log.txt");
    // The dump alone makes the log too long to show.
    EXPECT_NE(log.find(" - Hello!\n"), log.npos);
    EXPECT_NE(log.find(") Exit Trace\n"), log.npos);
    EXPECT_TRUE(log.ends_with(" - Goodbye!\n"));
}

TEST_F(Application, KeepsRecentFiles) {
    Startup(nullptr, nullptr);
    CStringArray before, list, again;
    FileGetMRUList(before);  // where options are the system's own, those of earlier runs
    CStringArray expected = {"c:\\NETS\\F10"};
    for (int i = 0; i < 20; ++i) {
        std::string name = "C:\\nets\\f";
        name += std::to_string(i);
        FileAddToMRUList(name.c_str());
        if (i >= 4 && i != 10) expected.insert(expected.begin() + 1, name);
    }
    FileAddToMRUList("c:\\NETS\\F10");
    FileAddToMRUList("");
    FileGetMRUList(list);
    EXPECT_EQ(list, expected);
    CString first;
    EXPECT_TRUE(GetRegOption("Recent File List", "File1", first));
    EXPECT_EQ(first, expected[0]);
    TskExitKoraQuery();
    ExitInstance();
    SetRegOption("Recent File List", "File2", CString());
    Startup(nullptr, nullptr);
    FileGetMRUList(again);
    expected.erase(expected.begin() + 1);
    EXPECT_EQ(again, expected) << "read back at the next start, without what is empty";
    for (auto file = before.rbegin(); file != before.rend(); ++file) FileAddToMRUList(file->c_str());
}

}  // namespace
