#pragma once

#include <string>

#include "platform/win32/Win32.h"

namespace kora::platform {

/// The window that boxes and dialogs belong to: the active one of this thread, else a visible one; null when there is
/// none.
HWND ownerWindow();

/// Whether somebody could see a window of this process. On the invisible desktop of a service it would wait for ever.
bool windowsVisible();

/// What boxes and dialogs are headed with: the product's name in the program's version record, else the program's own.
std::string applicationTitle();

/// Component objects for as long as it lives; the shell is made of them.
class Components {
public:
    Components();
    ~Components();
    Components(const Components&) = delete;
    Components& operator=(const Components&) = delete;

private:
    bool ready_;
};

}  // namespace kora::platform
