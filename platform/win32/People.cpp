#include "platform/Unattended.h"
#include "platform/win32/Desktop.h"

namespace kora::platform {

int showAlert(const char* text, unsigned style) {
    if (windowsVisible()) {
        const HWND owner = ownerWindow();
        // Without a window to belong to, the box still keeps the user from this thread's other windows.
        const int answer =
            MessageBoxA(owner, text ? text : "", applicationTitle().c_str(), owner ? style : style | MB_TASKMODAL);
        if (answer > 0) return answer;
    }
    tellUnattended(text);
    return defaultButton(style);
}

// A console program's user sees the line; a windowed program has no standard error and brings a presenter of its own.
void showProgress(const char* text) { tellUnattended(text); }

void releaseMouse() { ReleaseCapture(); }

}  // namespace kora::platform
