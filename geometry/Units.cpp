#include <kora/Utl.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

#include "strings/Bytes.h"
#include "strings/Format.h"
#include "strings/Guarded.h"

using namespace kora;

namespace {

constexpr float kQzPerInch = 1008;
constexpr float kQzPerCm = 397;

// Rounds to single precision by way of memory: a processor that reckons wider keeps the rest otherwise. A sum, product
// or quotient of floats that was had in a double, or wider, comes out as if it had been rounded once.
float single(double value) {
    const volatile float rounded = static_cast<float>(value);
    return rounded;
}

bool isInch(eUtlUnit unit) { return (unit == UtlUnitPreferred ? UtlGetPreferredUnit() : unit) == UtlUnitInch; }

std::string_view withoutBlanksInFront(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view withoutBlanks(std::string_view text) {
    text = withoutBlanksInFront(text);
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

// The number at the beginning of a run of digits and points. One too small for a float is 0, one too large is none.
std::optional<float> leadingNumber(std::string_view run) {
    float number = 0;
    const auto result = std::from_chars(run.data(), run.data() + run.size(), number, std::chars_format::fixed);
    if (result.ec == std::errc()) return number;
    const bool small = run.find_first_not_of('0') == run.find('.');
    return result.ec == std::errc::result_out_of_range && small ? std::optional(0.0f) : std::nullopt;
}

std::optional<float> factorOf(std::string_view suffix, eUtlUnit unit) {
    if (suffix.empty()) return isInch(unit) ? kQzPerInch : kQzPerCm;
    for (const std::string_view inch : {"\"", "in", "in.", "inch"})
        if (equalIgnoringCase(suffix, inch)) return kQzPerInch;
    for (const std::string_view cm : {"cm", "cm."})
        if (equalIgnoringCase(suffix, cm)) return kQzPerCm;
    return std::nullopt;
}

// Wraps at 32 bits; what not even 64 hold is 0.
int truncatedToInt(float value) {
    constexpr float kBeyond64Bits = 9223372036854775808.0f;
    return value < kBeyond64Bits ? static_cast<int>(static_cast<std::int64_t>(value)) : 0;
}

}  // namespace

void UtlQzUnitsToString(int value, CString& out, eUtlUnit unit) {
    const bool inch = isInch(unit);
    const float length = single(double{single(value)} / double{inch ? kQzPerInch : kQzPerCm});
    guarded([&] {
        CString text = formatText("%0.3f", double{length});
        while (text.back() == '0') text.pop_back();
        if (text.back() == '.') text.pop_back();
        text.append(inch ? " in" : " cm");
        out.swap(text);
    });
}

bool UtlStringToQzUnits(CString& text, int& value, eUtlUnit unit) {
    const std::string_view rest = withoutBlanksInFront(text);
    const std::string_view run = rest.substr(0, rest.find_first_not_of("0123456789."));
    const auto number = leadingNumber(run);
    if (!number) return false;
    const auto factor = factorOf(withoutBlanks(rest.substr(run.size())), unit);
    if (!factor) return false;
    const float product = single(double{*number} * double{*factor});
    if (std::isinf(product)) return false;
    value = truncatedToInt(single(double{product} + 0.5));
    return true;
}
