#include <kora/Win.h>

#include <exception>

#include "geometry/ColourNames.h"
#include "strings/Format.h"

CString WinColourToText(int colour) try {
    const auto bits = static_cast<std::uint32_t>(colour);
    for (const kora::NamedColour& named : kora::kColourNames)
        if (named.value == bits) return CString(named.name);
    return kora::formatText("0x%08X", bits);
} catch (const std::exception&) {
    return {};
}
