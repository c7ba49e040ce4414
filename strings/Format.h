#pragma once

#include <cstdarg>
#include <cstddef>
#include <string>

// The C library of the platform does not come into it: the conversions are C's on both.
#if defined(__clang__)
#define KORA_FORMAT_CHECK(text, first) __attribute__((format(printf, text, first)))
#else
#define KORA_FORMAT_CHECK(text, first) __attribute__((format(gnu_printf, text, first)))
#endif

namespace kora {

class FormatSink;

/// The engine behind all formatted output: prints @p args as @p format says into @p sink. Answers the number of
/// characters, or -1 for a format that ends within a conversion, a width or precision or count beyond an int, or a
/// wide character that has no byte; what comes before is written.
int formatInto(FormatSink& sink, const char* format, va_list args) KORA_FORMAT_CHECK(2, 0);

/// Writes at most @p size - 1 characters and a NUL; nothing when @p size is 0. Answers as formatInto() does, so a
/// result of @p size or more says that the text was cut.
int formatBounded(char* buffer, std::size_t size, const char* format, va_list args) KORA_FORMAT_CHECK(3, 0);

/// The text as a string. Throws what std::string throws.
std::string formatText(const char* format, ...) KORA_FORMAT_CHECK(1, 2);

}  // namespace kora
