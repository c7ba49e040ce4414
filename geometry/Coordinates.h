#pragma once

#include <kora/Utl.h>

#include <algorithm>
#include <cstdint>

/// Coordinates are reckoned with in 64 bits, where no sum, difference or double of two of them overflows.
namespace kora {

/// The low 32 bits.
constexpr std::int32_t wrapped(std::int64_t value) { return static_cast<std::int32_t>(value); }

constexpr bool isEmpty(const LRCT& r) { return r.top >= r.bottom || r.left >= r.right; }

constexpr std::int64_t width(const LRCT& r) { return std::int64_t{r.right} - r.left; }
constexpr std::int64_t height(const LRCT& r) { return std::int64_t{r.bottom} - r.top; }

/// Halfway between, rounded towards zero.
constexpr std::int32_t middle(std::int32_t a, std::int32_t b) { return wrapped((std::int64_t{a} + b) / 2); }

constexpr LRCT boxAround(const LRCT& a, const LRCT& b) {
    return {std::min(a.top, b.top), std::min(a.left, b.left), std::max(a.bottom, b.bottom), std::max(a.right, b.right)};
}

/// The rectangle between two opposite corners.
constexpr LRCT spanned(const LPNT& a, const LPNT& b) {
    return {std::min(a.v, b.v), std::min(a.h, b.h), std::max(a.v, b.v), std::max(a.h, b.h)};
}

}  // namespace kora
