#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <set>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

std::multiset<std::uintptr_t> received;
int handledOutside = 0;

bool start() {
    return messagesStart([](std::uint32_t receiver, std::uintptr_t value) { received.insert(receiver + value); });
}

TEST(Interrupts, BecomeMessagesWhileTheyAreAskedFor) {
    struct sigaction before, outside = {};
    outside.sa_handler = [](int) { ++handledOutside; };
    ASSERT_EQ(sigaction(SIGINT, &outside, &before), 0);
    ASSERT_TRUE(start() && interruptsToMessages(true) && interruptsToMessages(true));
    raise(SIGINT);
    raise(SIGTERM);
    messagesPost(7, 8);
    messagesWait(0xFFFFFFFF);
    EXPECT_EQ(messagesPump(nullptr), 3);
    EXPECT_EQ(received, (std::multiset<std::uintptr_t>{1, 1, 15}));
    EXPECT_EQ(messagesPump(nullptr), 0);
    EXPECT_EQ(handledOutside, 0);

    ASSERT_TRUE(interruptsToMessages(false));
    raise(SIGINT);
    EXPECT_EQ(handledOutside, 1);
    EXPECT_EQ(messagesPump(nullptr), 0);
    messagesStop();
    sigaction(SIGINT, &before, nullptr);
}

// What people are told must not end up in a descriptor of the library's.
TEST(MessagesDeathTest, LeaveClosedStandardStreamsClosed) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            for (int stream = 0; stream < 3; ++stream) close(stream);
            showProgress("to nobody");
            _exit(start() && messagesPost(1, 2) && fcntl(0, F_GETFD) + fcntl(1, F_GETFD) + fcntl(2, F_GETFD) == -3);
        },
        testing::ExitedWithCode(1), "");
}

}  // namespace
