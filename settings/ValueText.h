#pragma once

#include <kora/Utl.h>
#include <kora/Win.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// How values are written in profiles. What reads a text answers nothing when the text is no such value.
namespace kora {

/// Without the quotes, single or double, that a text of two characters or more stands in, and without white space at
/// its end.
std::string_view unquoted(std::string_view text);

/// "yes", "on", "true" and "no", "off", "false", without regard to case.
std::optional<bool> boolOf(std::string_view text);
/// A decimal number at the beginning; it wraps at 32 bits.
std::optional<std::int32_t> numberOf(std::string_view text);
/// A hexadecimal number when the text begins with "0x" or "0X", else the colour of that name: 0 for an unknown one.
std::optional<std::int32_t> colourOf(std::string_view text);
/// Four decimal numbers with white space between them: left, top, right, bottom.
std::optional<LRCT> rectOf(std::string_view text);
/// The face in double quotes, then words: styles, and the size in digits. Without a size the font keeps that of
/// @p usual, without styles it has none.
std::optional<WinFont> fontOf(std::string_view text, const WinFont& usual);
/// The first word of such a text that is passed over; empty when there is none.
std::string_view wordWithoutMeaning(std::string_view fontText);

std::string textOf(const LRCT& rect);
std::string textOf(const WinFont& font);

}  // namespace kora
