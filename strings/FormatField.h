#pragma once

#include <cstdint>

#include "strings/FormatSink.h"

namespace kora {

enum class FormatLength : std::uint8_t { none, hh, h, l, ll, j, z, t, L };

/// One conversion of a format: %[flags][width][.precision][length]conversion.
struct FormatRequest {
    bool left = false;       // -
    bool plus = false;       // +
    bool space = false;      // blank
    bool alternate = false;  // #
    bool zero = false;       // 0
    bool group = false;      // ', without meaning as there is no locale
    FormatLength length = FormatLength::none;
    char conversion = '\0';
    int width = 0;
    int precision = -1;  // -1: none given

    /// What stands for the sign; NUL for nothing.
    char sign(bool negative) const { return negative ? '-' : plus ? '+' : space ? ' ' : '\0'; }
};

/// What one conversion prints: a prefix (sign, radix), then texts and runs of zeros, all padded to the width.
class FormatField {
public:
    /// Adds to the prefix, nothing for NUL.
    void prefix(char c) {
        if (c != '\0') prefix_[prefixLength_++] = c;
    }
    /// @p text is not copied.
    void text(const char* text, std::int64_t length) { add(text, length); }
    void zeros(std::int64_t length) { add(nullptr, length); }

    /// Writes the field. @p zeroPadded: flag 0 fills between prefix and text. False when the count overflows.
    bool emit(FormatSink& sink, const FormatRequest& request, bool zeroPadded) const {
        const std::int64_t body = length_ + prefixLength_;
        const std::int64_t padding = request.width > body ? request.width - body : 0;
        if (!sink.claim(body + padding)) return false;
        const bool inner = zeroPadded && request.zero && !request.left;
        if (padding != 0 && !inner && !request.left) sink.fill(' ', static_cast<std::size_t>(padding));
        if (prefixLength_ != 0) sink.write(prefix_, static_cast<std::size_t>(prefixLength_));
        if (padding != 0 && inner) sink.fill('0', static_cast<std::size_t>(padding));
        for (int i = 0; i < pieces_; ++i) {
            const auto length = static_cast<std::size_t>(piece_[i].length);
            if (piece_[i].text) {
                sink.write(piece_[i].text, length);
            } else {
                sink.fill('0', length);
            }
        }
        if (padding != 0 && request.left) sink.fill(' ', static_cast<std::size_t>(padding));
        return true;
    }

private:
    struct Piece {
        const char* text;  // null: zeros
        std::int64_t length;
    };

    void add(const char* text, std::int64_t length) {
        if (length <= 0) return;
        piece_[pieces_++] = {text, length};
        length_ += length;
    }

    std::int64_t length_ = 0;
    int pieces_ = 0;
    int prefixLength_ = 0;
    char prefix_[3];  // a sign and 0x
    Piece piece_[7];  // a number in fixed notation: digits, zeros, point, zeros, digits, zeros, exponent
};

}  // namespace kora
