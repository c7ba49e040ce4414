#include "strings/Format.h"

#include <charconv>
#include <climits>
#include <cstring>
#include <type_traits>

#include "strings/FormatField.h"
#include "strings/FormatFloat.h"
#include "strings/FormatInteger.h"

namespace kora {
namespace {

/// Reads decimal digits; false when the number is more than an int.
bool readInt(const char*& at, int& value) {
    std::int64_t sum = 0;
    for (; *at >= '0' && *at <= '9'; ++at) {
        sum = sum * 10 + (*at - '0');
        if (sum > INT_MAX) return false;
    }
    value = static_cast<int>(sum);
    return true;
}

void readFlags(const char*& at, FormatRequest& request) {
    for (;; ++at) {
        switch (*at) {
            case '-':
                request.left = true;
                break;
            case '+':
                request.plus = true;
                break;
            case ' ':
                request.space = true;
                break;
            case '#':
                request.alternate = true;
                break;
            case '0':
                request.zero = true;
                break;
            case '\'':
                request.group = true;
                break;
            default:
                return;
        }
    }
}

FormatLength readLength(const char*& at) {
    switch (*at) {
        case 'h':
            return *++at == 'h' ? ++at, FormatLength::hh : FormatLength::h;
        case 'l':
            return *++at == 'l' ? ++at, FormatLength::ll : FormatLength::l;
        case 'q':
            return ++at, FormatLength::ll;
        case 'j':
            return ++at, FormatLength::j;
        case 'Z':
        case 'z':
            return ++at, FormatLength::z;
        case 't':
            return ++at, FormatLength::t;
        case 'L':
            return ++at, FormatLength::L;
        default:
            return FormatLength::none;
    }
}

class Formatter {
public:
    Formatter(FormatSink& sink, va_list args) : sink_(sink), args_(args) {}
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;

    bool run(const char* format) {
        for (;;) {
            const int run = sink_.writeRun(format);
            if (!sink_.claim(run)) return false;
            format += run;
            if (*format == '%') {
                if (!conversion(++format)) return false;
            } else if (*format == '\0') {
                return true;
            } else {
                const std::size_t length = std::strcspn(format, "%");
                if (!plain(format, length)) return false;
                format += length;
            }
        }
    }

private:
    bool plain(const char* text, std::size_t length) {
        if (length > INT_MAX || !sink_.claim(static_cast<std::int64_t>(length))) return false;
        sink_.write(text, length);
        return true;
    }

    /// Reads what follows a percent sign and prints it.
    bool conversion(const char*& at) {
        FormatRequest request;
        // All that may stand before the length lies below the letters.
        if (*at < 'A' && !readShape(at, request)) return false;
        request.length = readLength(at);
        request.conversion = *at;
        if (*at == '\0') return false;
        ++at;
        return print(request);
    }

    /// Reads flags, width and precision.
    bool readShape(const char*& at, FormatRequest& request) {
        readFlags(at, request);
        if (*at == '*') {
            ++at;
            request.width = va_arg(args_, int);
            if (request.width < 0) {
                if (request.width == INT_MIN) return false;
                request.left = true;
                request.width = -request.width;
            }
        } else if (!readInt(at, request.width)) {
            return false;
        }
        if (*at == '.') {
            ++at;
            if (*at == '*') {
                ++at;
                request.precision = va_arg(args_, int);
                if (request.precision < 0) request.precision = -1;
            } else if (!readInt(at, request.precision)) {
                return false;
            }
        }
        return true;
    }

    bool print(const FormatRequest& request) {
        switch (request.conversion) {
            case 'd':
            case 'i':
                return signedInteger(request);
            case 'u':
                return unsignedInteger(request, kDecimal);
            case 'o':
                return unsignedInteger(request, kOctal);
            case 'x':
                return unsignedInteger(request, kHexadecimal);
            case 'X':
                return unsignedInteger(request, kHexadecimalUpper);
            case 'b':
                return unsignedInteger(request, kBinary);
            case 'B':
                return unsignedInteger(request, kBinaryUpper);
            case 'c':
                return isLong(request) ? wideCharacter(request) : character(request);
            case 'C':
                return wideCharacter(request);
            case 's':
                return isLong(request) ? wideText(request) : text(request, va_arg(args_, const char*));
            case 'S':
                return wideText(request);
            case 'p':
                return pointer(request);
            case 'n':
                return va_arg(args_, void*), true;  // a format never writes into its arguments
            case 'f':
            case 'F':
            case 'e':
            case 'E':
            case 'g':
            case 'G':
            case 'a':
            case 'A':
                return floatingPoint(request);
            case '%':
                return plain("%", 1);
            default:
                return unknown(request);
        }
    }

    // ll is as good as l before characters, and as L before floating point.
    static bool isLong(const FormatRequest& request) {
        return request.length == FormatLength::l || request.length == FormatLength::ll;
    }

    std::int64_t signedArgument(FormatLength length) {
        switch (length) {
            case FormatLength::hh:
                return static_cast<signed char>(va_arg(args_, int));
            case FormatLength::h:
                return static_cast<short>(va_arg(args_, int));
            case FormatLength::l:
                return va_arg(args_, long);
            case FormatLength::L:
            case FormatLength::ll:
                return va_arg(args_, long long);
            case FormatLength::j:
                return va_arg(args_, std::intmax_t);
            case FormatLength::z:
            case FormatLength::t:
                return va_arg(args_, std::ptrdiff_t);
            default:
                return va_arg(args_, int);
        }
    }

