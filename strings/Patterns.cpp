#include <kora/Str.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "strings/Bytes.h"
#include "strings/Guarded.h"
#include "strings/SizedText.h"

using namespace kora;

namespace {

class Pattern {
public:
    Pattern(std::string_view pattern, bool caseSensitive) : rest_(pattern), caseSensitive_(caseSensitive) {}

    bool matches(std::string_view text) {
        // What stands before the first and behind the last open character matches in one place only.
        for (; !rest_.empty() && isSingle(rest_.back()); rest_.remove_suffix(1), text.remove_suffix(1)) {
            if (text.empty() || !takes(rest_.back(), text.back())) return false;
        }
        if (rest_.empty()) return text.empty();
        std::size_t front = sameWords(text);
        for (; isSingle(rest_[front]); ++front) {
            if (front == text.size() || !takes(rest_[front], text[front])) return false;
        }
        rest_.remove_prefix(front);
        text.remove_prefix(front);
        // Both ends are open characters now. A part between two stars may as well match where it fits first.
        while (rest_.front() == '*') {
            if (rest_.size() == 1) return true;
            std::size_t end = 1;
            while (isSingle(rest_[end])) ++end;
            if (rest_[end] == '#') break;
            if (!skipPast(rest_.substr(1, end - 1), text)) return false;
            rest_.remove_prefix(end);
        }
        if (rest_ == "#") return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
        bool matched = false;
        return guarded([&] { matched = matchesStates(text); }) && matched;
    }

private:
    using Places = std::vector<std::size_t>;
    static constexpr std::size_t kSteps = 4;  // fewer take less time than a call

    static bool isSingle(char c) { return c != '*' && c != '#'; }

    bool takes(char single, char c) const {
        return single == c || single == '?' || (!caseSensitive_ && foldCase(single) == foldCase(c));
    }

    // How many bytes of the pattern are no open characters and stand in the text, as far as whole words tell.
    std::size_t sameWords(std::string_view text) const {
        std::size_t at = 0;
        if constexpr (std::endian::native == std::endian::little) {
            for (; at + sizeof(std::uint64_t) <= std::min(rest_.size(), text.size()); at += sizeof(std::uint64_t)) {
                std::uint64_t ours, theirs;
                std::memcpy(&ours, rest_.data() + at, sizeof ours);
                std::memcpy(&theirs, text.data() + at, sizeof theirs);
                const std::uint64_t stops = (ours ^ theirs) | bytesEqual(ours, '*') | bytesEqual(ours, '#');
                if (stops != 0) return at + static_cast<std::size_t>(std::countr_zero(stops)) / 8;
            }
        }
        return at;
    }

    // Takes from the text all up to the end of the first place that fits.
    bool skipPast(std::string_view part, std::string_view& text) const {
        if (part.empty()) return true;
        const char first = part.front();
        const bool literal = caseSensitive_ && first != '?';
        if (part.size() > text.size()) return false;
        const std::string_view places = text.substr(0, text.size() - part.size() + 1);
        for (std::size_t at = 0; at < places.size(); ++at) {
            if (literal && places[at] != first) {
                if (at < kSteps) continue;
                at = places.find(first, at);
                if (at == std::string_view::npos) return false;
            }
            std::size_t same = 0;
            while (takes(part[same], text[at + same])) {
                if (++same < part.size()) continue;
                text.remove_prefix(at + same);
                return true;
            }
        }
        return false;
    }

    // With '#': every place in the pattern that the text so far can lead to, in rising order. A star that is reached
    // can do whatever any place before it can, so the places before it are dropped.
    bool matchesStates(std::string_view text) const {
        Places now, next;
        now.reserve(rest_.size() + 1);
        next.reserve(rest_.size() + 1);
        reach(0, now);
        for (const char c : text) {
            next.clear();
            for (const std::size_t place : now) {
                if (place == rest_.size()) break;
                const char open = rest_[place];
                if (isSingle(open)) {
                    if (takes(open, c)) reach(place + 1, next);
                } else if (open == '*') {
                    reach(place, next);
                } else if (isDigit(c)) {
                    reach(place, next);
                    reach(place + 1, next);
                }
            }
            if (next.empty()) return false;
            std::swap(now, next);
        }
        return now.back() == rest_.size();
    }

    // Adds a place to those that a character leads to; a star lets the text go on behind it at once.
    void reach(std::size_t place, Places& places) const {
        for (;; ++place) {
            if (!places.empty() && places.back() >= place) return;
            const bool star = place < rest_.size() && rest_[place] == '*';
            if (star) places.clear();
            places.push_back(place);
            if (!star) return;
        }
    }

    std::string_view rest_;
    bool caseSensitive_;
};

}  // namespace

bool StrComparePattern(const char* pattern, int patternSize, const char* s, int size, bool caseSensitive) {
    return Pattern(measuredText(pattern, patternSize), caseSensitive).matches(measuredText(s, size));
}
