#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What a trace log holds, in the order in which it stands there.
namespace kora::tracelog {

struct Note {
    std::uint64_t line = 0;
    std::string date;  ///< "Nov 05, 2026 - 19:12:30"; empty when the note has none
    std::string text;  ///< without the date
};

/// Lines that could not be read.
struct Skipped {
    std::uint64_t line = 0, lines = 0;
    const char* why = "";
};

/// A dump of the ring, or what is left of one.
struct Dump {
    static constexpr std::size_t kWords = 1024;
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    std::uint64_t line = 0, lastLine = 0;
    std::optional<std::uint32_t> count;  ///< words ever written; none when the dump's first line is missing
    std::string reason;
    std::string date;                  ///< of the last dated note before it
    std::vector<std::uint32_t> words;  ///< as they were read, oldest first; 1024 when all are there
    std::size_t firstGap = kNone;      ///< before which word something may be missing, where that was seen
    std::size_t lastGap = kNone;       ///< the same, the last such place
    bool ended = false;                ///< $ENDDUMP was there
    bool mixed = false;                ///< another dump's lines stand among its own

    bool isWhole() const { return words.size() == kWords; }
    /// Where in the ring a word stood, 0 the oldest to 1023 the newest; nothing where missing words leave that open.
    std::optional<std::size_t> position(std::size_t word) const;
    /// Words written after it: 0 is the newest.
    std::optional<std::size_t> age(std::size_t word) const;
    /// Whether other words are missing in front of a word.
    bool gapBefore(std::size_t word) const { return !isWhole() && word > 0 && (word == firstGap || word == lastGap); }
    /// How many words at the front are slots that were never written.
    std::size_t unwritten() const;
    /// How many words were overwritten by newer ones.
    std::uint32_t overwritten() const { return count.value_or(0) > kWords ? *count - std::uint32_t{kWords} : 0; }
    /// The age of the ring's slot 0 where it was written more than once: its newer words begin there.
    std::optional<std::size_t> wrapAge() const;
    /// Whether the slots that it should not have written yet hold words: after 2^32 words it begins again at 0.
    bool countIsLow() const { return count.value_or(kWords) < kWords && unwritten() < kWords - *count && isWhole(); }
    /// What is wrong with it, in sentences without a full stop.
    std::vector<std::string> damage() const;
};

/// Whoever takes the records.
class Sink {
public:
    virtual ~Sink() = default;
    virtual void note(const Note& note) = 0;
    virtual void dump(const Dump& dump) = 0;
    virtual void skipped(const Skipped& skipped) = 0;
};

}  // namespace kora::tracelog
