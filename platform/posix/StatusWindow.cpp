#include "platform/Platform.h"

// There are no windows, so the window is the receiver itself.
namespace kora::platform {

StatusWindow statusWindowOpen(unsigned long, std::uint32_t receiver, std::vector<StatusLine> (*)(void*), void*) {
    return receiver;
}

bool statusWindowPost(StatusWindow window, std::uintptr_t value) {
    return messagesPost(static_cast<std::uint32_t>(window), value);
}

bool statusWindowShow(StatusWindow) { return false; }

void statusWindowClose(StatusWindow) {}

}  // namespace kora::platform
