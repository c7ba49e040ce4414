#include "platform/win32/Messages.h"

#include "platform/win32/Win32.h"

#include <atomic>
#include <exception>
#include <new>

namespace kora::platform {

namespace {

// The queue is the library's own, so that it has no limit and a pump knows what waited when it began; the system's
// queue only carries the wake-up for it.

constexpr UINT kWake = WM_APP;
constexpr char kWindowClass[] = "KoraMessages";

struct Posted {
    Posted* next;
    std::uint32_t serial;  // in the order of taking
    std::uint32_t receiver;
    std::uintptr_t value;
};

struct {
    std::atomic<HWND> window = nullptr;     // message-only; null while messages are not started
    std::atomic<Posted*> newest = nullptr;  // from every thread, newest first
    bool interrupts = false;
    // The rest belongs to the user-interface thread.
    MessageSink sink = nullptr;
    DWORD thread = 0;
    Posted* first = nullptr;  // taken from above, in the order of posting
    Posted* last = nullptr;
    std::uint32_t taken = 0;
    std::exception_ptr* thrown = nullptr;  // within a window's procedure
} constinit messages;

void takePosted() {
    Posted* newest = messages.newest.exchange(nullptr);
    Posted* oldest = nullptr;
    while (newest) {
        Posted* const before = newest->next;
        newest->next = oldest;
        oldest = newest;
        newest = before;
    }
    while (oldest) {
        oldest->serial = ++messages.taken;
        (messages.first ? messages.last->next : messages.first) = oldest;
        messages.last = oldest;
        oldest = oldest->next;
    }
}

Posted removeFirst() {
    Posted* const posted = messages.first;
    const Posted copy = *posted;
    messages.first = posted->next;
    delete posted;
    return copy;
}

void dropAll() {
    takePosted();
    while (messages.first) removeFirst();
}

/// Handles what was posted up to now and answers how many that were. The sink may run a message loop that handles
/// later messages first, and it may stop the messages.
int handlePosted() {
    takePosted();
    const std::uint32_t end = messages.taken;
    int handled = 0;
    while (messages.first && static_cast<std::int32_t>(messages.first->serial - end) <= 0) {
        const Posted posted = removeFirst();
        ++handled;
        messages.sink(posted.receiver, posted.value);
    }
    return handled;
}

/// Message boxes and dialogs have loops of their own, through which the wake-up comes here. No exception may pass
/// through them, so it waits for the next pump.
LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wide, LPARAM value) {
    if (message != kWake) return DefWindowProcA(window, message, wide, value);
    try {
        handlePosted();
    } catch (...) {
        holdException();
    }
    return 0;
}

void rethrowHeld() {
    if (!messages.thrown) return;
    const std::exception_ptr thrown = *messages.thrown;
    delete messages.thrown;
    messages.thrown = nullptr;
    std::rethrow_exception(thrown);
}

bool onMessageThread() { return messages.window.load() && messages.thread == GetCurrentThreadId(); }

BOOL WINAPI interrupted(DWORD event) {
    if (!messagesPost(0, 1)) return FALSE;
    // When the console is closed the system ends the process as soon as this returns; the user-interface thread gets
    // the time that is left.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
    return TRUE;
}

}  // namespace

bool messagesStarted() noexcept { return messages.window.load() != nullptr; }

void deliverMessage(std::uint32_t receiver, std::uintptr_t value) noexcept {
    if (!messagesStarted()) return;
    try {
        messages.sink(receiver, value);
    } catch (...) {
        holdException();
    }
}

void holdException() noexcept {
    if (!messages.thrown) messages.thrown = new (std::nothrow) std::exception_ptr(std::current_exception());
}

bool messagesStart(MessageSink sink) {
    if (!sink) return false;
    if (messages.window.load()) {
        if (!onMessageThread()) return false;
        messages.sink = sink;
        return true;
    }
    const auto instance = reinterpret_cast<HINSTANCE>(ownModule());
    WNDCLASSA description = {};
    description.lpfnWndProc = windowProcedure;
    description.hInstance = instance;
    description.lpszClassName = kWindowClass;
    if (!RegisterClassA(&description) && GetLastError() != ERROR_CLASS_ALREADY_EXISTS) return false;
    const HWND window = CreateWindowExA(0, kWindowClass, "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, instance, nullptr);
    if (!window) return false;
    dropAll();
    messages.sink = sink;
    messages.thread = GetCurrentThreadId();
    messages.window = window;
    return true;
}

void messagesStop() {
    if (!onMessageThread()) return;
    DestroyWindow(messages.window.exchange(nullptr));
    UnregisterClassA(kWindowClass, reinterpret_cast<HINSTANCE>(ownModule()));
    dropAll();
    delete messages.thrown;
    messages.thrown = nullptr;
}

bool messagesPost(std::uint32_t receiver, std::uintptr_t value) {
    const HWND window = messages.window.load();
    if (!window) return false;
    Posted* const posted = new (std::nothrow) Posted{nullptr, 0, receiver, value};
    if (!posted) return false;
    Posted* before = messages.newest.load();
    do posted->next = before;
    while (!messages.newest.compare_exchange_weak(before, posted));
    // The first one wakes the thread. When the system's queue is full, the thread has no need of that.
    if (!before) PostMessageA(window, kWake, 0, 0);
    return true;
}

int messagesPump(int (*translate)(tagMSG*)) {
    if (!onMessageThread()) return 0;
    rethrowHeld();
    const DWORD begin = GetTickCount();
    int handled = handlePosted();
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == kWake && message.hwnd == messages.window.load()) continue;
        ++handled;
        if (message.message == WM_QUIT) {
            if (messages.sink) messages.sink(0, 1);
            break;
        }
        if (!translate || !translate(&message)) {
            TranslateMessage(&message);
            DispatchMessageA(&message);
        }
        rethrowHeld();
        // Posted since the pump began: a window that keeps posting to itself must not hold it for ever.
        if (static_cast<LONG>(message.time - begin) > 0) break;
    }
    // Wake-ups were skipped above; what came meanwhile needs one, if only in the loop of a message box.
    if (const HWND window = messages.window.load(); window && messages.newest.load()) PostMessageA(window, kWake, 0, 0);
    return handled;
}

void messagesWait(std::uint32_t milliseconds) {
    if (milliseconds == INFINITE && !messages.window.load()) return;  // nothing could ever end it
    if (onMessageThread() && (messages.first || messages.newest.load() || messages.thrown)) return;
    MsgWaitForMultipleObjectsEx(0, nullptr, milliseconds, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
}

bool interruptsToMessages(bool on) {
    if (on == messages.interrupts) return true;
    if (!SetConsoleCtrlHandler(interrupted, on)) return false;
    messages.interrupts = on;
    return true;
}

}  // namespace kora::platform
