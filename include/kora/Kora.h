#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// @file
/// The export macro and the types that every family shares.

/// KORA_API marks what the shared library promises. KORA_STATIC links the library's objects directly;
/// KORA_BUILDING is set while the library itself is compiled.
#if defined(KORA_STATIC)
#define KORA_API
#elif defined(_WIN32)
#if defined(KORA_BUILDING)
#define KORA_API __declspec(dllexport)
#else
#define KORA_API __declspec(dllimport)
#endif
#else
#define KORA_API __attribute__((visibility("default")))
#endif

/// Marks what a module exports to the library, whatever the module links against.
#if defined(_WIN32)
#define KORA_MODULE_EXPORT __declspec(dllexport)
#else
#define KORA_MODULE_EXPORT __attribute__((visibility("default")))
#endif

/// The version of the library that this header belongs to, in three parts.
#define KORA_VERSION_MAJOR 0
#define KORA_VERSION_MINOR 1  ///< the second part
#define KORA_VERSION_PATCH 0  ///< the third part
/// The three as a text, "0.1.0".
#define KORA_VERSION KORA_VERSION_JOIN(KORA_VERSION_MAJOR, KORA_VERSION_MINOR, KORA_VERSION_PATCH)
/// Makes one text of the parts of a version, which may be macros.
#define KORA_VERSION_JOIN(major, minor, patch) \
    KORA_VERSION_WORD(major) "." KORA_VERSION_WORD(minor) "." KORA_VERSION_WORD(patch)
#define KORA_VERSION_WORD(number) #number  ///< one part as a text

/// The counted string class and the array of counted strings.
typedef std::string CString;
typedef std::vector<CString> CStringArray;  ///< an array of counted strings
