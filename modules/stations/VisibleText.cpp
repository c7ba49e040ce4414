#include "VisibleText.h"

#include <algorithm>
#include <cstdint>

namespace stations {

namespace {

struct Character {
    std::uint32_t code;
    std::size_t bytes;
};

bool continues(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

// The character at the start of a text; code 0 for a byte that begins none.
Character characterAt(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    if (lead < 0x80) return {lead, 1};
    const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (lead < 0xC0 || lead >= 0xF8 || text.size() < bytes) return {0, 1};
    std::uint32_t code = lead & (0x7Fu >> bytes);
    for (std::size_t i = 1; i < bytes; ++i) {
        if (!continues(text[i])) return {0, 1};
        code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3F);
    }
    const bool isCharacter = code >= kLeast[bytes] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
    return isCharacter ? Character{code, bytes} : Character{0, 1};
}

bool mayBeShown(std::uint32_t code) {
    // Both kinds of controls; marks, embeddings and isolates of the writing direction; line and paragraph separators.
    constexpr struct {
        std::uint32_t first, last;
    } kHidden[] = {{0, 0x1F},        {0x7F, 0x9F},     {0x61C, 0x61C},   {0x200B, 0x200F},
                   {0x2028, 0x202E}, {0x2060, 0x206F}, {0xFEFF, 0xFEFF}, {0xE0000, 0xE0FFF}};
    return std::ranges::none_of(kHidden, [code](auto range) { return code >= range.first && code <= range.last; });
}

}  // namespace

CString visible(std::string_view text) {
    CString shown;
    while (!text.empty()) {
        const Character next = characterAt(text);
        if (mayBeShown(next.code))
            shown += text.substr(0, next.bytes);
        else
            shown += '?';
        text.remove_prefix(next.bytes);
    }
    return shown;
}

std::size_t visibleLength(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char byte) { return !continues(byte); }));
}

}  // namespace stations
