#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <vector>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

std::vector<std::pair<std::uint32_t, std::uintptr_t>> received;
int handledOutside = 0;

TEST(Interrupts, BecomeMessagesWhileTheyAreAskedFor) {
    received.clear();
    handledOutside = 0;
    struct sigaction before, outside = {};
    outside.sa_handler = [](int) { ++handledOutside; };
    ASSERT_EQ(sigaction(SIGINT, &outside, &before), 0);
    ASSERT_TRUE(
        messagesStart([](std::uint32_t receiver, std::uintptr_t value) { received.emplace_back(receiver, value); }));
    ASSERT_TRUE(interruptsToMessages(true));
    ASSERT_TRUE(interruptsToMessages(true));
    raise(SIGINT);
    raise(SIGTERM);
    messagesPost(7, 8);
    messagesWait(0xFFFFFFFF);
    EXPECT_EQ(messagesPump(nullptr), 3);
    std::sort(received.begin(), received.end());
    EXPECT_EQ(received, (std::vector<std::pair<std::uint32_t, std::uintptr_t>>{{0, 1}, {0, 1}, {7, 8}}));
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
