#pragma once

#include <string>

namespace kora::bench {

/// What a text holds between blanks and nested comments.
struct Counts {
    long tokens = 0;
    long statements = 0;

    bool operator==(const Counts&) const = default;
};

/// The peer of the text reader, made by flex, which tells statement ends from tokens too.
Counts lexerCounts(const std::string& text);

}  // namespace kora::bench
