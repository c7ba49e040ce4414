#include <kora/Win.h>

#include <array>
#include <cstdlib>
#include <string_view>

#include "geometry/ColourNames.h"
#include "geometry/ColourValue.h"
#include "strings/Bytes.h"
#include "strings/NumberText.h"

namespace kora {
namespace {

constexpr std::uint32_t rgb(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return red | green << 8 | blue << 16;
}

constexpr int kPaletteSize = 21;

// Indexed by palette index. Green is 240, light red 155 where its neighbours have 150: documents are drawn in these.
constexpr std::array<std::uint32_t, kPaletteSize + 1> palette = {
    0,                   // unset
    rgb(255, 0, 0),      // red
    rgb(0, 240, 0),      // green
    rgb(0, 0, 255),      // blue
    rgb(0, 255, 255),    // cyan
    rgb(255, 0, 255),    // magenta
    rgb(255, 255, 0),    // yellow
    rgb(0, 0, 0),        // black
    rgb(110, 110, 110),  // dkgray
    rgb(150, 150, 150),  // gray
    rgb(200, 200, 200),  // ltgray
    rgb(255, 255, 255),  // white
    rgb(230, 230, 230),  // vltgray
    rgb(150, 150, 255),  // ltblue
    rgb(150, 255, 150),  // ltgreen
    rgb(255, 155, 155),  // ltred, pink
    rgb(0, 0, 120),      // dkblue
    rgb(0, 120, 0),      // dkgreen
    rgb(120, 0, 0),      // dkred
    rgb(150, 0, 150),    // violet
    rgb(255, 150, 0),    // orange
    rgb(242, 242, 242),  // xltgray
};

constexpr bool isDirect(std::uint32_t colour) { return (colour & kDirectMask) == kDirectTag; }
constexpr bool isPaletteIndex(std::uint32_t colour) { return colour >= 1 && colour <= kPaletteSize; }

int distance(std::uint32_t a, std::uint32_t b) {
    int sum = 0;
    for (int shift = 0; shift < 24; shift += 8)
        sum += std::abs(static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF));
    return sum;
}

}  // namespace
}  // namespace kora

bool WinIsValidColour(int colour) {
    using namespace kora;
    const auto bits = static_cast<std::uint32_t>(colour);
    if (isDirect(bits)) return true;
    const std::uint32_t plain = bits & ~kColourFlag;
    return isPaletteIndex(plain) || plain == kForeground || plain == kBackground || plain == kNone;
}

unsigned long WinMapColour(int colour) {
    using namespace kora;
    const auto bits = static_cast<std::uint32_t>(colour);
    if (isDirect(bits)) return bits & kRgbMask;
    const std::uint32_t plain = bits & ~kColourFlag;
    if (isPaletteIndex(plain)) return palette[plain];
    return plain == kBackground || plain == kNone ? kWhite : kBlack;
}

int WinGetColourByName(const char* name) {
    using namespace kora;
    if (!name) return 0;
    std::string_view text = name;
    for (const NamedColour& named : kColourNames)
        if (equalIgnoringCase(named.name, text)) return static_cast<int>(named.value);

    if (!text.starts_with("0x")) return 0;
    text.remove_prefix(2);
    const auto number = scanNumber(text, 16);
    if (!number || number->wrapped || number->value > kRgbMask) return 0;
    return static_cast<int>(number->value | kDirectTag);
}

int WinGetClosestQzColor(unsigned long rgb) {
    using namespace kora;
    const auto wanted = static_cast<std::uint32_t>(rgb) & kRgbMask;
    int best = 0, bestDistance = 0;
    for (int index = 1; WinIsValidColour(index); ++index) {
        const int here = distance(palette[static_cast<std::size_t>(index)], wanted);
        if (best != 0 && here >= bestDistance) continue;
        best = index;
        bestDistance = here;
    }
    return best;
}
