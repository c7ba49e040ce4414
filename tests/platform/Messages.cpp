#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

std::vector<std::pair<std::uint32_t, std::uintptr_t>> received;
void (*onReceipt)(std::uintptr_t) = nullptr;

void sink(std::uint32_t receiver, std::uintptr_t value) {
    received.emplace_back(receiver, value);
    if (onReceipt) onReceipt(value);
}

class Messages : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(messagesStart(&sink)); }
    void TearDown() override {
        messagesStop();
        received.clear();
        onReceipt = nullptr;
    }
    static std::vector<std::uintptr_t> values() {
        std::vector<std::uintptr_t> result;
        for (const auto& message : received) result.push_back(message.second);
        return result;
    }
    using Values = std::vector<std::uintptr_t>;
};

TEST_F(Messages, ArriveInOrderWithTheirValues) {
    EXPECT_EQ(messagesPump(nullptr), 0);
    for (std::uintptr_t value : {std::uintptr_t{5}, UINTPTR_MAX, std::uintptr_t{0}})
        EXPECT_TRUE(messagesPost(static_cast<std::uint32_t>(value + 3), value));
    EXPECT_TRUE(received.empty());
    EXPECT_EQ(messagesPump(nullptr), 3);
    EXPECT_EQ(values(), (Values{5, UINTPTR_MAX, 0}));
    EXPECT_EQ(received[1].first, 2u);
    EXPECT_EQ(messagesPump(nullptr), 0);
}

TEST_F(Messages, PostedByAHandlerWaitForTheNextPump) {
    onReceipt = [](std::uintptr_t value) { messagesPost(1, value + 1); };
    messagesPost(1, 10);
    EXPECT_EQ(messagesPump(nullptr), 1);
    messagesWait(0xFFFFFFFF);  // comes back at once: one waits
    EXPECT_EQ(messagesPump(nullptr), 1);
    EXPECT_EQ(values(), (Values{10, 11}));
}

TEST_F(Messages, KeepTheirOrderInAPumpInsideAHandler) {
    onReceipt = [](std::uintptr_t value) {
        if (value == 1) {
            messagesPost(1, 4);
            messagesPump(nullptr);
        }
    };
    for (const std::uintptr_t value : {1u, 2u, 3u}) messagesPost(1, value);
    messagesPump(nullptr);
    EXPECT_EQ(values(), (Values{1, 2, 3, 4}));
}

TEST_F(Messages, OutliveAHandlerThatThrows) {
    onReceipt = [](std::uintptr_t value) {
        if (value == 1) throw std::runtime_error("handler");
    };
    for (const std::uintptr_t value : {1u, 2u, 3u}) messagesPost(1, value);
    EXPECT_THROW(messagesPump(nullptr), std::runtime_error);
    messagesWait(0xFFFFFFFF);  // comes back at once: two are left
    EXPECT_EQ(messagesPump(nullptr), 2);
    EXPECT_EQ(values(), (Values{1, 2, 3}));
}

TEST_F(Messages, AreDroppedByTheEnd) {
    onReceipt = [](std::uintptr_t) { messagesStop(); };
    messagesPost(1, 1);
    messagesPost(1, 2);
    EXPECT_EQ(messagesPump(nullptr), 1);
    EXPECT_FALSE(messagesPost(1, 3));
    EXPECT_EQ(messagesPump(nullptr), 0);
    onReceipt = nullptr;
    ASSERT_TRUE(messagesStart(&sink));
    EXPECT_EQ(messagesPump(nullptr), 0);
    messagesPost(1, 4);
    EXPECT_EQ(messagesPump(nullptr), 1);
    EXPECT_EQ(values(), (Values{1, 4}));
}

// Posts of several threads all arrive, each thread's in order, and every wait ends.
TEST_F(Messages, WakeTheThreadThatWaits) {
    constexpr std::uint32_t kThreads = 4;
    constexpr std::uintptr_t kEach = 2'000;
    std::vector<std::thread> threads;
    for (std::uint32_t thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([thread] {
            for (std::uintptr_t value = 0; value < kEach; ++value)
                while (!messagesPost(thread + 1, value)) std::this_thread::yield();  // a full queue is refused
        });
    while (received.size() < kThreads * kEach) {
        messagesWait(0xFFFFFFFF);
        messagesPump(nullptr);
    }
    for (std::thread& thread : threads) thread.join();
    std::uintptr_t next[kThreads + 1] = {};
    for (const auto& [receiver, value] : received) {
        ASSERT_LE(receiver, kThreads);
        ASSERT_EQ(value, next[receiver]++);
    }
}

TEST_F(Messages, WaitNoLongerThanAsked) {
    messagesWait(0);
    messagesWait(1);
    EXPECT_EQ(messagesPump(nullptr), 0);
}

}  // namespace
