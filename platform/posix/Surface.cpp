#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <new>

#include "platform/Platform.h"

namespace kora::platform {

namespace {

// The clipboard of this process. The text is never freed by code that runs at the process's end.
struct {
    char* text = nullptr;  // null: none
    std::size_t length = 0;
} constinit clipboard;

void clipboardReplace(char* text, std::size_t length) {
    delete[] clipboard.text;
    clipboard = {text, length};
}

}  // namespace

bool clipboardOpen() { return true; }

void clipboardClose() {}

bool clipboardEmpty() {
    clipboardReplace(nullptr, 0);
    return true;
}

bool clipboardPut(std::string_view text) {
    char* kept = new (std::nothrow) char[text.size() + 1];  // an empty text is one too
    if (!kept) return false;
    text.copy(kept, text.size());
    clipboardReplace(kept, text.size());
    return true;
}

bool clipboardHasText() { return clipboard.text != nullptr; }

bool clipboardText(std::string& text) {
    if (!clipboard.text) return false;
    text.assign(clipboard.text, clipboard.length);
    return true;
}

// There is no cursor without windows.
bool showCursor(short) { return false; }

void beep() {
    if (!isatty(STDERR_FILENO)) return;
    std::fputc('\a', stderr);
    std::fflush(stderr);
}

}  // namespace kora::platform
