#include <gmock/gmock.h>

#include <kora/Err.h>
#include <kora/Tsk.h>

#include <array>
#include <vector>

#include "tasks/CommandLine.h"
#include "tests/support/RecordedPresenter.h"

namespace {

using testing::ElementsAre;
using Call = std::array<long, 5>;

std::vector<Call> calls;
bool stay;

bool note(long key1, long key2, long data, long events, long argument) {
    calls.push_back({key1, key2, data, events, argument});
    return stay;
}

class CommandLine : public testing::Test {
protected:
    CommandLine() { stay = true; }
    ~CommandLine() override {
        kora::commandLineStop();
        calls.clear();
    }
};

TEST_F(CommandLine, ReachesSubscribersWithTheListItself) {
    for (const auto& [option, data] : {std::pair("net", 5L), {"net", 6}, {"abcd", 7}, {"\xff\xff\xff\xff", 8}})
        EXPECT_TRUE(TskRequestCmdLineNotify(option, note, data, true));
    const CStringArray arguments = {"-net", "c17.blif",         "net", "/abcd", "-Net", "-netx", "-nets1", "-", "",
                                    "/",    "-\xff\xff\xff\xff"};
    const long list = reinterpret_cast<long>(&arguments);
    EXPECT_TRUE(TskCmdLine(arguments));
    EXPECT_THAT(calls, ElementsAre(Call{0, 0x74656E, 5, 1, list}, Call{0, 0x74656E, 6, 1, list},
                                   Call{0, 0x64636261, 7, 1, list}, Call{0, -1, 8, 1, list}));
    EXPECT_FALSE(TskCmdLine({"-no", "-nope", "x"}));
}

TEST_F(CommandLine, SubscriptionsEnd) {
    EXPECT_TRUE(TskRequestCmdLineNotify("a", note, 1, false)) << "taking back what is not there";
    for (const bool on : {true, false}) EXPECT_TRUE(TskRequestCmdLineNotify("a", note, 1, on));
    EXPECT_TRUE(TskRequestCmdLineNotify("a", note, 2, true));
    stay = false;
    EXPECT_TRUE(TskCmdLine({"-a", "-a"}));
    EXPECT_EQ(calls.size(), 1U) << "false unsubscribes at once";
    kora::test::RecordedPresenter presenter;
    TskRequestCmdLineNotify(
        "a", [](long, long, long, long, long) -> bool { throw 1; }, 0, true);
    EXPECT_FALSE(TskCmdLine({"-a"}));
    EXPECT_EQ(presenter.errors.size(), 1U);
}

TEST_F(CommandLine, NamesWithoutCodeAreFaults) {
    const auto fault = [](const char* name, bool (*callback)(long, long, long, long, long), bool on) {
        ERR(ErrLevelLowest, 9, 9, 9, nullptr, 0);
        EXPECT_FALSE(TskRequestCmdLineNotify(name, callback, 0, on));
        unsigned long code = 0;
        void* data = nullptr;
        int textId = 0;
        ErrSevereGet(code, data, textId);
        return code - (1U << 18 | 37U << 12);
    };
    for (const char* name : {"", "abcde", static_cast<const char*>(nullptr)})
        for (const bool on : {true, false}) EXPECT_EQ(fault(name, note, on), 520U);
    EXPECT_EQ(fault("a", nullptr, true), 528U);
}

TEST_F(CommandLine, AttemptTakesBackItsOwnSubscriptionsOnly) {
    TskRequestCmdLineNotify("a", note, 1, true);
    for (const bool undo : {true, false}) {
        kora::CommandLineAttempt attempt;
        TskRequestCmdLineNotify(undo ? "a" : "c", note, 2, true);
        TskRequestCmdLineNotify("b", note, 3, undo);
        if (undo) attempt.undo();
    }
    TskCmdLine({"-a", "-b", "-c"});
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0][2], 1);
    EXPECT_EQ(calls[1][2], 2);
}

}  // namespace
