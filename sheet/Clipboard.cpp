#include <kora/Win.h>

#include <cstring>
#include <new>

#include "platform/Platform.h"
#include "strings/Guarded.h"
#include "strings/SizedText.h"

using namespace kora;

namespace {

struct {
    bool open = false, forWriting = false;
} constinit clipboard;

}  // namespace

bool ClpClear() {
    if (!ClpOpen(true)) return false;
    const bool emptied = platform::clipboardEmpty();
    ClpClose();
    return emptied;
}

bool ClpOpen(bool forWriting) {
    if (clipboard.open || !platform::clipboardOpen()) return false;
    clipboard = {true, forWriting};
    return true;
}

bool ClpTextPut(const char* text, long length) {
    if (!clipboard.open || !clipboard.forWriting) return false;
    return platform::clipboardPut(textUpTo(text, length < 0 ? kUnbounded : static_cast<std::size_t>(length)));
}

bool ClpTextAvailable() { return platform::clipboardHasText(); }

bool ClpTextGet(char*& text, long& length) {
    text = nullptr;
    length = 0;
    std::string found;
    bool there = false;
    if (!clipboard.open || !guarded([&] { there = platform::clipboardText(found); }) || !there) return false;
    text = new (std::nothrow) char[found.size() + 1];
    if (!text) return false;
    std::memcpy(text, found.c_str(), found.size() + 1);
    length = static_cast<long>(found.size());
    return true;
}

void ClpTextFree(char* text) { delete[] text; }

void ClpClose() {
    if (!clipboard.open) return;
    platform::clipboardClose();
    clipboard = {};
}
