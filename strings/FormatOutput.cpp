#include <kora/Str.h>

#include "strings/Format.h"
#include "strings/FormatSink.h"

namespace kora {

int formatBounded(char* buffer, std::size_t size, const char* format, va_list args) {
    char none;
    BufferSink sink(size == 0 ? &none : buffer, size == 0 ? 0 : size - 1);
    const int count = formatInto(sink, format, args);
    sink.terminate();
    return count;
}

std::string formatText(const char* format, ...) {
    std::string text;
    StringSink sink(text);
    va_list args;
    va_start(args, format);
    formatInto(sink, format, args);
    va_end(args);
    sink.flush();
    return text;
}

namespace {

/// Answers the count with the NUL.
inline int formatUnbounded(char* buffer, const char* format, va_list args) {
    if (!buffer || !format) return -1;
    BufferSink sink(buffer, BufferSink::kUnbounded);
    const int count = formatInto(sink, format, args);
    sink.terminate();
    return count < 0 || count == 0x7FFFFFFF ? -1 : count + 1;
}

}  // namespace
}  // namespace kora

int Strvsprintf(char* buffer, const char* format, va_list args) { return kora::formatUnbounded(buffer, format, args); }

int Strsprintf(char* buffer, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int count = kora::formatUnbounded(buffer, format, args);
    va_end(args);
    return count;
}

int Strvfprintf(std::FILE* stream, const char* format, va_list args) {
    if (!stream || !format) return -1;
    kora::StreamSink sink(stream);
    const int count = kora::formatInto(sink, format, args);
    return sink.flush() ? count : -1;
}

int Strfprintf(std::FILE* stream, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int count = Strvfprintf(stream, format, args);
    va_end(args);
    return count;
}

int Strvprintf(const char* format, va_list args) { return Strvfprintf(stdout, format, args); }

int Strprintf(const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int count = Strvfprintf(stdout, format, args);
    va_end(args);
    return count;
}
