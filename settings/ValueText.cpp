#include "settings/ValueText.h"

#include <algorithm>
#include <charconv>

#include "strings/Bytes.h"
#include "strings/Format.h"
#include "strings/NumberText.h"
#include "strings/WhiteSpace.h"

namespace kora {

namespace {

struct BoolWord {
    std::string_view word;
    bool value;
};

constexpr BoolWord boolWords[] = {
    {"yes", true}, {"on", true}, {"true", true}, {"no", false}, {"off", false}, {"false", false},
};

struct StyleWord {
    const char* word;
    int style;
};

// In the order in which they are written.
constexpr StyleWord styleWords[] = {
    {"Bold", WinFontBold},     {"Italic", WinFontItalic}, {"Frame", WinFontFrame},
    {"Shadow", WinFontShadow}, {"Rule", WinFontRule},
};

std::string_view takeWord(std::string_view& text) {
    text = trimStart(text);
    const auto end = std::find_if(text.begin(), text.end(), isWhiteSpace);
    const std::string_view word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(word.size());
    return word;
}

/// Gives @p font what the word says; false when it says nothing.
bool applyWord(std::string_view word, WinFont& font) {
    for (const StyleWord& known : styleWords) {
        if (!equalIgnoringCase(word, known.word)) continue;
        font.WinFontStyleSet(font.WinFontStyleGet() | known.style);
        return true;
    }
    int points = 0;
    // A size that no int holds is none.
    if (!std::all_of(word.begin(), word.end(), isDigit) ||
        std::from_chars(word.data(), word.data() + word.size(), points).ec != std::errc())
        return false;
    font.WinFontSizeSet(points);
    return true;
}

/// What stands behind the face; nothing of a text that is no font.
std::optional<std::string_view> behindFace(std::string_view text) {
    const std::size_t close = text.find('"', 1);
    if (!text.starts_with('"') || close == text.npos) return std::nullopt;
    return text.substr(close + 1);
}

}  // namespace

std::string_view unquoted(std::string_view text) {
    if (text.size() >= 2 && text.front() == text.back() && (text.front() == '"' || text.front() == '\''))
        text = text.substr(1, text.size() - 2);
    return trimEnd(text);
}

std::optional<bool> boolOf(std::string_view text) {
    for (const BoolWord& known : boolWords)
        if (equalIgnoringCase(text, known.word)) return known.value;
    return std::nullopt;
}

std::optional<std::int32_t> numberOf(std::string_view text) {
    const auto number = scanNumber(text, 10);
    return number ? std::optional(static_cast<std::int32_t>(number->value)) : std::nullopt;
}

std::optional<std::int32_t> colourOf(std::string_view text) {
    if (!text.starts_with("0x") && !text.starts_with("0X")) return WinGetColourByName(std::string(text).c_str());
    const auto number = scanNumber(text, 16);
    return number ? std::optional(static_cast<std::int32_t>(number->value)) : std::nullopt;
}

std::optional<LRCT> rectOf(std::string_view text) {
    LRCT rect;
    for (std::int32_t* field : {&rect.left, &rect.top, &rect.right, &rect.bottom}) {
        const auto number = scanNumber(text, 10);
        if (!number) return std::nullopt;
        *field = static_cast<std::int32_t>(number->value);
    }
    return rect;
}

std::optional<WinFont> fontOf(std::string_view text, const WinFont& usual) {
    auto words = behindFace(text);
    if (!words) return std::nullopt;
    WinFont font;
    font.WinFontFaceSet(std::string(text.substr(1, text.size() - words->size() - 2)).c_str());
    font.WinFontSizeSet(usual.WinFontSizeGet());
    for (std::string_view word = takeWord(*words); !word.empty(); word = takeWord(*words)) applyWord(word, font);
    return font;
}

std::string_view wordWithoutMeaning(std::string_view fontText) {
    WinFont ignored;
    std::string_view words = behindFace(fontText).value_or("");
    for (std::string_view word = takeWord(words); !word.empty(); word = takeWord(words))
        if (!applyWord(word, ignored)) return word;
    return {};
}

std::string textOf(const LRCT& rect) {
    return formatText("%ld %ld %ld %ld", static_cast<long>(rect.left), static_cast<long>(rect.top),
                      static_cast<long>(rect.right), static_cast<long>(rect.bottom));
}

std::string textOf(const WinFont& font) {
    std::string text = '"' + font.WinFontFaceGet() + '"';
    for (const StyleWord& known : styleWords)
        if (font.WinFontStyleGet() & known.style) text.append(" ").append(known.word);
    return text + formatText(" %d", font.WinFontSizeGet());
}

}  // namespace kora
