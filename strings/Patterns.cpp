#include <kora/Str.h>

#include <algorithm>
#include <cstddef>
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
        std::size_t front = 0;
        for (; front < rest_.size() && isSingle(rest_[front]); ++front) {
            if (front == text.size() || !takes(rest_[front], text[front])) return false;
        }
        rest_.remove_prefix(front);
        text.remove_prefix(front);
        for (; !rest_.empty() && isSingle(rest_.back()); rest_.remove_suffix(1), text.remove_suffix(1)) {
            if (text.empty() || !takes(rest_.back(), text.back())) return false;
        }
        if (rest_.empty()) return text.empty();
        if (rest_.find('#') == std::string_view::npos) return matchesStars(text);
        if (rest_ == "#") return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
        bool matched = false;
        return guarded([&] { matched = matchesStates(text); }) && matched;
    }

private:
    using Places = std::vector<std::size_t>;

    static bool isSingle(char c) { return c != '*' && c != '#'; }

    bool takes(char single, char c) const {
        return single == c || single == '?' || (!caseSensitive_ && foldCase(single) == foldCase(c));
    }

    // A pattern without '#' that begins and ends with '*'. Each part between two stars may as well match where it fits
    // first.
    bool matchesStars(std::string_view text) const {
        std::size_t next = 0;
        for (;;) {
            while (rest_[next] == '*')
                if (++next == rest_.size()) return true;
            const std::size_t start = next;
            while (rest_[next] != '*') ++next;
            const std::string_view part = rest_.substr(start, next - start);
            if (!skipTo(part, text)) return false;
            text.remove_prefix(part.size());
        }
    }

    // Takes from the text what stands before the first place that fits.
    bool skipTo(std::string_view part, std::string_view& text) const {
        const char first = part.front();
        const bool literal = caseSensitive_ && first != '?';
        for (; part.size() <= text.size(); text.remove_prefix(1)) {
            if (literal && text.front() != first) {
                const std::size_t skipped = text.find(first);
                if (skipped == std::string_view::npos) return false;
                text.remove_prefix(skipped);
                if (part.size() > text.size()) return false;
            }
            std::size_t same = 0;
            while (takes(part[same], text[same]))
                if (++same == part.size()) return true;
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
