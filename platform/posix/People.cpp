#include "platform/Platform.h"
#include "platform/Unattended.h"

namespace kora::platform {

namespace {

constexpr int kFirstContinueButton = 1219;

}  // namespace

int showAlert(const char* text, unsigned style) {
    tellUnattended(text);
    return defaultButton(style);
}

int showContinueAlert(const char* text) {
    tellUnattended(text);
    return kFirstContinueButton;
}

void showErrorDialog(const char* text, bool& suppress, bool&) {
    tellUnattended(text);
    suppress = false;
}

void showProgress(const char* text) { tellUnattended(text); }

bool chooseFile(const std::string&, const std::string&, bool, std::string&) { return false; }

bool chooseDirectory(const std::string&, std::string&) { return false; }

// Without windows nothing has captured the mouse.
void releaseMouse() {}

}  // namespace kora::platform
