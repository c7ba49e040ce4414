#include "tools/kora-trace/Escapes.h"

#include <optional>

#include "host/Utf8.h"

namespace kora::tracelog {

namespace {

constexpr char kDigits[] = "0123456789abcdef";

void appendHex(std::string& out, std::uint32_t value, int digits) {
    while (digits-- > 0) out += kDigits[value >> (4 * digits) & 15];
}

void appendLatin1(std::string& out, unsigned char byte) {
    out += static_cast<char>(0xC0 | byte >> 6);
    out += static_cast<char>(0x80 | (byte & 0x3F));
}

// The number of a control character, those of U+0080 to U+009F among them; a tab is none.
std::optional<unsigned> controlNumber(std::string_view character) {
    const auto first = static_cast<unsigned char>(character.front());
    if (character.size() == 2) {
        const auto second = static_cast<unsigned char>(character.back());
        return first == 0xC2 && second < 0xA0 ? std::optional<unsigned>(second) : std::nullopt;
    }
    return first == '\t' || (first >= ' ' && first != 0x7F) ? std::nullopt : std::optional<unsigned>(first);
}

// What @p append makes of each character in UTF-8.
template <class Append>
std::string escaped(std::string_view text, Append append) {
    std::string out, latin1;
    out.reserve(text.size() + text.size() / 8);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = host::characterLength(text, at);
        if (length == 0) {
            latin1.clear();
            appendLatin1(latin1, static_cast<unsigned char>(text[at++]));
            append(out, std::string_view(latin1));
        } else {
            append(out, text.substr(at, length));
            at += length;
        }
    }
    return out;
}

}  // namespace

std::string utf8(std::string_view text) {
    return escaped(text, [](std::string& out, std::string_view character) { out += character; });
}

std::string forTerminal(std::string_view text) {
    return escaped(text, [](std::string& out, std::string_view character) {
        const auto control = controlNumber(character);
        if (!control) {
            out += character;
        } else {
            out += "\\x";
            appendHex(out, *control, 2);
        }
    });
}

std::string forHtml(std::string_view text) {
    return escaped(text, [](std::string& out, std::string_view character) {
        switch (character.front()) {
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
                out += controlNumber(character) ? std::string_view("\xEF\xBF\xBD") : character;
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
