#include <gmock/gmock.h>

#include <kora/Tsk.h>

#include <functional>
#include <string>
#include <vector>

#include "tasks/LoadReasons.h"
#include "tasks/Registry.h"
#include "tests/support/RecordedPresenter.h"
#include "tests/support/VirtualSlot.h"

namespace {

using kora::test::virtualSlot;
using testing::ElementsAre;

std::vector<std::string> told;

void tell(std::string what, const char* more) { told.push_back(what += more); }

// A module of this program, which takes part unless it is told not to.
class OwnModule : public TskKoraModule {
public:
    explicit OwnModule(const char* name, bool successful = true)
        : TskKoraModule(status, name, true, false), successful_(successful) {}
    ~OwnModule() override { tell("~", TskKoraName()); }
    bool TskInitSuccessful() override { return successful_; }
    bool TskVisible() override { return visible; }
    void TskHide() override { told.push_back("hide"); }
    bool TskWakeUp(const char* argument) override {
        tell("wake ", argument);
        return *argument != '\0';
    }
    void TskWakeUp() override { told.push_back("wake"); }
    void TskSuspend() override { tell(TskKoraName(), " suspend"); }
    void TskResume() override { tell(TskKoraName(), " resume"); }
    void TskKoraSuspend() override { tell(TskKoraName(), " kora suspend"); }
    void TskKoraResume() override { tell(TskKoraName(), " kora resume"); }
    bool TskExitRequest() override {
        tell(TskKoraName(), " exit request");
        if (onRequest) onRequest();
        return true;
    }

