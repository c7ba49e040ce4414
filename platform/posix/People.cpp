#include <cstdio>
#include <iterator>

#include "platform/Platform.h"

namespace kora::platform {

namespace {

void tell(const char* text) { std::fprintf(stderr, "%s\n", text ? text : ""); }

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

constexpr int kFirstContinueButton = 1219;

}  // namespace

int showAlert(const char* text, unsigned style) {
    tell(text);
    const unsigned set = style & 0xF, preferred = style >> 8 & 0xF;
    const int(&buttons)[3] = kButtons[set < std::size(kButtons) ? set : 0];
    return preferred < 3 && buttons[preferred] != 0 ? buttons[preferred] : buttons[0];
}

int showContinueAlert(const char* text) {
    tell(text);
    return kFirstContinueButton;
}

void showErrorDialog(const char* text, bool& suppress, bool&) {
    tell(text);
    suppress = false;
}

void showProgress(const char* text) { tell(text); }

bool chooseFile(const std::string&, const std::string&, bool, std::string&) { return false; }

bool chooseDirectory(const std::string&, std::string&) { return false; }

// Without windows nothing has captured the mouse.
void releaseMouse() {}

}  // namespace kora::platform
