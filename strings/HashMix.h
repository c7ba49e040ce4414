#pragma once

#include <cstdint>

/// Hashes of several words: hashMixed(first) ^ second, that mixed again ^ third, and so on; hashFinished() of the last.
namespace kora {

constexpr std::uint64_t hashProduct(std::uint64_t word) { return word * 0x9E3779B97F4A7C15; }

/// The upper half of a product has the lower half's bits in it, but not the other way round.
constexpr std::uint64_t hashMixed(std::uint64_t word) { return hashProduct(word) ^ hashProduct(word) >> 32; }

/// 32 bits that all depend on every bit of @p word, so that a table may use those at either end.
constexpr std::uint32_t hashFinished(std::uint64_t word) {
    return static_cast<std::uint32_t>(hashProduct(hashMixed(word)) >> 32);
}

}  // namespace kora
