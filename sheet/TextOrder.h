#pragma once

#include <cstdint>
#include <string_view>

namespace kora {

/// The order of a sheet's texts, -1, 0 or 1: empty ones last, runs of digits as numbers of 16 bits, other characters as
/// signed bytes, a text that the other one begins with first.
///
///     a9 before a10     7 equals 007     65537 equals 1     B before a     anything before an empty text
///
/// It never contradicts itself: both texts are walked in steps of one whole number or one other character, every number
/// lies on the same side of every other character, and the first step that differs decides.
int compareCellTexts(std::string_view a, std::string_view b);

/// Numbers to sort many texts by: texts with different keys are in the order of their keys.
class TextKeys {
public:
    /// Every text that is to have a key, before the first one is asked for. They stay until the last one was.
    void add(std::string_view text);
    std::uint64_t key(std::string_view text) const;
    /// Whether texts with this key are equal. Otherwise it covers their beginning alone.
    static bool isWhole(std::uint64_t key) { return (key & 0xFF) != kLongerText; }

private:
    static constexpr std::uint64_t kLongerText = 8;

    std::string_view shared_;  // what all that are not empty begin with, up to a number
    bool any_ = false;
};

}  // namespace kora
