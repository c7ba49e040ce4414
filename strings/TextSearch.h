#pragma once

#include <cstddef>
#include <string_view>

namespace kora {

/// The first index of @p sought in @p text, or npos; an empty text is found at 0. Takes time linear in both whatever
/// they hold, and no memory.
/// @param ended whether a NUL stands behind @p text; neither of the two holds one then
std::size_t findText(std::string_view text, bool ended, std::string_view sought);

}  // namespace kora
