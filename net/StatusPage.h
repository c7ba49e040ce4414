#pragma once

#include <kora/Net.h>

#include <vector>

#include "platform/Platform.h"

namespace kora {

/// What the status window of a NetBIOS object shows: its counters in the first column, then a column for each adapter
/// that was asked for its status.
struct NetStatusPage {
    /// The lines for the window; @p object is the NetBIOS object. As many as there is memory for.
    static std::vector<platform::StatusLine> of(void* object);
    /// The same lines one below the other.
    static CString text(NetBIOS& object);
};

}  // namespace kora
