#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Bytes of a log as each output may show them. What is not UTF-8 counts as Latin-1, byte for byte.
namespace kora::tracelog {

/// All characters as they are.
std::string utf8(std::string_view text);
/// For a terminal: what it would act on as \x1b, all other characters as they are.
std::string forTerminal(std::string_view text);
/// For the text and the attributes of a page.
std::string forHtml(std::string_view text);

/// Eight hexadecimal digits, as the log has them.
std::string hexWord(std::uint32_t word);
/// Three hexadecimal digits.
std::string hexLocation(std::uint32_t location);

}  // namespace kora::tracelog
