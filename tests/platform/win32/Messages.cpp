#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

std::vector<std::uintptr_t> received;

void sink(std::uint32_t receiver, std::uintptr_t value) {
    received.push_back(receiver * 1000 + value);
    if (value == 666) throw std::runtime_error("handler");
}

/// Messages beside those of windows of the same thread.
class WindowMessages : public testing::Test {
protected:
    void SetUp() override {
        received.clear();
        ASSERT_TRUE(messagesStart(&sink));
        window = CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        ASSERT_NE(window, nullptr);
        before =
            reinterpret_cast<WNDPROC>(SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&procedure)));
        messagesPump(nullptr);
        received.clear();
    }
    void TearDown() override {
        DestroyWindow(window);
        messagesStop();
    }

    static constexpr UINT kLoop = WM_USER + 1;

    static LRESULT CALLBACK procedure(HWND target, UINT message, WPARAM wide, LPARAM value) {
        if (message == kLoop) {
            // as a message box does
            MSG next;
            while (PeekMessageA(&next, nullptr, 0, 0, PM_REMOVE)) DispatchMessageA(&next);
        }
        return CallWindowProcA(before, target, message, wide, value);
    }

    HWND window = nullptr;
    static inline WNDPROC before = nullptr;
};

using Values = std::vector<std::uintptr_t>;

TEST_F(WindowMessages, InALoopOfTheSystemsBringOursToo) {
    messagesPost(0, 1);
    SendMessageA(window, kLoop, 0, 0);
    EXPECT_EQ(received, Values{1});
    EXPECT_EQ(messagesPump(nullptr), 0);
    // no wake-up is lost when ours are posted while the pump runs
    PostMessageA(window, kLoop, 0, 0);
    messagesPost(0, 2);
    EXPECT_EQ(messagesPump(nullptr), 2);
    messagesPost(0, 3);
    SendMessageA(window, kLoop, 0, 0);
    EXPECT_EQ(received, (Values{1, 2, 3}));
}

// The next pump throws it.
TEST_F(WindowMessages, KeepAnExceptionOutOfTheSystemsLoop) {
    messagesPost(0, 666);
    messagesPost(0, 7);
    SendMessageA(window, kLoop, 0, 0);
    messagesWait(0xFFFFFFFF);  // comes back at once
    EXPECT_THROW(messagesPump(nullptr), std::runtime_error);
    EXPECT_EQ(messagesPump(nullptr), 1);
    EXPECT_EQ(received, (Values{666, 7}));
}

}  // namespace
