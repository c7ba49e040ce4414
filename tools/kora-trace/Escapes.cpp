#include "tools/kora-trace/Escapes.h"

#include <algorithm>

namespace kora::tracelog {

namespace {

constexpr char kDigits[] = "0123456789abcdef";

unsigned char byteAt(std::string_view text, std::size_t i) { return static_cast<unsigned char>(text[i]); }

bool isControl(unsigned char byte) { return byte < ' ' || byte == 0x7F; }

void appendHex(std::string& out, std::uint32_t value, int digits) {
    while (digits-- > 0) out += kDigits[value >> (4 * digits) & 15];
}

/// The length of the UTF-8 sequence at @p at, with its character; 1 for ASCII, 0 when there is none.
std::size_t sequence(std::string_view text, std::size_t at, std::uint32_t& character) {
    const unsigned char lead = byteAt(text, at);
    character = lead;
    if (lead < 0x80) return 1;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() - at < length) return 0;
    character = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const unsigned char byte = byteAt(text, at + i);
        if ((byte & 0xC0) != 0x80) return 0;
        character = character << 6 | (byte & 0x3Fu);
    }
    constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    return character < kSmallest[length] || character > 0x10FFFF || surrogate ? 0 : length;
}

void appendLatin1(std::string& out, unsigned char byte) {
    out += static_cast<char>(0xC0 | byte >> 6);
    out += static_cast<char>(0x80 | (byte & 0x3F));
}

// Valid UTF-8 of what @p ascii makes of each ASCII character.
template <class Ascii>
std::string escaped(std::string_view text, Ascii ascii) {
    std::string out;
    out.reserve(text.size() + text.size() / 8);
    for (std::size_t at = 0; at < text.size();) {
        std::uint32_t character;
        const std::size_t length = sequence(text, at, character);
        if (length == 0)
            appendLatin1(out, byteAt(text, at));
        else if (length == 1)
            ascii(out, text[at]);
        else
            out.append(text, at, length);
        at += std::max<std::size_t>(length, 1);
    }
    return out;
}

}  // namespace

std::string forTerminal(std::string_view text) {
    std::string out;
    for (const char c : text) {
        if (isControl(static_cast<unsigned char>(c)) && c != '\t') {
            out += "\\x";
            appendHex(out, static_cast<unsigned char>(c), 2);
        } else {
            out += c;
        }
    }
    return out;
}

std::string forJson(std::string_view text) {
    return '"' +
           escaped(text,
                   [](std::string& out, char c) {
                       if (c == '"' || c == '\\') {
                           out += {'\\', c};
                       } else if (isControl(static_cast<unsigned char>(c))) {
                           out += "\\u";
                           appendHex(out, static_cast<unsigned char>(c), 4);
                       } else {
                           out += c;
                       }
                   }) +
           '"';
}

std::string forHtml(std::string_view text) {
    return escaped(text, [](std::string& out, char c) {
        switch (c) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                // A page has no way to write a control character.
                if (isControl(static_cast<unsigned char>(c)) && c != '\t')
                    out += "\xEF\xBF\xBD";
                else
                    out += c;
        }
    });
}

std::string hexWord(std::uint32_t word) {
    std::string text;
    appendHex(text, word, 8);
    return text;
}

std::string hexLocation(std::uint32_t location) {
    std::string text;
    appendHex(text, location, 3);
    return text;
}

}  // namespace kora::tracelog
