#include <gmock/gmock.h>

#include <kora/Err.h>
#include <kora/Tsk.h>

#include <array>
#include <string>
#include <vector>

#include "tasks/CommandLine.h"
#include "tests/support/RecordedPresenter.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Call = std::array<long, 5>;

std::vector<Call> calls;
bool stay = true;

bool note(long key1, long key2, long data, long events, long argument) {
    calls.push_back({key1, key2, data, events, argument});
    return stay;
}

bool raise(long, long, long, long, long) { throw 1; }

class CommandLine : public testing::Test {
protected:
    void TearDown() override {
        kora::commandLineStop();
        calls.clear();
        stay = true;
    }
    static long faultLocation() {
        unsigned long code = 0;
        void* data = nullptr;
        int textId = 0;
        ErrSevereGet(code, data, textId);
        EXPECT_EQ(code >> 12, 1U << 6 | 37U);
        return static_cast<long>(code & 0xFFF);
    }
};

TEST_F(CommandLine, ReachesSubscribersWithTheListItself) {
    EXPECT_TRUE(TskRequestCmdLineNotify("net", note, 5, true));
    EXPECT_TRUE(TskRequestCmdLineNotify("net", note, 6, true));
    EXPECT_TRUE(TskRequestCmdLineNotify("abcd", note, 7, true));
    EXPECT_TRUE(TskRequestCmdLineNotify("\xff\xff\xff\xff", note, 8, true));
    const CStringArray arguments = {"-net", "c17.blif",         "net", "/abcd", "-Net", "-netx", "-nets1", "-", "",
                                    "/",    "-\xff\xff\xff\xff"};
    const long list = reinterpret_cast<long>(&arguments);
    EXPECT_TRUE(TskCmdLine(arguments));
    EXPECT_THAT(calls, ElementsAre(Call{0, 0x74656E, 5, 1, list}, Call{0, 0x74656E, 6, 1, list},
                                   Call{0, 0x64636261, 7, 1, list}, Call{0, -1, 8, 1, list}));
    EXPECT_FALSE(TskCmdLine({"-no", "-nope", "x"}));
    EXPECT_FALSE(TskCmdLine({}));
}

TEST_F(CommandLine, SubscriptionsEnd) {
    EXPECT_TRUE(TskRequestCmdLineNotify("a", note, 1, false)) << "taking back what is not there";
    EXPECT_TRUE(TskRequestCmdLineNotify("a", note, 1, true));
    EXPECT_TRUE(TskRequestCmdLineNotify("a", note, 2, true));
    EXPECT_TRUE(TskRequestCmdLineNotify("a", note, 1, false));
    stay = false;
    EXPECT_TRUE(TskCmdLine({"-a", "-a"}));
    EXPECT_EQ(calls.size(), 1U) << "false unsubscribes at once";
    EXPECT_FALSE(TskCmdLine({"-a"}));
}

TEST_F(CommandLine, NamesWithoutCodeAreFaults) {
    for (const char* name : {"", "abcde", static_cast<const char*>(nullptr)})
        for (const bool on : {true, false}) {
            ERR(ErrLevelLowest, 9, 9, 9, nullptr, 0);
            EXPECT_FALSE(TskRequestCmdLineNotify(name, note, 0, on));
            EXPECT_EQ(faultLocation(), 520);
        }
    EXPECT_FALSE(TskRequestCmdLineNotify("a", nullptr, 0, true));
    EXPECT_EQ(faultLocation(), 528);
}

TEST_F(CommandLine, ExceptionsOfSubscribersStayInside) {
    kora::test::RecordedPresenter presenter;
    TskRequestCmdLineNotify("a", raise, 0, true);
    EXPECT_FALSE(TskCmdLine({"-a"}));
    EXPECT_EQ(presenter.errors.size(), 1U);
}

TEST_F(CommandLine, AttemptTakesBackItsOwnSubscriptionsOnly) {
    TskRequestCmdLineNotify("a", note, 1, true);
    {
        kora::CommandLineAttempt attempt;
        TskRequestCmdLineNotify("a", note, 2, true);
        TskRequestCmdLineNotify("b", note, 3, true);
        attempt.undo();
    }
    {
        kora::CommandLineAttempt kept;
        TskRequestCmdLineNotify("c", note, 4, true);
    }
    TskCmdLine({"-a", "-b", "-c"});
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0][2], 1);
    EXPECT_EQ(calls[1][2], 4);
}

}  // namespace
