#pragma once

#include <kora/Kora.h>

/// @file
/// Points and rectangles, and what kind of system this is.

/// A point: vertical first, then horizontal.
struct LPNT {
    std::int32_t v, h;
};

/// A rectangle. Empty when top >= bottom or left >= right.
struct LRCT {
    std::int32_t top, left, bottom, right;
};

// Modules hold and store both as they lie in memory.
static_assert(sizeof(LPNT) == 8);
static_assert(sizeof(LRCT) == 16);

/// The kind of system the library runs on: 3 on Windows, 0 on POSIX.
KORA_API int UtlOS();
