#include <cstdio>
#include <new>
#include <utility>

#include "platform/win32/Desktop.h"
#include "platform/win32/Messages.h"
#include "platform/win32/Win32.h"

namespace kora::platform {

namespace {

constexpr UINT kCompletion = 7490;
constexpr char kTitle[] = "NetBIOS Status";
constexpr int kTop = 10;  // of the first line

/// One for each window, and kept by it.
struct Status {
    HINSTANCE instance;
    char windowClass[16];
    std::uint32_t receiver;
    std::vector<StatusLine> (*page)(void*);
    void* context;
    Status* next;
};

struct {
    unsigned lastNumber = 0;
    Status* closed = nullptr;  // whose classes are there yet
} constinit windows;

Status* statusOf(HWND window) { return reinterpret_cast<Status*>(GetWindowLongPtrA(window, GWLP_USERDATA)); }

HWND handleOf(StatusWindow window) { return reinterpret_cast<HWND>(window); }

void keepForUnregistering(Status* status) { status->next = std::exchange(windows.closed, status); }

/// A class stays while a procedure of its window runs, which is where a window may be closed; so what remains is
/// tried again with the next one.
void unregisterClosed() {
    for (Status** link = &windows.closed; *link;) {
        Status* const status = *link;
        if (!UnregisterClassA(status->windowClass, status->instance) && GetLastError() != ERROR_CLASS_DOES_NOT_EXIST) {
            link = &status->next;
            continue;
        }
        *link = status->next;
        delete status;
    }
}

void drawLines(HDC device, const std::vector<StatusLine>& lines) {
    const int height = -MulDiv(7, GetDeviceCaps(device, LOGPIXELSY), 72);
    const HFONT font = CreateFontA(height, 0, 0, 0, FW_BOLD, FALSE, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                   CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, FIXED_PITCH | FF_MODERN, "Courier New");
    const HGDIOBJ before = font ? SelectObject(device, font) : nullptr;
    TEXTMETRICA metric = {};
    GetTextMetricsA(device, &metric);
    SetTextColor(device, GetSysColor(COLOR_WINDOWTEXT));
    SetBkMode(device, TRANSPARENT);
    for (const StatusLine& line : lines)
        TextOutA(device, line.x, kTop + line.halfLine * metric.tmHeight / 2, line.text.data(),
                 static_cast<int>(line.text.size()));
    if (before) SelectObject(device, before);
    if (font) DeleteObject(font);
}

void drawPage(HDC device, const Status& status) {
    std::vector<StatusLine> lines;
    try {
        lines = status.page(status.context);
    } catch (...) {
        holdException();
    }
    drawLines(device, lines);
}

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wide, LPARAM value) {
    Status* const status = statusOf(window);
    if (!status) return DefWindowProcA(window, message, wide, value);
    switch (message) {
        case kCompletion:
            deliverMessage(status->receiver, static_cast<std::uintptr_t>(value));  // which may close the window
            return 0;
        case WM_PAINT: {
            PAINTSTRUCT painting;
            if (const HDC device = BeginPaint(window, &painting)) drawPage(device, *status);
            EndPaint(window, &painting);
            return 0;
        }
        case WM_SYSCOMMAND:
            // The system keeps the low four bits for itself.
            if ((wide & 0xFFF0) != SC_CLOSE) break;
            [[fallthrough]];
        case WM_CLOSE:
            ShowWindow(window, SW_HIDE);
            return 0;
        case WM_NCDESTROY:
            SetWindowLongPtrA(window, GWLP_USERDATA, 0);
            keepForUnregistering(status);
            break;
        default:
            break;
    }
    return DefWindowProcA(window, message, wide, value);
}

/// A class of the window's own; its number is the first one that nobody has taken.
bool registerClass(Status& status) {
    WNDCLASSA description = {};
    description.lpfnWndProc = windowProcedure;
    description.hInstance = status.instance;
    description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    description.lpszClassName = status.windowClass;
    do {
        std::snprintf(status.windowClass, sizeof status.windowClass, "QZNET%u", ++windows.lastNumber);
        if (RegisterClassA(&description)) return true;
    } while (GetLastError() == ERROR_CLASS_ALREADY_EXISTS);
    return false;
}

HWND create(const Status& status, HWND parent) {
    return CreateWindowExA(0, status.windowClass, kTitle, WS_OVERLAPPEDWINDOW, 20, 20, 400, 500, parent, nullptr,
                           status.instance, nullptr);
}

}  // namespace

StatusWindow statusWindowOpen(unsigned long instance, std::uint32_t receiver, std::vector<StatusLine> (*page)(void*),
                              void* context) {
    unregisterClosed();
    Status* const status =
        new (std::nothrow) Status{reinterpret_cast<HINSTANCE>(instance), "", receiver, page, context, nullptr};
    if (!status) return 0;
    if (!registerClass(*status)) {
        delete status;
        return 0;
    }
    HWND window = create(*status, nullptr);
    if (!window) window = create(*status, HWND_MESSAGE);  // with no desktop to stand on it can still be posted to
    if (window) {
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(status));
    } else {
        keepForUnregistering(status);
        unregisterClosed();
    }
    return reinterpret_cast<StatusWindow>(window);
}

bool statusWindowPost(StatusWindow window, std::uintptr_t value) {
    if (!messagesStarted()) return false;
    if (PostMessageA(handleOf(window), kCompletion, 0, static_cast<LPARAM>(value))) return true;
    // The system's queue has a limit, the library's has none.
    const Status* const status = statusOf(handleOf(window));
    return status && messagesPost(status->receiver, value);
}

bool statusWindowShow(StatusWindow window) {
    const HWND handle = handleOf(window);
    if (!windowsVisible()) return false;
    InvalidateRect(handle, nullptr, TRUE);
    if (IsIconic(handle)) ShowWindow(handle, SW_RESTORE);
    // Unlike the first ShowWindow() of a process this does not do what the process was started with.
    SetWindowPos(handle, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
    SetForegroundWindow(handle);
    return IsWindowVisible(handle) != FALSE;
}

void statusWindowClose(StatusWindow window) {
    const HWND handle = handleOf(window);
    if (const Status* const status = statusOf(handle)) {
        MSG message;
        while (PeekMessageA(&message, handle, kCompletion, kCompletion, PM_REMOVE))
            deliverMessage(status->receiver, static_cast<std::uintptr_t>(message.lParam));
    }
    DestroyWindow(handle);
    unregisterClosed();
}

}  // namespace kora::platform
