#include "tools/kora-trace/Timeline.h"

#include <algorithm>
#include <map>
#include <set>

#include "tools/kora-trace/Escapes.h"
#include "tools/kora-trace/Pages.h"

namespace kora::tracelog {

namespace {

constexpr std::size_t kLeft = 190, kRight = 20, kTop = 22, kLane = 20, kBottom = 22, kBar = 10;
constexpr std::size_t kWidth = Dump::kWords, kMostTicks = 8, kNameWidth = 16;
constexpr std::size_t kHues = 6;

std::string number(std::size_t value) { return std::to_string(value); }

class Drawing {
public:
    Drawing(const Dump& dump, const std::vector<Item>& items, const NameTable& names)
        : dump_(dump), items_(items), names_(names), first_(dump.unwritten()) {
        for (const Item& item : items_)
            if (item.kind != Kind::word) lanes_.emplace(laneOf(item), 0);
        std::size_t lane = 0;
        for (auto& [key, place] : lanes_) place = lane++;
    }

    std::string text() {
        const std::size_t height = kTop + lanes_.size() * kLane + kBottom;
        out_ = "<svg class=\"timeline\" viewBox=\"0 0 " + number(kLeft + kWidth + kRight) + ' ' + number(height) +
               "\" role=\"img\" aria-label=\"Timeline of the dump\">\n";
        lanes();
        axis();
        missing();
        bars();
        faults();
        return out_ + "</svg>\n";
    }

private:
    static std::uint32_t laneOf(const Item& item) { return placeKey(moduleOf(item.word), 0) << 6 | fileOf(item.word); }
    std::size_t top(const Item& item) const { return kTop + lanes_.at(laneOf(item)) * kLane; }
    std::size_t bottom() const { return kTop + lanes_.size() * kLane; }
    // The slots that were written fill the width.
    std::size_t xOf(std::size_t position) const {
        return kLeft + (position - std::min(first_, position)) * kWidth / (Dump::kWords - first_);
    }
    // Words of which nobody knows where they stood are drawn in the order in which they were read.
    std::size_t position(std::size_t word) const { return dump_.position(word).value_or(word); }
    std::size_t x(std::size_t word) const { return xOf(position(word)); }
    std::size_t endOf(std::size_t word) const { return std::max(xOf(position(word) + 1), x(word) + 1); }

    void rect(const std::string& style, std::size_t left, std::size_t y, std::size_t width, std::size_t height,
              const std::string& title) {
        out_ += "<rect class=\"" + style + "\" x=\"" + number(left) + "\" y=\"" + number(y) + "\" width=\"" +
                number(width) + "\" height=\"" + number(height) + "\"><title>" + forHtml(title) + "</title></rect>\n";
    }

    void lanes() {
        std::map<std::uint32_t, std::size_t> drawn;
        for (const Item& item : items_) {
            if (item.kind == Kind::word || !drawn.emplace(laneOf(item), 0).second) continue;
            const std::size_t y = top(item);
            const bool shaded = lanes_.at(laneOf(item)) % 2 == 0;
            out_ += "<rect class=\"" + std::string(shaded ? "lane shaded" : "lane") + "\" x=\"" + number(kLeft) +
                    "\" y=\"" + number(y) + "\" width=\"" + number(kWidth) + "\" height=\"" + number(kLane) +
                    "\"/>\n<text class=\"name\" x=\"" + number(kLeft - 8) + "\" y=\"" + number(y + 14) + "\"><tspan>" +
                    forHtml(moduleLabel(item.word, names_)) + "</tspan> " + forHtml(fileLabel(item.word, names_)) +
                    "</text>\n";
        }
    }

    void axis() {
        std::size_t step = 1;
        while (step * kMostTicks < Dump::kWords - first_) step *= 2;
        for (std::size_t age = 0; age <= Dump::kWords - first_; age += step) {
            const std::size_t at = xOf(Dump::kWords - age);
            out_ += "<line class=\"tick\" x1=\"" + number(at) + "\" y1=\"" + number(kTop) + "\" x2=\"" + number(at) +
                    "\" y2=\"" + number(bottom()) + "\"/><text class=\"age\" x=\"" + number(at) + "\" y=\"" +
                    number(bottom() + 15) + "\">" + (age == 0 ? "newest" : number(age)) + "</text>\n";
        }
        out_ += "<text class=\"ages\" x=\"" + number(kLeft - 20) + "\" y=\"" + number(bottom() + 15) + "\">" +
                (dump_.overwritten() > 0 ? std::to_string(dump_.overwritten()) + " overwritten," : "") +
                " age</text>\n";
        if (const auto wrap = dump_.wrapAge())
            rect("wrap", xOf(Dump::kWords - 1 - *wrap), kTop, 1, bottom() - kTop,
                 "The ring wrapped: slot 0, age " + number(*wrap));
    }

