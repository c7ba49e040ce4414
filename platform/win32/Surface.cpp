#include <cstring>

#include "platform/win32/Win32.h"

namespace kora::platform {

namespace {

constexpr short kFirstSystemCursor = 32512;

// Cursors by the last bits of their numbers, so that an animated one finds its turns without searching.
struct LoadedCursor {
    short number;  // 0 is nobody's
    HCURSOR cursor;
};
constinit LoadedCursor loadedCursors[16] = {};

HCURSOR loadedCursor(short number) {
    LoadedCursor& place = loadedCursors[static_cast<unsigned>(number) % 16];
    if (place.number != number) {
        const HINSTANCE owner = number < kFirstSystemCursor ? reinterpret_cast<HINSTANCE>(ownModule()) : nullptr;
        place = {number, LoadCursorA(owner, MAKEINTRESOURCEA(number))};
    }
    return place.cursor;
}

// An emptied clipboard takes data from a window alone.
constinit HWND clipboardWindow = nullptr;

}  // namespace

bool clipboardOpen() {
    clipboardWindow = CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    if (clipboardWindow != nullptr && OpenClipboard(clipboardWindow)) return true;
    if (clipboardWindow != nullptr) DestroyWindow(clipboardWindow);
    clipboardWindow = nullptr;
    return false;
}

void clipboardClose() {
    CloseClipboard();
    DestroyWindow(clipboardWindow);
    clipboardWindow = nullptr;
}

bool clipboardEmpty() { return EmptyClipboard() != FALSE; }

bool clipboardPut(std::string_view text) {
    const HGLOBAL block = GlobalAlloc(GMEM_MOVEABLE, text.size() + 1);
    if (!block) return false;
    if (char* kept = static_cast<char*>(GlobalLock(block))) {
        text.copy(kept, text.size());
        kept[text.size()] = '\0';
        GlobalUnlock(block);
        if (SetClipboardData(CF_TEXT, block)) return true;  // the block is the system's now
    }
    GlobalFree(block);
    return false;
}

bool clipboardHasText() { return IsClipboardFormatAvailable(CF_TEXT) != FALSE; }

bool clipboardText(std::string& text) {
    const HGLOBAL block = GetClipboardData(CF_TEXT);
    if (!block) return false;
    struct Locked {
        HGLOBAL block;
        const char* text = static_cast<const char*>(GlobalLock(block));
        ~Locked() {
            if (text) GlobalUnlock(block);
        }
    } const locked{block};
    if (!locked.text) return false;
    text.assign(locked.text, strnlen(locked.text, GlobalSize(block)));
    return true;
}

bool showCursor(short number) {
    const HCURSOR cursor = number > 0 ? loadedCursor(number) : nullptr;
    if (cursor) SetCursor(cursor);
    return cursor != nullptr;
}

void beep() { MessageBeep(MB_OK); }

}  // namespace kora::platform
