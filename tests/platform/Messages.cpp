#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

using Received = std::vector<std::pair<std::uint32_t, std::uintptr_t>>;
constexpr std::uint32_t kForever = 0xFFFFFFFF;

class Messages : public testing::Test {
protected:
    void SetUp() override {
        received.clear();
        onReceipt = nullptr;
        start();
    }
    void TearDown() override { messagesStop(); }
    static void start() {
        ASSERT_TRUE(messagesStart([](std::uint32_t receiver, std::uintptr_t value) {
            received.emplace_back(receiver, value);
            if (onReceipt) onReceipt(value);
        }));
        EXPECT_EQ(messagesPump(nullptr), 0);
    }

    static inline Received received;
    static inline void (*onReceipt)(std::uintptr_t) = nullptr;
};

TEST_F(Messages, PostedByAHandlerWaitForTheNextPump) {
    onReceipt = [](std::uintptr_t value) { messagesPost(1, value + 1); };
    messagesWait(0);  // no longer than asked
    EXPECT_TRUE(messagesPost(2, UINTPTR_MAX));
    EXPECT_TRUE(received.empty());
    EXPECT_EQ(messagesPump(nullptr), 1);
    messagesWait(kForever);  // comes back at once: one waits
    EXPECT_EQ(messagesPump(nullptr), 1);
    EXPECT_EQ(received, (Received{{2, UINTPTR_MAX}, {1, 0}}));
}

TEST_F(Messages, OutliveAHandlerThatThrows) {
    onReceipt = [](std::uintptr_t value) {
        if (value == 1) throw std::runtime_error("handler");
    };
    for (const std::uintptr_t value : {1u, 2u, 3u}) messagesPost(1, value);
    EXPECT_THROW(messagesPump(nullptr), std::runtime_error);
    messagesWait(kForever);  // comes back at once: two are left
    EXPECT_EQ(messagesPump(nullptr), 2);
    EXPECT_EQ(received, (Received{{1, 1}, {1, 2}, {1, 3}}));
}

TEST_F(Messages, AreDroppedByTheEnd) {
    onReceipt = [](std::uintptr_t value) {
        if (value == 1) messagesStop();
    };
    messagesPost(1, 1);
    messagesPost(1, 2);
    EXPECT_EQ(messagesPump(nullptr), 1);
    EXPECT_FALSE(messagesPost(1, 3));
    EXPECT_EQ(messagesPump(nullptr), 0);
    start();
    messagesPost(1, 4);
    EXPECT_EQ(messagesPump(nullptr), 1);
    EXPECT_EQ(received, (Received{{1, 1}, {1, 4}}));
}

// Posts of several threads all arrive, each thread's in order, and every wait ends.
TEST_F(Messages, WakeTheThreadThatWaits) {
    constexpr std::uint32_t kThreads = 4;
    constexpr std::uintptr_t kEach = 2'000;
    std::vector<std::thread> threads;
    for (std::uint32_t thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([thread] {
            for (std::uintptr_t value = 0; value < kEach; ++value) EXPECT_TRUE(messagesPost(thread, value));
        });
    while (received.size() < kThreads * kEach) {
        messagesWait(kForever);
        messagesPump(nullptr);
    }
    for (std::thread& thread : threads) thread.join();
    std::uintptr_t next[kThreads] = {};
    for (const auto& [receiver, value] : received) ASSERT_EQ(value, next[receiver]++);
}

}  // namespace
