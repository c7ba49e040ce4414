#include <gmock/gmock.h>

#include <kora/Test.h>
#include <kora/Tsk.h>

#include <functional>
#include <string>
#include <vector>

#include "tasks/LoadReasons.h"
#include "tasks/Registry.h"

namespace {

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
    bool TskWakeUp(const char* argument) override { return tell("wake ", argument), *argument != '\0'; }
    void TskWakeUp() override { told.push_back("wake"); }
    void TskSuspend() override { tell(TskKoraName(), " suspend"); }
    void TskResume() override { tell(TskKoraName(), " resume"); }
    void TskKoraSuspend() override { tell(TskKoraName(), " kora suspend"); }
    void TskKoraResume() override { tell(TskKoraName(), " kora resume"); }
    bool TskExitRequest() override {
        tell(TskKoraName(), " asked");
        if (onRequest) onRequest();
        return true;
    }

    static inline eTskKoraModule status;
    bool visible = false;
    std::function<void()> onRequest;

private:
    bool successful_;
};

class RegistryOfModules : public testing::Test {
protected:
    RegistryOfModules() { told.clear(); }
    ~RegistryOfModules() override { kora::registryStop(); }
    std::vector<std::string> take() { return std::exchange(told, {}); }
};

TEST_F(RegistryOfModules, LookUpsAreExactAndSeeSuccessfulModulesOnly) {
    new OwnModule("Sim", false);
    auto* sim = new OwnModule("Sim");
    new OwnModule("Sim");
    sim->TskHandleSet(77);
    EXPECT_EQ(TskKoraModuleGet("Sim"), sim);
    EXPECT_EQ(TskKoraHandleGet("Sim"), 77U);
    for (const bool visible : {true, false}) {
        sim->visible = visible;
        EXPECT_EQ(TskModuleIsVisible("Sim"), visible);
        for (const char* name : {"sim", "Si", "Simx", "", static_cast<const char*>(nullptr)})
            EXPECT_FALSE(TskModuleExists(name) || TskKoraHandleGet(name) || TskModuleIsVisible(name));
    }
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
        EXPECT_FALSE(TskKoraWakeUpByName("Other", row.argument, row.toggle));
        EXPECT_THAT(take(), ElementsAre(row.does));
    }
}

TEST_F(RegistryOfModules, OneIsActiveAndAllAreSuspended) {
    auto* a = new OwnModule("a");
    new OwnModule("none", false);
    auto* b = new OwnModule("b");
    for (TskKoraModule* module : {a, a, b, static_cast<OwnModule*>(nullptr), a}) TskActiveModuleSet(module);
    EXPECT_THAT(take(), ElementsAre("a resume", "a suspend", "b resume", "b suspend", "a resume"));
    for (const bool on : {false, true, true, false}) {
        TskSuspendSet(on);
        EXPECT_EQ(TskIsSuspended(), on);
    }
    EXPECT_THAT(take(), ElementsAre("a kora suspend", "b kora suspend", "a kora resume", "b kora resume"));
    delete a;
    EXPECT_EQ(TskActiveModuleGet(), nullptr);
}

// Whatever a module does while the registry is walked, the walk goes on with what is there.
TEST_F(RegistryOfModules, WalksSurviveTheirModules) {
    OwnModule* modules[] = {new OwnModule("a"), new OwnModule("b"), new OwnModule("c"), new OwnModule("d")};
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
    EXPECT_THAT(take(), ElementsAre("a asked", "~b", "~a", "c asked", "~c", "d asked", "~d"));
    auto* last = new OwnModule("last");
    last->onRequest = [] { new OwnModule("later"); };
    EXPECT_TRUE(TskExitKoraQuery());
    EXPECT_THAT(take(), ElementsAre("e asked", "last asked", "later asked"));
    last->onRequest = [] { kora::registryStop(); };
    EXPECT_TRUE(TskExitKoraQuery());
    EXPECT_THAT(take(), ElementsAre("e asked", "last asked", "~e", "~last", "~later"));
    EXPECT_TRUE(TskExitKoraQuery()) << "without a registry everybody agrees";

    TestPresenter presenter;
    (new OwnModule("throws"))->onRequest = [] { throw 1; };
    EXPECT_FALSE(TskExitKoraQuery());
    EXPECT_EQ(presenter.errors.size(), 1U);
}

TEST(LoadReason, Texts) {
    EXPECT_EQ(kora::loadReason(0),
              "(0): System was out of memory, executable file was corrupt, or relocations were invalid.");
    EXPECT_EQ(kora::loadReason(127), "(127): Dynamically Linked Library incompatible with this version");
    EXPECT_EQ(kora::loadReason(0xFFFFFFFF), "(-1): Unknown Error");
}

}  // namespace
