#include "host/Json.h"

#include <cstdio>

#include "host/Utf8.h"

namespace kora::host {

namespace {

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
    if (!first_) text_ += ',';
    if (flat_ == 0)
        newLine();
    else if (!first_)
        text_ += ' ';
    first_ = false;
}

void Json::newLine() {
    text_ += '\n';
    text_.append(2 * static_cast<std::size_t>(depth_), ' ');
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

void Json::begin(char bracket, bool inOneLine) {
    raw(std::string_view(&bracket, 1));
    ++depth_;
    if (inOneLine || flat_ > 0) ++flat_;
    first_ = true;
}

void Json::end(char bracket) {
    --depth_;
    if (flat_ > 0)
        --flat_;
    else if (!first_)
        newLine();
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
