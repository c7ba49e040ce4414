#include "settings/ValueCheck.h"

#include <kora/File.h>
#include <kora/Win.h>

#include "geometry/ColourNames.h"
#include "settings/Nearest.h"
#include "settings/ValueText.h"
#include "strings/Bytes.h"
#include "strings/Format.h"
#include "strings/NumberText.h"
#include "strings/WhiteSpace.h"

namespace kora {

namespace {

/// Whether what stands behind a value is no part of it.
bool isEnd(std::string_view rest) { return rest.empty() || isWhiteSpace(rest.front()) || rest.front() == ';'; }

ValueFault boolFault(std::string_view text) {
    if (boolOf(text)) return {};
    Nearest nearest(text);
    for (const char* word : {"yes", "no", "on", "off", "true", "false"}) nearest.offer(word);
    return {"neither yes nor no", nearest.name()};
}

/// Takes a number from @p text; false when there is none. @p fits becomes false for one beyond @p greatest.
bool takeNumber(std::string_view& text, std::uint32_t greatest, bool& fits) {
    const bool negative = trimStart(text).starts_with('-');
    const auto number = scanNumber(text, 10);
    if (!number) return false;
    const std::uint32_t size = negative ? 0 - number->value : number->value;
    fits = fits && !number->wrapped && size <= greatest + (negative ? 1 : 0);
    return true;
}

ValueFault numberFault(std::string_view text, std::uint32_t greatest) {
    bool fits = true;
    if (!takeNumber(text, greatest, fits) || !isEnd(text)) return {"no whole number", ""};
    return fits ? ValueFault{} : ValueFault{"out of range", ""};
}

ValueFault colourFault(std::string_view text) {
    if (!text.starts_with("0x") && !text.starts_with("0X")) {
        Nearest nearest(text);
        for (const NamedColour& named : kColourNames) {
            if (equalIgnoringCase(named.name, text)) return {};
            nearest.offer(named.name);
        }
        return {"no colour's name", nearest.name()};
    }
    std::string_view rest = text;
    const auto number = scanNumber(rest, 16);
    if (!number || number->wrapped || !isEnd(rest)) return {"no hexadecimal number", ""};
    if (number->value == 0 || WinIsValidColour(static_cast<int>(number->value))) return {};
    if (number->value > kRgbMask) return {"no valid colour", ""};
    return {"a colour without its tag", formatText("0x%08X", number->value | kDirectTag)};
}

ValueFault rectFault(std::string_view text) {
    bool fits = true;
    for (int i = 0; i < 4; ++i)
        if (!takeNumber(text, INT32_MAX, fits)) return {"not four whole numbers", ""};
    if (!isEnd(text)) return {"not four whole numbers", ""};
    return fits ? ValueFault{} : ValueFault{"out of range", ""};
}

ValueFault fontFault(std::string_view text) {
    if (!fontOf(text, WinFont())) return {"no face in double quotes", ""};
    const std::string_view word = wordWithoutMeaning(text);
    if (word.empty()) return {};
    Nearest nearest(word);
    for (const char* style : {"Bold", "Italic", "Frame", "Shadow", "Rule"}) nearest.offer(style);
    return {'"' + std::string(word) + "\" is neither a style nor a size", nearest.name()};
}

ValueFault pathFault(std::string_view text) {
    return FilePath().FileStringSet(std::string(text).c_str()) ? ValueFault{} : ValueFault{"no path of a file", ""};
}

}  // namespace

ValueFault valueFault(eIniKind kind, std::string_view text) {
    switch (kind) {
        case IniKindBool:
            return boolFault(text);
        case IniKindInt:
        case IniKindLong:
            return numberFault(text, INT32_MAX);
        case IniKindShort:
            return numberFault(text, INT16_MAX);
        case IniKindColour:
            return colourFault(text);
        case IniKindRect:
            return rectFault(text);
        case IniKindFont:
            return fontFault(text);
        case IniKindPath:
            return pathFault(text);
        case IniKindText:
            break;
    }
    return {};
}

}  // namespace kora
