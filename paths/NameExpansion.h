#pragma once

#include <string>
#include <string_view>
#include <vector>

struct FileReference;

namespace kora {

/// @p name with every `%REFERENCE%` replaced that an environment variable, a named directory or the main profile
/// answers to; the others stay as they are.
/// All of them are noted in @p references, unless that is null.
std::string expandName(std::string_view name, std::vector<FileReference>* references = nullptr);

}  // namespace kora
