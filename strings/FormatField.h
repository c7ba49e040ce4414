#pragma once

#include <cstdint>

#include "strings/FormatSink.h"

namespace kora {

enum class FormatLength : std::uint8_t { none, hh, h, l, ll, j, z, t, L };

/// The flag that a character of a format stands for, one bit for each of blank # ' + - 0; or 0.
constexpr std::uint32_t formatFlag(char c) {
    constexpr std::uint32_t kFlags =
        1U | 1U << ('#' - ' ') | 1U << ('\'' - ' ') | 1U << ('+' - ' ') | 1U << ('-' - ' ') | 1U << ('0' - ' ');
    const auto bit = static_cast<unsigned>(static_cast<unsigned char>(c) - ' ');
    return bit <= '0' - ' ' ? 1U << bit & kFlags : 0;
}

/// One conversion of a format: %[flags][width][.precision][length]conversion.
struct FormatRequest {
    std::uint32_t flags = 0;  // of formatFlag(); ' is without meaning as there is no locale
    int width = 0;
    int precision = -1;  // -1: none given
    FormatLength length = FormatLength::none;
    char conversion = '\0';

    bool has(char flag) const { return (flags & formatFlag(flag)) != 0; }
    void set(char flag) { flags |= formatFlag(flag); }
    /// What stands for the sign; NUL for nothing.
    char sign(bool negative) const { return negative ? '-' : has('+') ? '+' : has(' ') ? ' ' : '\0'; }
};

/// A conversion that is its letter alone, as most are. As all else is known, what prints it has nothing left to decide.
struct BareRequest {
    static constexpr int width = 0;
    static constexpr int precision = -1;
    static constexpr FormatLength length = FormatLength::none;
    char conversion;

    static constexpr bool has(char) { return false; }
    static char sign(bool negative) { return negative ? '-' : '\0'; }
    operator FormatRequest() const {
        FormatRequest request;
        request.conversion = conversion;
        return request;
    }
};

/// What stands before a number, NUL for nothing: a sign, and the letter of a radix behind a 0.
struct FormatPrefix {
    char sign = '\0';
    char radix = '\0';

    unsigned length() const { return (sign != '\0' ? 1U : 0U) + (radix != '\0' ? 2U : 0U); }
};

/// What stands around the characters of one conversion: blanks, a prefix and zeros before them, blanks behind them.
struct FormatFrame {
    FormatPrefix prefix;
    std::uint64_t before = 0;
    std::uint64_t zeros = 0;
    std::uint64_t after = 0;

    template <typename Out, typename Body>
    void put(Out& out, const Body& body) const {
        if (before != 0) out.pad(' ', static_cast<std::size_t>(before));
        if (prefix.sign != '\0') out.put(prefix.sign);
        if (prefix.radix != '\0') {
            out.put('0');
            out.put(prefix.radix);
        }
        if (zeros != 0) out.pad('0', static_cast<std::size_t>(zeros));
        body(out);
        if (after != 0) out.pad(' ', static_cast<std::size_t>(after));
    }
};

/// What is long or finds no room. Apart, and given copies, so that all else stays in registers.
template <typename Body>
[[gnu::noinline]] bool emitPieces(FormatSink& sink, std::uint64_t whole, FormatFrame frame, Body body) {
    if (!sink.canCount(whole)) return false;
    frame.put(sink, body);
    return true;
}

/// Writes what one conversion prints, padded to the width: a prefix, zeros, and the @p length characters that @p body
/// puts into the FormatPlace or FormatSink it is given. @p zeroPadded: flag 0 fills between prefix and body. False
/// when the count overflows.
template <typename Request, typename Body>
bool emitField(FormatSink& sink, const Request& request, bool zeroPadded, FormatPrefix prefix, std::uint64_t zeros,
               std::uint64_t length, Body body) {
    const std::uint64_t bare = prefix.length() + zeros + length;
    const auto width = static_cast<std::uint64_t>(request.width);
    const std::uint64_t padding = width > bare ? width - bare : 0;
    const bool isShort = padding + zeros <= FormatPlace::kMaxPad;
    std::uint64_t before = 0, after = 0;
    if (padding != 0) {
        if (request.has('-')) {
            after = padding;
        } else if (zeroPadded && request.has('0')) {
            zeros += padding;
        } else {
            before = padding;
        }
    }
    char* const at = isShort ? sink.reserve(bare + padding) : nullptr;
    if (!at) [[unlikely]]
        return emitPieces(sink, bare + padding, FormatFrame{prefix, before, zeros, after}, body);
    FormatPlace place(at);
    FormatFrame{prefix, before, zeros, after}.put(place, body);
    return true;
}

}  // namespace kora
