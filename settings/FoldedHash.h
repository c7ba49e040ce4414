#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "strings/HashMix.h"

namespace kora {

/// A hash that is equal for texts that are equal without regard to case.
inline std::uint32_t foldedHash(std::string_view text) {
    // One bit more in every byte makes the two cases of a letter one; that it also joins other characters does not
    // matter to a hash.
    constexpr std::uint64_t kFold = 0x2020202020202020;
    const auto load = [](const char* from, std::size_t count) {
        std::uint64_t word = 0;
        std::memcpy(&word, from, count);
        return word | kFold;
    };

    std::uint64_t hash = text.size();
    const char* from = text.data();
    std::size_t left = text.size();
    for (; left > 16; from += 8, left -= 8) hash = hashMixed(hash ^ load(from, 8));
    // The last two words overlap when there are fewer bytes.
    std::uint64_t first = 0, second = 0;
    if (left >= 8) {
        first = load(from, 8);
        second = load(from + left - 8, 8);
    } else if (left >= 4) {
        first = load(from, 4);
        second = load(from + left - 4, 4);
    } else if (left > 0) {
        first = load(from, 1);
        second = load(from + left / 2, 1) << 8 | load(from + left - 1, 1);
    }
    return hashFinished(hashMixed(hash ^ first) ^ second);
}

}  // namespace kora
