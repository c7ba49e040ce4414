#pragma once

#include <cstddef>
#include <string_view>

namespace kora::host {

/// How many bytes of @p text from @p at on are one character in UTF-8: 0 when they are none.
std::size_t characterLength(std::string_view text, std::size_t at);

}  // namespace kora::host
