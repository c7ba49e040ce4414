#pragma once

#include <cstddef>
#include <string_view>

/// What stands in the lines of a profile file: plain 8-bit text of sections and entries.
///
///     [ Frame ]           a section header: only white space before `[` and after `]`, none left inside; a name
///     Zoomed = True       an entry: printable characters up to the first `=`, white space behind them dropped; the
///                         value without white space on either side
///     ; as it was         a comment: `;` or `/` is the very first character
///
/// Everything else is no line of ours and is kept. A line ends at its line feed; what is seen of it ends before that
/// at 1023 characters, or at a NUL. Bytes from 0x80 up are printable.
namespace kora {

inline constexpr std::size_t kProfileLineLimit = 1023;

struct ProfileLine {
    enum class Kind : unsigned char { other, header, entry };
    Kind kind = Kind::other;
    std::string_view name;   ///< of the section or the key
    std::string_view value;  ///< of an entry
};

/// Reads one line, given without its line feed. Who knows that there is no NUL in it can say so.
ProfileLine readProfileLine(std::string_view line, bool mayHaveNul = true);

/// Where a line lies in its text.
struct LinePlace {
    std::size_t begin = 0;
    std::size_t end = 0;   ///< of what stands in it: the line feed, or the end of the text
    std::size_t next = 0;  ///< where the next line begins; end itself for a last line without line feed

    std::string_view in(std::string_view text) const { return text.substr(begin, end - begin); }
};

inline LinePlace lineAt(std::string_view text, std::size_t begin) {
    const std::size_t feed = text.find('\n', begin);
    if (feed == text.npos) return {begin, text.size(), text.size()};
    return {begin, feed, feed + 1};
}

/// Walks the lines of every section of one name, their headers included; sections are matched without regard to case.
/// What lies between is passed over without looking at each line.
class SectionWalk {
public:
    SectionWalk(std::string_view text, std::string_view section) : text_(text), section_(section) {}

    /// The next line; false after the last.
    bool next(ProfileLine& line, LinePlace& place);

private:
    bool nextHeader(ProfileLine& line, LinePlace& place) const;
    bool isWanted(const ProfileLine& line) const;

    std::string_view text_, section_;
    std::size_t position_ = 0;  // always the beginning of a line
    bool inside_ = false;
};

/// Finds the first entry of @p key, without regard to case, in a section of that name. False when there is none.
bool findProfileEntry(std::string_view text, std::string_view section, std::string_view key, ProfileLine& line,
                      LinePlace& place);

}  // namespace kora
