#include "host/Json.h"

#include <cstdio>

namespace kora::host {

namespace {

/// How many bytes from @p at on are one character in UTF-8: 0 when they are none.
std::size_t characterLength(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    const unsigned lead = byte(at);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(at + i) & 0xC0U) != 0x80) return 0;
    // Written longer than need be, half of a pair, and beyond the last character.
    const unsigned second = byte(at + 1);
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) || (lead == 0xF0 && second < 0x90) ||
        (lead == 0xF4 && second > 0x8F))
        return 0;
    return length;
}

void append(std::string& out, std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = characterLength(text, at);
        const char character = text[at];
        if (character == '"' || character == '\\') {
            out += '\\';
            out += character;
        } else if (character == '\n') {
            out += "\\n";
        } else if (length == 0 || (length == 1 && static_cast<unsigned char>(character) < ' ') || character == 127) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x",
                          static_cast<unsigned>(static_cast<unsigned char>(character)));
            out += escaped;
        } else {
            out += text.substr(at, length);
        }
        at += length == 0 ? 1 : length;
    }
}

}  // namespace

void Json::separate() {
    if (keyed_) {
        keyed_ = false;
        return;
    }
    if (depth_ == 0) return;
    text_ += first_ ? "\n" : ",\n";
    text_.append(2 * static_cast<std::size_t>(depth_), ' ');
    first_ = false;
}

void Json::raw(std::string_view text) {
    separate();
    text_ += text;
}

Json& Json::key(std::string_view name) {
    value(name);
    text_ += ": ";
    keyed_ = true;
    return *this;
}

void Json::begin(char bracket) {
    raw(std::string_view(&bracket, 1));
    ++depth_;
    first_ = true;
}

void Json::end(char bracket) {
    --depth_;
    if (!first_) {
        text_ += '\n';
        text_.append(2 * static_cast<std::size_t>(depth_), ' ');
    }
    text_ += bracket;
    first_ = false;
}

void Json::value(std::string_view text) {
    separate();
    text_ += '"';
    append(text_, text);
    text_ += '"';
}

}  // namespace kora::host
