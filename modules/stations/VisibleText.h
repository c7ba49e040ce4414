#pragma once

#include <kora/Kora.h>

#include <cstddef>
#include <string_view>

namespace stations {

/// The text as a terminal may show it: UTF-8, in which a question mark stands for each byte that is none, and for each
/// character that could do more than be seen (controls, and those that turn the writing direction).
/// It is never longer than the text was.
CString visible(std::string_view text);

/// How many characters a visible text has.
std::size_t visibleLength(std::string_view text);

}  // namespace stations
