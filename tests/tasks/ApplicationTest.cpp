#include <gmock/gmock.h>

#include <kora/File.h>
#include <kora/Ini.h>
#include <kora/Tmr.h>
#include <kora/Trace.h>
#include <kora/Tsk.h>

#include <string>
#include <vector>

#include "paths/SharedDirectories.h"
#include "tasks/Registry.h"
#include "tests/support/RecordedPresenter.h"
#include "tests/support/ScopedPlaces.h"
#include "tests/support/VirtualSlot.h"

namespace {

using kora::test::virtualSlot;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> steps;

struct HostApplication : TskApplication {
    void TskAppPrepareOnce() override { steps.push_back("prepare once"); }
    void TskAppPrepare() override { steps.push_back("prepare"); }
    bool TskAppInit() override {
        steps.push_back("init");
        if (throwing) throw 1;
        return accept;
    }
    bool TskAppStart(void* start) override {
        steps.push_back(start == this ? "start" : "start without value");
        return secondStage;
    }
    int TskAppIdle(long count) override {
        if (throwing) throw 1;
        return static_cast<int>(count) + TskApplication::TskAppIdle(count);
    }
    int TskAppPreTranslate(tagMSG* message) override {
        if (throwing) throw 1;
        return message == nullptr ? 3 : 4;
    }
    bool accept = true, secondStage = true, throwing = false;
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
    kora::test::RecordedPresenter presenter_;
    HostApplication host_;
};

TEST(TskApplication, SlotsStandInOrder) {
    using A = TskApplication;
    const int slots[] = {
        virtualSlot(&A::TskAppPrepareOnce), virtualSlot(&A::TskAppPrepare),   virtualSlot(&A::TskAppInit),
        virtualSlot(&A::TskAppStart),       virtualSlot(&A::TskAppIdle),      virtualSlot(&A::TskAppPreTranslate),
        virtualSlot(&A::TskAppWait),        virtualSlot(&A::TskAppBusy),      virtualSlot(&A::TskAppStay),
        virtualSlot(&A::TskAppQuit),        virtualSlot(&A::TskAppEnding),    virtualSlot(&A::TskAppExit),
        virtualSlot(&A::TskAppRecentAdd),   virtualSlot(&A::TskAppRecentGet), virtualSlot(&A::TskAppSettingsSave),
    };
    int expected = 1;
    for (const int slot : slots) EXPECT_EQ(slot, expected++);
}

TEST_F(Application, IsReplacedAndRestored) {
    TskApplication* own = TskGetApp();
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(TskApplicationSet(&host_), own);
    EXPECT_EQ(TskGetApp(), &host_);
    EXPECT_EQ(TskApplicationSet(nullptr), &host_);
    EXPECT_EQ(TskGetApp(), own);
    {
        HostApplication brief;
        TskApplicationSet(&brief);
    }
    EXPECT_EQ(TskGetApp(), own) << "one that has gone is not used";
}

TEST_F(Application, TakesPartInStartUpInOrder) {
    TskApplicationSet(&host_);
    TskPrepareOnceRequest();
    EXPECT_NE(Startup(&host_, nullptr), 0);
    EXPECT_THAT(take(), ElementsAre("prepare once", "prepare", "init", "start"));
    TskExitKoraQuery();
    ExitInstance();
    EXPECT_NE(Startup(nullptr, &host_), 0);
    EXPECT_THAT(take(), ElementsAre("prepare", "init", "start without value"));
    EXPECT_EQ(PreTranslateMessage(nullptr), 3);
    EXPECT_EQ(Idle(5), 5);
    EXPECT_THAT(presenter_.errors, IsEmpty());
    host_.throwing = true;
    EXPECT_EQ(PreTranslateMessage(nullptr), 0);
    EXPECT_EQ(Idle(5), 0);
    ASSERT_EQ(presenter_.errors.size(), 2U);
    EXPECT_THAT(presenter_.errors[1], testing::StartsWith("Internal Error (Exception in theApp.OnIdle, location "));
}

TEST_F(Application, MayEndStartUp) {
    TskApplicationSet(&host_);
    host_.accept = false;
    EXPECT_EQ(Startup(nullptr, nullptr), 0);
    EXPECT_FALSE(TskModulesInitialized()) << "no modules without instance initialisation";
    EXPECT_THAT(take(), ElementsAre("prepare", "init"));
    host_.accept = host_.throwing = true;
    EXPECT_EQ(Startup(nullptr, nullptr), 0);
    host_.throwing = host_.secondStage = false;
    EXPECT_EQ(Startup(nullptr, nullptr), 0);
    EXPECT_TRUE(TskModulesInitialized());
}

TEST_F(Application, QuitsWhenAskedByMessage) {
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    EXPECT_FALSE(TskGetApp()->TskAppEnding());
    TskQuitRequest();
    EXPECT_FALSE(TskGetApp()->TskAppEnding()) << "only once messages are handled";
    EXPECT_EQ(TskMessagePump(), 1);
    EXPECT_TRUE(TskGetApp()->TskAppEnding());
    EXPECT_EQ(ExitInstance(), 0);
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    EXPECT_FALSE(TskGetApp()->TskAppEnding());
}

TEST_F(Application, IsBusyWhileSomethingIsLeftToDo) {
    ASSERT_NE(Startup(nullptr, nullptr), 0);
    TskApplication& application = *TskGetApp();
    EXPECT_FALSE(application.TskAppBusy());
    application.TskAppStay(true);
    application.TskAppStay(true);
    application.TskAppStay(false);
    EXPECT_TRUE(application.TskAppBusy());
    application.TskAppStay(false);
    EXPECT_FALSE(application.TskAppBusy());
    for (const eTmrType type : {TmrTypeTimed, TmrTypeIdle, TmrTypeIdleHighPriority}) {
        TmrTimer timer(type);
        timer.TmrIntervalSet(1'000'000);
        EXPECT_FALSE(application.TskAppBusy());
        timer.TmrStart();
        EXPECT_TRUE(application.TskAppBusy());
        EXPECT_EQ(Idle(0), type == TmrTypeIdleHighPriority ? 1 : 0);
    }
    EXPECT_FALSE(application.TskAppBusy());
}

TEST_F(Application, FirstFailureIsTheExitCode) {
    EXPECT_EQ(TskExitCodeGet(), 0);
    TskExitCodeSet(0);
    TskExitCodeSet(4);
    TskExitCodeSet(5);
    EXPECT_EQ(ExitInstance(), 4);
    Startup(nullptr, nullptr);
    EXPECT_EQ(TskExitCodeGet(), 0);
}

TEST_F(Application, NotesItsBeginningAndEndInTheLog) {
    TraceToFileSet(true);
    Startup(nullptr, nullptr);
    ExitInstance();
    TraceToFileSet(false);
    const std::string log = places_.folder.read("documents/ts_error_log.txt");
    // The dump alone makes the log too long to show.
    EXPECT_NE(log.find(" - Hello!\n"), log.npos);
    EXPECT_NE(log.find(") Exit Trace\n"), log.npos);
    EXPECT_TRUE(log.ends_with(" - Goodbye!\n"));
}

TEST_F(Application, KeepsRecentFiles) {
    Startup(nullptr, nullptr);
    CStringArray before, list;
    FileGetMRUList(before);  // where options are the system's own, those of earlier runs
    for (int i = 0; i < 20; ++i) {
        std::string name = "C:\\nets\\f";
        name += std::to_string(i);
        FileAddToMRUList(name.c_str());
    }
    FileAddToMRUList("c:\\NETS\\F10");
    FileAddToMRUList("");
    FileGetMRUList(list);
    ASSERT_EQ(list.size(), 16U);
    EXPECT_EQ(list[0], "c:\\NETS\\F10");
    EXPECT_EQ(list[1], "C:\\nets\\f19");
    EXPECT_EQ(list[9], "C:\\nets\\f11");
    EXPECT_EQ(list[10], "C:\\nets\\f9");
    EXPECT_EQ(list[15], "C:\\nets\\f4");

    CString first;
    EXPECT_TRUE(GetRegOption("Recent File List", "File1", first));
    EXPECT_EQ(first, list[0]);
    TskExitKoraQuery();
    ExitInstance();
    SetRegOption("Recent File List", "File2", CString());
    Startup(nullptr, nullptr);
    CStringArray again;
    FileGetMRUList(again);
    list.erase(list.begin() + 1);
    EXPECT_EQ(again, list) << "read back at the next start, without what is empty";
    for (auto file = before.rbegin(); file != before.rend(); ++file) FileAddToMRUList(file->c_str());
}

}  // namespace
