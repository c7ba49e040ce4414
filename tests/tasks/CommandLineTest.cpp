#include <gmock/gmock.h>

#include <kora/Tsk.h>

#include <array>
#include <vector>

#include "tasks/CommandLine.h"

namespace {

using testing::ElementsAre;
using Call = std::array<long, 5>;

std::vector<Call> calls;

bool note(long key1, long key2, long data, long events, long argument) {
    calls.push_back({key1, key2, data, events, argument});
    return true;
}

TEST(CommandLine, ReachesSubscribersWithTheListItself) {
    for (const auto& [option, data] : {std::pair("net", 5L), {"net", 6}, {"abcd", 7}, {"\xff\xff\xff\xff", 8}})
        EXPECT_TRUE(TskRequestCmdLineNotify(option, note, data, true));
    const CStringArray arguments = {"-net", "c17.blif",         "net", "/abcd", "-Net", "-netx", "-nets1", "-", "",
                                    "/",    "-\xff\xff\xff\xff"};
    const long list = reinterpret_cast<long>(&arguments);
    EXPECT_TRUE(TskCmdLine(arguments));
    EXPECT_THAT(calls, ElementsAre(Call{0, 0x74656E, 5, 1, list}, Call{0, 0x74656E, 6, 1, list},
                                   Call{0, 0x64636261, 7, 1, list}, Call{0, -1, 8, 1, list}));
    EXPECT_FALSE(TskCmdLine({"-no", "-nope", "x"}));
    kora::commandLineStop();
}

}  // namespace
