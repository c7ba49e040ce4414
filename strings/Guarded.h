#pragma once

#include <exception>

namespace kora {

/// Does @p work; false when the standard library gave up in it (for want of memory, as a rule). For exported
/// operations, which no exception may leave.
template <class Work>
bool guarded(Work&& work) noexcept {
    try {
        work();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace kora
