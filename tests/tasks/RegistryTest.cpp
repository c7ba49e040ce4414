#include <gmock/gmock.h>

#include <kora/Tsk.h>

#include <functional>
#include <string>
#include <vector>

#include "tasks/Registry.h"
#include "tests/support/RecordedPresenter.h"

namespace {

using testing::ElementsAre;

std::vector<std::string> told;

void tell(std::string what, const char* more) { told.push_back(what += more); }

// A module of this program, which takes part.
class OwnModule : public TskKoraModule {
public:
    explicit OwnModule(const char* name) : TskKoraModule(status, name, true, false) {}
    ~OwnModule() override { tell("~", TskKoraName()); }
    bool TskInitSuccessful() override { return true; }
    bool TskExitRequest() override {
        tell(TskKoraName(), " asked");
        if (onRequest) onRequest();
        return true;
    }

    static inline eTskKoraModule status;
    std::function<void()> onRequest;
};

// Whatever a module does while the registry is walked, the walk goes on with what is there.
TEST(RegistryOfModules, WalksSurviveTheirModules) {
    const auto take = [] { return std::exchange(told, {}); };
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

    kora::test::RecordedPresenter presenter;
    (new OwnModule("throws"))->onRequest = [] { throw 1; };
    EXPECT_FALSE(TskExitKoraQuery());
    EXPECT_EQ(presenter.errors.size(), 1U);
    kora::registryStop();
}

}  // namespace
