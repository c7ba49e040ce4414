#pragma once

#include <string>
#include <string_view>

namespace kora {

/// @p name with every `%REFERENCE%` replaced that an environment variable, a named directory or the main profile
/// answers to; the others stay as they are.
std::string expandName(std::string_view name);

}  // namespace kora