    eTskKoraModule status = TskKoraModuleFailed;
    bool visible = false;
    std::function<void()> onRequest;

private:
    bool successful_;
};

class RegistryOfModules : public testing::Test {
protected:
    void SetUp() override { told.clear(); }
    void TearDown() override { kora::registryStop(); }
    std::vector<std::string> take() { return std::exchange(told, {}); }
};

TEST(TskKoraModule, SlotsStandInOrder) {
    using M = TskKoraModule;
    const int slots[] = {
        virtualSlot(&M::TskHandleGet),
        virtualSlot(&M::TskHandleSet),
        virtualSlot(&M::TskInit1),
        virtualSlot(&M::TskInit2),
        virtualSlot(&M::TskInit3),
        virtualSlot(&M::TskInit4),
        virtualSlot(&M::TskInitFinal),
        virtualSlot(&M::TskInitFile),
        virtualSlot(&M::TskSuspend),
        virtualSlot(&M::TskResume),
        virtualSlot(&M::TskKoraSuspend),
        virtualSlot(&M::TskKoraResume),
        virtualSlot(&M::TskExitRequest),
        virtualSlot(&M::TskExit1),
        virtualSlot(&M::TskExit2),
        virtualSlot(&M::TskErrHandler),
        virtualSlot(&M::TskKoraName),
        virtualSlot(&M::TskFileName),
        virtualSlot(&M::TskInitSuccessful),
        virtualSlot(&M::TskAwaken),
        virtualSlot<bool (M::*)(const char*)>(&M::TskWakeUp),
        virtualSlot<void (M::*)()>(&M::TskWakeUp),
        virtualSlot(&M::TskVisible),
        virtualSlot(&M::TskHide),
    };
    int expected = 1;
    for (const int slot : slots) EXPECT_EQ(slot, expected++);
}

TEST_F(RegistryOfModules, ConstructorAndDefaults) {
    EXPECT_FALSE(TskModulesInitialized());
    eTskKoraModule status = TskKoraModuleFailed;
    TskKoraModule* plain = new TskKoraModule(status, nullptr, true, true);
    EXPECT_EQ(status, TskKoraModuleOk);
    EXPECT_TRUE(TskModulesInitialized());
    EXPECT_STREQ(plain->TskKoraName(), "");
    EXPECT_STREQ(plain->TskFileName(), "");
    EXPECT_EQ(plain->TskHandleGet(), 0U);
    EXPECT_FALSE(plain->TskInitSuccessful());
    EXPECT_TRUE(plain->TskAwaken());
    EXPECT_TRUE(plain->TskInit1() && plain->TskInit4() && plain->TskInitFinal() && plain->TskExitRequest());
    EXPECT_FALSE(plain->TskErrHandler() || plain->TskVisible());
    EXPECT_EQ(TskKoraModuleGet(""), nullptr);
}

TEST_F(RegistryOfModules, LookUpsAreExactAndSeeSuccessfulModulesOnly) {
    new OwnModule("Sim", false);
    auto* sim = new OwnModule("Sim");
    new OwnModule("Sim");
    sim->TskHandleSet(77);
    EXPECT_EQ(TskKoraModuleGet("Sim"), sim);
    EXPECT_EQ(TskKoraHandleGet("Sim"), 77U);
    for (const char* name : {"sim", "Si", "Simx", "", static_cast<const char*>(nullptr)}) {
        EXPECT_FALSE(TskModuleExists(name));
        EXPECT_EQ(TskKoraHandleGet(name), 0U);
    }
    EXPECT_FALSE(TskModuleIsVisible("Sim"));
    sim->visible = true;
    EXPECT_TRUE(TskModuleIsVisible("Sim"));
    EXPECT_FALSE(TskModuleIsVisible("sim"));
}

TEST_F(RegistryOfModules, WakeUp) {
    auto* sim = new OwnModule("Sim");
    const struct {
        bool visible, toggle;
        const char* argument;
        bool answer;
        const char* does;
    } rows[] = {
        {true, true, "x", true, "hide"},      {true, true, nullptr, true, "hide"}, {true, false, "x", true, "wake x"},
        {false, true, "x", true, "wake x"},   {false, false, "", false, "wake "},  {true, false, nullptr, true, "wake"},
        {false, true, nullptr, true, "wake"},
    };
    for (const auto& row : rows) {
        sim->visible = row.visible;
        EXPECT_EQ(TskKoraWakeUpByName("Sim", row.argument, row.toggle), row.answer);
        EXPECT_THAT(take(), ElementsAre(row.does));
    }
    EXPECT_FALSE(TskKoraWakeUpByName("Other", "x", true));
    EXPECT_THAT(take(), ElementsAre());
}

TEST_F(RegistryOfModules, OneIsActive) {
    auto* a = new OwnModule("a");
    auto* b = new OwnModule("b");
    EXPECT_EQ(TskActiveModuleGet(), nullptr);
    TskActiveModuleSet(a);
    TskActiveModuleSet(a);
    TskActiveModuleSet(b);
    TskActiveModuleSet(nullptr);
    EXPECT_THAT(take(), ElementsAre("a resume", "a suspend", "b resume", "b suspend"));
    TskActiveModuleSet(a);
    delete a;
    EXPECT_EQ(TskActiveModuleGet(), nullptr);
}

TEST_F(RegistryOfModules, SuspendingReachesAllOnce) {
    new OwnModule("a");
    new OwnModule("none", false);
    new OwnModule("b");
    EXPECT_FALSE(TskIsSuspended());
    for (const bool on : {true, true, false, false}) {
        TskSuspendSet(on);
        EXPECT_EQ(TskIsSuspended(), on);
    }
    EXPECT_THAT(take(), ElementsAre("a kora suspend", "b kora suspend", "a kora resume", "b kora resume"));
}

// Whatever a module does while the registry is walked, the walk goes on with what is there.
TEST_F(RegistryOfModules, WalksSurviveTheirModules) {
    OwnModule* modules[4];
    for (int i = 0; i < 4; ++i) modules[i] = new OwnModule(std::string(1, static_cast<char>('a' + i)).c_str());
    modules[0]->onRequest = [&] {
        delete modules[1];
        delete modules[0];
    };
    modules[2]->onRequest = [&] { delete modules[2]; };
    modules[3]->onRequest = [&] {
        delete modules[3];
        new OwnModule("e");
    };
    EXPECT_TRUE(TskExitKoraQuery());
    EXPECT_THAT(take(), ElementsAre("a exit request", "~b", "~a", "c exit request", "~c", "d exit request", "~d"));
    EXPECT_TRUE(TskModuleExists("e"));

    auto* last = new OwnModule("last");
    last->onRequest = [] { new OwnModule("later"); };
    EXPECT_TRUE(TskExitKoraQuery());
    EXPECT_THAT(take(), ElementsAre("e exit request", "last exit request", "later exit request"));
    last->onRequest = [] { kora::registryStop(); };
    EXPECT_TRUE(TskExitKoraQuery());
    EXPECT_THAT(take(), ElementsAre("e exit request", "last exit request", "~e", "~last", "~later"));
    EXPECT_TRUE(TskExitKoraQuery()) << "without a registry everybody agrees";
}

TEST_F(RegistryOfModules, QueryThatThrowsIsRefused) {
    kora::test::RecordedPresenter presenter;
    auto* module = new OwnModule("a");
    module->onRequest = [] { throw 1; };
    EXPECT_FALSE(TskExitKoraQuery());
    EXPECT_EQ(presenter.errors.size(), 1U);
}

TEST(LoadReason, Texts) {
    EXPECT_EQ(kora::loadReason(0),
              "(0): System was out of memory, executable file was corrupt, or relocations were invalid.");
    EXPECT_EQ(kora::loadReason(3), "(3): Path was not found.");
    EXPECT_EQ(kora::loadReason(21), "(21): Application requires Microsoft Windows 32-bit extensions");
    EXPECT_EQ(kora::loadReason(127), "(127): Dynamically Linked Library incompatible with this version");
    EXPECT_EQ(kora::loadReason(1), "(1): Unknown Error");
    EXPECT_EQ(kora::loadReason(0xFFFFFFFF), "(-1): Unknown Error");
}

}  // namespace