    // What was cut off.
    void missing() {
        if (dump_.ended || dump_.isWhole() || dump_.words.empty()) return;
        const std::size_t left = endOf(dump_.words.size() - 1);
        rect("missing", left, kTop, kLeft + kWidth - std::min(left, kLeft + kWidth), bottom() - kTop, "cut off here");
    }

    // Neighbours of one lane are one bar.
    void bars() {
        for (std::size_t i = 0; i < items_.size();) {
            const Item& first = items_[i];
            if (first.kind == Kind::word) {
                ++i;
                continue;
            }
            std::size_t behind = i + 1;
            while (behind < items_.size() && items_[behind].kind != Kind::word &&
                   laneOf(items_[behind]) == laneOf(first) && follows(items_[behind - 1], items_[behind]))
                ++behind;
            const Item& last = items_[behind - 1];
            const std::size_t lastWord = last.first + last.size - 1;
            std::string title = moduleLabel(first.word, names_) + ' ' + fileLabel(first.word, names_) + ": ";
            title += behind - i == 1 ? placeLabel(first) : number(behind - i) + " steps";
            title += ", age " + ageLabel(dump_, first.first);
            if (lastWord > first.first) title += " to " + ageLabel(dump_, lastWord);
            const std::string hue = number(moduleOf(first.word) % kHues);
            rect("bar hue" + hue, x(first.first), top(first) + (kLane - kBar) / 2, endOf(lastWord) - x(first.first),
                 kBar, title);
            i = behind;
        }
    }

    bool follows(const Item& a, const Item& b) const { return position(a.first) + a.size == position(b.first); }

    std::string placeLabel(const Item& item) const {
        return hexLocation(locationOf(item.word)) + (item.place != nullptr ? ' ' + item.place->text : "");
    }

    // The worst are drawn last, and named first where there is no room for the names of all.
    void faults() {
        std::vector<const Item*> faults;
        for (const Item& item : items_)
            if (item.kind == Kind::fault) faults.push_back(&item);
        std::stable_sort(faults.begin(), faults.end(),
                         [](const Item* a, const Item* b) { return levelOf(a->word) > levelOf(b->word); });
        std::set<std::size_t> named;
        std::vector<std::string> marks;
        for (const Item* fault : faults) {
            const std::size_t at = x(fault->first);
            const auto next = named.lower_bound(at - kNameWidth);
            const bool room = next == named.end() || *next > at + kNameWidth;
            if (room) named.insert(at);
            marks.push_back(faultMark(*fault, at, room));
        }
        for (auto mark = marks.rbegin(); mark != marks.rend(); ++mark) out_ += *mark;
    }

    std::string faultMark(const Item& fault, std::size_t at, bool isNamed) const {
        const std::uint32_t level = levelOf(fault.word);
        const std::string left = number(at);
        std::string mark = "<g class=\"fault sev" + std::to_string(severity(level)) + "\"><title>" +
                           forHtml(faultLabel(dump_, fault, names_)) + "</title><line x1=\"" + left + "\" y1=\"" +
                           number(kTop - 4) + "\" x2=\"" + left + "\" y2=\"" + number(bottom()) + "\"/><path d=\"M" +
                           left + ' ' + number(top(fault) + kLane / 2 - 7) + "l7 7l-7 7l-7-7z\"/>";
        if (isNamed)
            mark += "<text x=\"" + left + "\" y=\"" + number(kTop - 8) + "\">" + std::to_string(level) + "</text>";
        return mark + "</g>\n";
    }

    const Dump& dump_;
    const std::vector<Item>& items_;
    const NameTable& names_;
    std::size_t first_;                           // position that was written first
    std::map<std::uint32_t, std::size_t> lanes_;  // from the top
    std::string out_;
};

}  // namespace

std::string timeline(const Dump& dump, const std::vector<Item>& items, const NameTable& names) {
    return Drawing(dump, items, names).text();
}

}  // namespace kora::tracelog
