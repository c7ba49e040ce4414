#include "settings/ProfileText.h"

#include <cstdint>

#include "strings/Bytes.h"
#include "strings/FirstByte.h"
#include "strings/WhiteSpace.h"

namespace kora {

namespace {

constexpr bool isControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

/// Where the first `=` or control character is; the size when there is none.
std::size_t keyEnd(std::string_view line) {
    const auto ends = [](char c) { return c == '=' || isControl(c); };
    const auto endsIn = [](std::uint64_t bytes) {
        return bytesBelow(bytes, ' ') | bytesEqual(bytes, '=') | bytesEqual(bytes, '\x7f');
    };
    return static_cast<std::size_t>(firstByte(line.data(), line.data() + line.size(), ends, endsIn) - line.data());
}

/// @p line without the white space before its `[`.
bool readHeader(std::string_view line, ProfileLine& header) {
    const std::size_t close = line.find(']');
    if (close == line.npos || !trim(line.substr(close + 1)).empty()) return false;
    header.name = trim(line.substr(1, close - 1));
    if (header.name.empty()) return false;
    header.kind = ProfileLine::Kind::header;
    return true;
}

}  // namespace

ProfileLine readProfileLine(std::string_view line, bool mayHaveNul) {
    ProfileLine result;
    line = line.substr(0, kProfileLineLimit);
    if (mayHaveNul) line = line.substr(0, line.find('\0'));
    if (line.empty() || line.front() == ';' || line.front() == '/') return result;

    if (line.front() == '[' || isWhiteSpace(line.front())) {
        const std::string_view bare = trimStart(line);
        if (bare.starts_with('[') && readHeader(bare, result)) return result;
    }
    std::size_t equals = keyEnd(line);
    // White space behind the key may hold control characters too.
    while (equals < line.size() && isWhiteSpace(line[equals])) ++equals;
    if (equals == line.size() || line[equals] != '=') return result;
    const std::string_view key = trimEnd({line.data(), equals});
    if (key.empty()) return result;
    result.kind = ProfileLine::Kind::entry;
    result.name = key;
    result.value = trim({line.data() + equals + 1, line.size() - equals - 1});
    return result;
}

bool SectionWalk::isWanted(const ProfileLine& line) const {
    return line.kind == ProfileLine::Kind::header && equalIgnoringCase(line.name, section_);
}

/// The next header from here, of whatever section: brackets are rare, so they are looked for and not lines.
bool SectionWalk::nextHeader(ProfileLine& line, LinePlace& place) const {
    for (std::size_t open = text_.find('[', position_); open != text_.npos; open = text_.find('[', open + 1)) {
        std::size_t begin = open;
        while (begin > position_ && text_[begin - 1] != '\n' && isWhiteSpace(text_[begin - 1])) --begin;
        if (begin > position_ && text_[begin - 1] != '\n') continue;
        place = lineAt(text_, begin);
        line = readProfileLine(place.in(text_));
        if (line.kind == ProfileLine::Kind::header) return true;
    }
    return false;
}

bool SectionWalk::next(ProfileLine& line, LinePlace& place) {
    while (position_ < text_.size()) {
        if (inside_) {
            place = lineAt(text_, position_);
            line = readProfileLine(place.in(text_));
        } else if (!nextHeader(line, place)) {
            return false;
        }
        position_ = place.next;
        if (line.kind == ProfileLine::Kind::header) inside_ = isWanted(line);
        if (inside_) return true;
    }
    return false;
}

bool findProfileEntry(std::string_view text, std::string_view section, std::string_view key, ProfileLine& line,
                      LinePlace& place) {
    for (SectionWalk walk(text, section); walk.next(line, place);)
        if (line.kind == ProfileLine::Kind::entry && equalIgnoringCase(line.name, key)) return true;
    return false;
}

}  // namespace kora