    std::uint64_t unsignedArgument(FormatLength length) {
        switch (length) {
            case FormatLength::hh:
                return static_cast<unsigned char>(va_arg(args_, unsigned));
            case FormatLength::h:
                return static_cast<unsigned short>(va_arg(args_, unsigned));
            case FormatLength::l:
                return va_arg(args_, unsigned long);
            case FormatLength::L:
            case FormatLength::ll:
                return va_arg(args_, unsigned long long);
            case FormatLength::j:
                return va_arg(args_, std::uintmax_t);
            case FormatLength::z:
            case FormatLength::t:
                return va_arg(args_, std::size_t);
            default:
                return va_arg(args_, unsigned);
        }
    }

    bool signedInteger(const FormatRequest& request) {
        const std::int64_t value = signedArgument(request.length);
        const auto bits = static_cast<std::uint64_t>(value);
        return formatInteger(sink_, request, request.sign(value < 0), value < 0 ? 0 - bits : bits, kDecimal);
    }

    bool unsignedInteger(const FormatRequest& request, const FormatRadix& radix) {
        return formatInteger(sink_, request, '\0', unsignedArgument(request.length), radix);
    }

    bool floatingPoint(const FormatRequest& request) {
        if (request.length == FormatLength::L || request.length == FormatLength::ll)
            return formatFloat(sink_, request, BinaryFloat(va_arg(args_, long double)));
        return formatFloat(sink_, request, BinaryFloat(va_arg(args_, double)));
    }

    bool pointer(FormatRequest request) {
        const auto value = reinterpret_cast<std::uintptr_t>(va_arg(args_, void*));
        request.alternate = true;
        if (value != 0) return formatInteger(sink_, request, request.sign(false), value, kHexadecimal);
        return narrow(request, "(nil)", 5);
    }

    bool narrow(const FormatRequest& request, const char* text, std::size_t length) {
        if (request.width == 0) return plain(text, length);
        if (length > INT_MAX) return false;
        FormatField field;
        field.text(text, static_cast<std::int64_t>(length));
        return field.emit(sink_, request, false);
    }

    bool character(const FormatRequest& request) {
        const auto c = static_cast<char>(va_arg(args_, int));
        return narrow(request, &c, 1);
    }

    bool text(const FormatRequest& request, const char* text) {
        std::size_t length;
        if (!text) {
            // All of it or nothing.
            text = "(null)";
            length = request.precision < 0 || request.precision >= 6 ? 6 : 0;
        } else if (request.precision < 0) {
            length = std::strlen(text);
        } else {
            const auto limit = static_cast<std::size_t>(request.precision);
            const void* end = std::memchr(text, '\0', limit);
            length = end ? static_cast<std::size_t>(static_cast<const char*>(end) - text) : limit;
        }
        return narrow(request, text, length);
    }

    // Wide characters are those of the language's own locale: one byte each, none beyond 0x7F.
    bool wideCharacter(const FormatRequest& request) {
        const auto wide = static_cast<unsigned>(va_arg(args_, int));
        if (wide > 0x7F) return false;
        const auto c = static_cast<char>(wide);
        return narrow(request, &c, 1);
    }

    bool wideText(const FormatRequest& request) {
        const auto* wide = va_arg(args_, const wchar_t*);
        if (!wide) return text(request, nullptr);
        std::size_t length = 0;
        const std::size_t limit = request.precision < 0 ? INT_MAX : static_cast<std::size_t>(request.precision);
        for (; length < limit && wide[length] != 0; ++length)
            if (static_cast<std::uint32_t>(wide[length]) > 0x7F) return false;
        const std::size_t padding =
            static_cast<std::size_t>(request.width) > length ? static_cast<std::size_t>(request.width) - length : 0;
        if (!sink_.claim(static_cast<std::int64_t>(length + padding))) return false;
        if (!request.left) sink_.fill(' ', padding);
        for (std::size_t i = 0; i < length; ++i) {
            const auto c = static_cast<char>(wide[i]);
            sink_.write(&c, 1);
        }
        if (request.left) sink_.fill(' ', padding);
        return true;
    }

    /// A conversion that there is not comes out as it was understood: flags in a fixed order, numbers read, the length
    /// left out.
    bool unknown(const FormatRequest& request) {
        char shown[32];
        char* at = shown;
        *at++ = '%';
        if (request.alternate) *at++ = '#';
        if (request.group) *at++ = '\'';
        if (request.plus) {
            *at++ = '+';
        } else if (request.space) {
            *at++ = ' ';
        }
        if (request.left) {
            *at++ = '-';
        } else if (request.zero) {
            *at++ = '0';
        }
        if (request.width != 0) at = std::to_chars(at, shown + sizeof shown, request.width).ptr;
        if (request.precision != -1) {
            *at++ = '.';
            at = std::to_chars(at, shown + sizeof shown, request.precision).ptr;
        }
        *at++ = request.conversion;
        return plain(shown, static_cast<std::size_t>(at - shown));
    }

    FormatSink& sink_;
    std::decay_t<va_list> args_;  // the caller's own where that is an array: copying it takes as long as a number
};

}  // namespace

int formatInto(FormatSink& sink, const char* format, va_list args) {
    return Formatter(sink, args).run(format) ? sink.count() : -1;
}

}  // namespace kora
