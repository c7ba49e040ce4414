#pragma once

#include <kora/Win.h>

namespace kora {

/// Shows a surface's busy cursor while it lives.
class BusyCursor {
public:
    explicit BusyCursor(WinSurface& surface) : surface_(surface) {
        static constexpr short kCursors[] = {1050, 1051, 1052, 1053};
        surface_.WinBusyCursorStart(kCursors, 4);
    }
    ~BusyCursor() {
        // The work is done, whatever an override throws here.
        try {
            surface_.WinBusyCursorStop();
        } catch (...) {
        }
    }
    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;

    void next() { surface_.WinBusyCursorNext(); }

private:
    WinSurface& surface_;
};

}  // namespace kora
