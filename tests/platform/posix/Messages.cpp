#include <gtest/gtest.h>
#include <signal.h>

#include <set>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

std::multiset<std::uintptr_t> received;
int handledOutside = 0;

TEST(Interrupts, BecomeMessagesWhileTheyAreAskedFor) {
    struct sigaction before, outside = {};
    outside.sa_handler = [](int) { ++handledOutside; };
    ASSERT_EQ(sigaction(SIGINT, &outside, &before), 0);
    ASSERT_TRUE(messagesStart([](std::uint32_t receiver, std::uintptr_t value) { received.insert(receiver + value); }));
    ASSERT_TRUE(interruptsToMessages(true) && interruptsToMessages(true));
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

}  // namespace
