#include "platform/win32/Win32.h"

namespace kora::platform {

StatusWindow statusWindowOpen(unsigned long, std::uint32_t, std::vector<StatusLine> (*)(void*), void*) { return 0; }

bool statusWindowPost(StatusWindow, std::uintptr_t) { return false; }

bool statusWindowShow(StatusWindow) { return false; }

void statusWindowClose(StatusWindow) {}

}  // namespace kora::platform
