#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "strings/Bytes.h"

namespace kora {

/// Where the first byte stands that @p stops, or @p end. @p stopsIn answers the same of eight bytes at once: the high
/// bit of each that does, and perhaps of some above the lowest of them, as bytesEqual() and bytesBelow() tell it.
template <typename Byte, typename Stops, typename StopsIn>
inline const Byte* firstByte(const Byte* at, const Byte* end, Stops stops, StopsIn stopsIn) {
    static_assert(sizeof(Byte) == 1);
    if constexpr (std::endian::native == std::endian::little) {
        for (; end - at >= 8; at += 8) {
            std::uint64_t bytes;
            std::memcpy(&bytes, at, sizeof bytes);
            if (const std::uint64_t found = stopsIn(bytes); found != 0) return at + std::countr_zero(found) / 8;
        }
    }
    while (at != end && !stops(*at)) ++at;
    return at;
}

}  // namespace kora
