#pragma once

/// The library's own string table: S(id, text) for each. One list for both platforms: the resource script reads it on
/// Windows, core/OwnStrings.cpp everywhere.
// clang-format off
#define KORA_LIBRARY_STRINGS(S)                                                                     \
    S(1218, "Internal Error (%s, location %x)  -  Save your work under a different name and exit and restart the program as soon as possible.") \
    S(1279, "Inch")                                                                                 \
    S(1280, "cm")
// clang-format on
