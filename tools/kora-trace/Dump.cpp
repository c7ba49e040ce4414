#include "tools/kora-trace/Record.h"

namespace kora::tracelog {

std::optional<std::size_t> Dump::position(std::size_t word) const {
    if (isWhole()) return word;
    const bool seen = firstGap != kNone;
    // Words that are missing without a trace count as missing in front: the end is what matters.
    const std::size_t fromFront = !count ? 0 : seen ? firstGap : ended ? 0 : words.size();
    const std::size_t fromBack = !ended ? words.size() : seen ? lastGap : 0;
    if (word < fromFront) return word;
    if (word >= fromBack) return kWords - words.size() + word;
    return std::nullopt;
}

std::optional<std::size_t> Dump::age(std::size_t word) const {
    const auto place = position(word);
    return place ? std::optional(kWords - 1 - *place) : std::nullopt;
}

std::optional<std::size_t> Dump::wrapAge() const {
    return overwritten() > 0 ? std::optional((*count - 1) % kWords) : std::nullopt;
}

std::size_t Dump::unwritten() const {
    if (!count || *count >= kWords) return 0;
    std::size_t leading = 0;
    for (; leading < words.size(); ++leading) {
        const auto place = position(leading);
        if (!place || *place >= kWords - *count) break;
        // A count that is smaller than the words there are has wrapped at 32 bits.
        if (words[leading] != 0) return 0;
    }
    return leading;
}

std::vector<std::string> Dump::damage() const {
    std::vector<std::string> sentences;
    const std::string missing = std::to_string(kWords - words.size());
    if (!count) sentences.push_back("its first line is missing, and with it the count of words");
    if (!ended && !isWhole())
        sentences.push_back("cut off after " + std::to_string(words.size()) + " words: the newest are missing");
    else if (!ended)
        sentences.push_back("its last line is missing");
    else if (!isWhole())
        sentences.push_back(missing + " of its words are missing");
    if (mixed) sentences.push_back("another dump's lines stand among its own: words of the two may be confused");
    return sentences;
}

}  // namespace kora::tracelog
