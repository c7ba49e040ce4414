#include "sheet/TextOrder.h"

#include <algorithm>

#include "strings/NaturalOrder.h"

namespace kora {

int compareCellTexts(std::string_view a, std::string_view b) { return compareNatural<std::uint16_t>(a, b, signedByte); }

void TextKeys::add(std::string_view text) {
    if (text.empty()) return;
    shared_ = any_ ? shared_.substr(0, commonPrefix(shared_, text)) : text;
    any_ = true;
    while (!shared_.empty() && isDigit(shared_.back())) shared_.remove_suffix(1);
}

// Seven bytes of text, and how many of them the text takes: a character takes one; a number three, the first of which
// tells it from other characters as a digit would. Behind the end there are zeros.
std::uint64_t TextKeys::key(std::string_view text) const {
    if (text.empty()) return UINT64_MAX;
    const auto ordered = [](int c) { return static_cast<std::uint8_t>(c + 128); };
    std::uint8_t bytes[kLongerText + 2] = {};
    std::size_t count = 0;
    for (std::size_t at = shared_.size(); at < text.size() && count < kLongerText;) {
        if (isDigit(text[at])) {
            const std::uint16_t number = readNumber<std::uint16_t>(text, at);
            bytes[count++] = ordered('0');
            bytes[count++] = static_cast<std::uint8_t>(number >> 8);
            bytes[count++] = static_cast<std::uint8_t>(number & 0xFF);
        } else {
            bytes[count++] = ordered(signedByte(text[at++]));
        }
    }
    std::uint64_t key = 0;
    for (std::size_t i = 0; i < kLongerText - 1; ++i) key = key << 8 | bytes[i];
    return key << 8 | std::min<std::uint64_t>(count, kLongerText);
}

}  // namespace kora
