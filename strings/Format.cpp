#include "strings/Format.h"

#include <charconv>
#include <climits>
#include <cstring>
#include <type_traits>

#include "strings/Bytes.h"
#include "strings/FormatField.h"
#include "strings/FormatFloat.h"
#include "strings/FormatInteger.h"

namespace kora {
namespace {

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
    Formatter(FormatSink& sink, const char* format, va_list args) : sink_(sink), at_(format), args_(args) {}
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;

    bool run() {
        for (;;) {
            at_ += sink_.writeRun(at_);
            if (*at_ == '%') {
                at_ += 2;
                if (!print(BareRequest{at_[-1]})) return false;
            } else if (*at_ == '\0') {
                return true;
            } else {
                const std::size_t length = std::strcspn(at_, "%");
                if (!plain(at_, length)) return false;
                at_ += length;
            }
        }
    }

private:
    bool plain(const char* text, std::size_t length) {
        if (char* const place = sink_.reserve(length)) {
            FormatPlace(place).write(text, length);
        } else if (sink_.canCount(length)) {
            sink_.write(text, length);
        } else {
            return false;
        }
        return true;
    }

    /// Reads what may stand between the percent sign and the letter, and prints it.
    bool shaped() {
        FormatRequest request;
        const char* at = at_;
        while (const std::uint32_t flag = formatFlag(*at)) request.flags |= flag, ++at;
        if (!readNumber(at, request.width)) return false;
        if (request.width < 0) {
            if (request.width == INT_MIN) return false;
            request.set('-');
            request.width = -request.width;
        }
        if (*at == '.') {
            if (!readNumber(++at, request.precision)) return false;
            if (request.precision < 0) request.precision = -1;
        }
        request.length = readLength(at);
        request.conversion = *at;
        at_ = at + 1;
        return print(request);
    }

    /// Digits, or an asterisk for the next argument. False when the number is more than an int.
    bool readNumber(const char*& at, int& value) {
        if (*at == '*') {
            ++at;
            value = va_arg(args_, int);
            return true;
        }
        std::int64_t sum = 0;
        for (; isDigit(*at); ++at) {
            sum = sum * 10 + (*at - '0');
            if (sum > INT_MAX) return false;
        }
        value = static_cast<int>(sum);
        return true;
    }

    template <typename Request>
    bool print(const Request& request) {
        switch (request.conversion) {
            case 'd':
            case 'i':
                return signedInteger(request);
            case 'u':
                return unsignedInteger<kDecimal>(request);
            case 'x':
                return unsignedInteger<kHexadecimal>(request);
            case 'c':
                return isLong(request) ? wideCharacter(request) : character(request);
            case 's':
                return isLong(request) ? wideText(request) : text(request, va_arg(args_, const char*));
            case 'f':
            case 'e':
            case 'g':
                return floatingPoint(request);
            default:
                return printOther(request);
        }
    }

    /// There is more to read before the letter, or it is a rare one.
    bool printOther(const BareRequest&) {
        --at_;
        return shaped();
    }

    bool printOther(const FormatRequest& request) {
        switch (request.conversion) {
            case 'o':
                return unsignedInteger<kOctal>(request);
            case 'X':
                return unsignedInteger<kHexadecimalUpper>(request);
            case 'b':
                return unsignedInteger<kBinary>(request);
            case 'B':
                return unsignedInteger<kBinaryUpper>(request);
            case 'C':
                return wideCharacter(request);
            case 'S':
                return wideText(request);
            case 'p':
                return pointer(request);
            case 'n':
                return va_arg(args_, void*), true;  // a format never writes into its arguments
            case 'F':
            case 'E':
            case 'G':
            case 'a':
            case 'A':
                return floatingPoint(request);
            case '%':
                return plain("%", 1);
            case '\0':
                return false;
            default:
                return unknown(request);
        }
    }

    // ll is as good as l before characters, and as L before floating point.
    template <typename Request>
    static bool isLong(const Request& request) {
        return request.length == FormatLength::l || request.length == FormatLength::ll;
    }

    // Most arguments have no length, and to ask for that first is faster than a jump by all of them.
    std::int64_t signedArgument(FormatLength length) {
        if (length == FormatLength::none) return va_arg(args_, int);
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
        if (length == FormatLength::none) return va_arg(args_, unsigned);
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

    template <typename Request>
    bool signedInteger(const Request& request) {
        const std::int64_t value = signedArgument(request.length);
        const auto bits = static_cast<std::uint64_t>(value);
        return formatInteger<kDecimal>(sink_, request, request.sign(value < 0), value < 0 ? 0 - bits : bits);
    }

    template <const FormatRadix& kRadix, typename Request>
    bool unsignedInteger(const Request& request) {
        return formatInteger<kRadix>(sink_, request, '\0', unsignedArgument(request.length));
    }

    template <typename Request>
    bool floatingPoint(const Request& request) {
        if (request.length == FormatLength::L || request.length == FormatLength::ll)
            return formatFloat(sink_, request, va_arg(args_, long double));
        return formatFloat(sink_, request, va_arg(args_, double));
    }

    bool pointer(FormatRequest request) {
        const auto value = reinterpret_cast<std::uintptr_t>(va_arg(args_, void*));
        request.set('#');
        if (value != 0) return formatInteger<kHexadecimal>(sink_, request, request.sign(false), value);
        return narrow(request, "(nil)", 5);
    }

    template <typename Request>
    bool narrow(const Request& request, const char* text, std::size_t length) {
        if (length > INT_MAX) return false;
        return emitField(sink_, request, false, {}, 0, length, [=](auto& out) { out.write(text, length); });
    }

    template <typename Request>
    bool character(const Request& request) {
        const auto c = static_cast<char>(va_arg(args_, int));
        return narrow(request, &c, 1);
    }

    template <typename Request>
    bool text(const Request& request, const char* text) {
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
        return emitField(sink_, request, false, {}, 0, length, [=](auto& out) {
            for (std::size_t i = 0; i < length; ++i) out.put(static_cast<char>(wide[i]));
        });
    }

    /// A conversion that there is not comes out as it was understood: flags in a fixed order, numbers read, the length
    /// left out.
    bool unknown(const FormatRequest& request) {
        char shown[40];
        char* at = shown;
        *at++ = '%';
        if (request.has('#')) *at++ = '#';
        if (request.has('\'')) *at++ = '\'';
        if (request.has('+')) {
            *at++ = '+';
        } else if (request.has(' ')) {
            *at++ = ' ';
        }
        if (request.has('-')) {
            *at++ = '-';
        } else if (request.has('0')) {
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
    const char* at_;              // in the format
    std::decay_t<va_list> args_;  // the caller's own where that is an array: copying it takes as long as a number
};

}  // namespace

int formatInto(FormatSink& sink, const char* format, va_list args) {
    return Formatter(sink, format, args).run() ? sink.count() : -1;
}

}  // namespace kora
