#pragma once

#include <cstdint>

/// How a colour value is put together; the table in include/kora/Win.h says the same for users.
namespace kora {

inline constexpr std::uint32_t kColourFlag = 0x01000000;  // the callers' own bit
inline constexpr std::uint32_t kDirectMask = 0xFE000000;
inline constexpr std::uint32_t kDirectTag = 0x80000000;
inline constexpr std::uint32_t kRgbMask = 0x00FFFFFF;

inline constexpr std::uint32_t kForeground = 0xAA000000;
inline constexpr std::uint32_t kBackground = 0xAA000001;
inline constexpr std::uint32_t kNone = 0xAA000002;

inline constexpr std::uint32_t kBlack = 0;
inline constexpr std::uint32_t kWhite = kRgbMask;

}  // namespace kora
