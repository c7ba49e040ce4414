#include "platform/Unattended.h"

#include <cstdio>
#include <iterator>

namespace kora::platform {

namespace {

enum : int { kOk = 1, kCancel, kAbort, kRetry, kIgnore, kYes, kNo, kTryAgain = 10, kContinue };

// The buttons of a style's low four bits, from left to right, 0 where there are fewer.
constexpr int kButtons[][3] = {
    {kOk},                            // 0
    {kOk, kCancel},                   // 1
    {kAbort, kRetry, kIgnore},        // 2
    {kYes, kNo, kCancel},             // 3
    {kYes, kNo},                      // 4
    {kRetry, kCancel},                // 5
    {kCancel, kTryAgain, kContinue},  // 6
};

}  // namespace

void tellUnattended(const char* text) {
    std::fprintf(stderr, "%s\n", text ? text : "");
    std::fflush(stderr);
}

int defaultButton(unsigned style) {
    const unsigned set = style & 0xF, preferred = style >> 8 & 0xF;
    const int(&buttons)[3] = kButtons[set < std::size(kButtons) ? set : 0];
    return preferred < 3 && buttons[preferred] != 0 ? buttons[preferred] : buttons[0];
}

}  // namespace kora::platform
