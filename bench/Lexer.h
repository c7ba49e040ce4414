#pragma once

#include <string>

namespace kora::bench {

/// The peer of the text reader, made by flex: how many tokens between blanks, statement ends and nested comments.
long lexerTokens(const std::string& text);

}  // namespace kora::bench
