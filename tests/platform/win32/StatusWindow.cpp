#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;
StatusWindow window;
std::vector<std::uintptr_t> received;

void sink(std::uint32_t receiver, std::uintptr_t value) {
    received.push_back(receiver * 100 + value);
    if (value == 13) statusWindowClose(window);
    if (value == 66) throw std::runtime_error("handler");
}

std::vector<StatusLine> page(void*) { throw std::runtime_error("page"); }

HWND open() { return reinterpret_cast<HWND>(window = statusWindowOpen(ownModule(), 7, page, nullptr)); }

TEST(StatusWindow, StandsHiddenUntilItIsShown) {
    char before[16] = "", name[16] = "", title[64] = "";
    GetClassNameA(open(), before, 16), statusWindowClose(window);
    EXPECT_FALSE(UnregisterClassA(before, reinterpret_cast<HINSTANCE>(ownModule())));
    const HWND handle = open();
    GetClassNameA(handle, name, 16), GetWindowTextA(handle, title, 64);
    EXPECT_TRUE(std::string(name).starts_with("QZNET") && std::string(name).find_last_not_of("0123456789") == 4);
    EXPECT_STRNE(name, before);
    EXPECT_STREQ(title, "NetBIOS Status");
    RECT place = {};
    GetWindowRect(handle, &place);
    EXPECT_TRUE(place.left == 20 && place.top == 20 && place.right == 420 && place.bottom == 520);
    const auto shown = [&] { return (GetWindowLongA(handle, GWL_STYLE) & WS_VISIBLE) != 0; };
    EXPECT_FALSE(shown());
    EXPECT_TRUE(statusWindowShow(window) == (IsWindowVisible(handle) != FALSE) && shown());
    SendMessageA(handle, WM_SYSCOMMAND, SC_CLOSE + 5, 0);
    EXPECT_FALSE(shown());
    statusWindowClose(window);
}

// The system's queue has room for 10,000; Wine's has no limit.
TEST(StatusWindow, LosesNothingThatIsPosted) {
    ASSERT_TRUE(messagesStart(sink));
    open(), received.clear();
    for (unsigned i = 1; i < 12'000; ++i) statusWindowPost(window, 100 + i);
    std::thread([] { statusWindowPost(window, 1); }).join();
    while (received.size() < 12'000 && messagesPump(nullptr) > 0) continue;
    EXPECT_EQ(received.size(), 12'000u);
    // closing hands out what waits, and keeps an exception for the next pump; a handler may close, too
    received.clear(), statusWindowPost(window, 66), statusWindowPost(window, 3), statusWindowClose(window);
    EXPECT_THROW(messagesPump(nullptr), std::runtime_error);
    open(), statusWindowPost(window, 13), statusWindowPost(window, 5), messagesPump(nullptr);
    EXPECT_EQ(received, (std::vector<std::uintptr_t>{766, 703, 713, 705}));
    SendMessageA(open(), WM_PAINT, 0, 0);  // the page throws
    EXPECT_THROW(messagesPump(nullptr), std::runtime_error);
    messagesStop();
    EXPECT_FALSE(statusWindowPost(window, 6));
    statusWindowClose(window);
}

}  // namespace
