#include <algorithm>
#include <array>

#include "tools/kora-trace/Escapes.h"
#include "tools/kora-trace/Fold.h"
#include "tools/kora-trace/Pages.h"

namespace kora::tracelog {

namespace {

constexpr const char* kDim = "2";
constexpr const char* kBold = "1";
constexpr const char* kBySeverity[] = {"36", "33", "31", "1;31"};
constexpr const char* kTimes = " \xC3\x97 ";

using Row = std::array<std::string, 6>;  // age, word, level, module, file, place

class TextPage : public Page {
public:
    TextPage(std::ostream& out, const NameTable& names, bool colours) : out_(out), names_(names), colours_(colours) {}

    void note(const Note& note) override {
        out_ << (note.date.empty() ? "" : coloured(forTerminal(note.date), kDim) + "  ") << forTerminal(note.text)
             << '\n';
    }

    void skipped(const Skipped& skipped) override {
        out_ << coloured('[' + linesLabel(skipped.line, skipped.lines) + " skipped: " + skipped.why + ']', kDim)
             << '\n';
    }

    void dump(const Dump& dump) override {
        const std::vector<Item> items = decode(dump, names_);
        heading(dump, items);
        if (!items.empty()) steps(dump, items);
        out_ << '\n';
    }

    void end(const Summary& summary) override { out_ << summaryLabel(summary) << '\n'; }

private:
    std::string coloured(const std::string& text, const char* colour) const {
        return colours_ && colour != nullptr ? "\x1b[" + std::string(colour) + 'm' + text + "\x1b[0m" : text;
    }

    void heading(const Dump& dump, const std::vector<Item>& items) {
        const std::string reason = dump.reason.empty() ? "" : ": " + forTerminal(dump.reason);
        out_ << '\n' << coloured("== dump, line " + std::to_string(dump.line) + reason, kBold) << '\n';
        if (!dump.date.empty()) out_ << "   after the note of " << forTerminal(dump.date) << '\n';
        out_ << "   " << countLabel(dump) << '\n';
        for (const std::string& sentence : dump.damage()) out_ << "   damaged: " << sentence << '\n';
        if (const Item* fault = severest(items))
            out_ << "   severest fault: "
                 << coloured(faultLabel(dump, *fault, names_), kBySeverity[severity(levelOf(fault->word))]) << '\n';
        out_ << '\n';
    }

    Row row(const Dump& dump, const Item& item) const {
        Row row = {ageLabel(dump, item.first), hexWord(item.word), {}, {}, {}, {}};
        if (item.kind == Kind::word) {
            row[5] = "no code";
            return row;
        }
        if (item.kind == Kind::fault) row[2] = std::to_string(levelOf(item.word));
        row[3] = forTerminal(moduleLabel(item.word, names_));
        row[4] = forTerminal(fileLabel(item.word, names_));
        row[5] = hexLocation(locationOf(item.word));
        if (item.place != nullptr) row[5] += ' ' + forTerminal(item.place->text);
        return row;
    }

    void steps(const Dump& dump, const std::vector<Item>& items) {
        Row widths = {" age", "word    ", "level", "module", "file", ""};
        const std::vector<Fold> folds = fold(dump, items);
        std::vector<Row> rows;
        for (const Fold& folded : folds) {
            for (std::size_t i = 0; i < folded.period; ++i) {
                rows.push_back(row(dump, items[folded.first + i]));
                for (std::size_t column = 0; column + 1 < widths.size(); ++column)
                    if (rows.back()[column].size() > widths[column].size())
                        widths[column].resize(rows.back()[column].size(), ' ');
            }
        }
        Row titles = widths;
        titles[5] = "place";
        write("  ", titles, widths, kDim);
        out_ << '\n';
        if (dump.overwritten() > 0) out_ << coloured("  (the ring wrapped: older words are overwritten)", kDim) << '\n';
        auto next = rows.begin();
        for (const Fold& folded : folds) {
            for (std::size_t i = 0; i < folded.period; ++i) {
                const Item& item = items[folded.first + i];
                if (dump.gapBefore(item.first)) out_ << coloured("  (words are missing here)", kDim) << '\n';
                const bool last = i + 1 == folded.period;
                const char* margin = folded.period == 1 ? "  " : i == 0 ? "/ " : last ? "\\ " : "| ";
                const char* colour = item.kind == Kind::word ? kDim : nullptr;
                if (item.kind == Kind::fault) colour = kBySeverity[severity(levelOf(item.word))];
                write(margin, *next++, widths, colour);
                if (last && folded.times > 1) {
                    const Item& newest = items[folded.first + folded.period * folded.times - 1];
                    out_ << coloured(kTimes + std::to_string(folded.times), kBold)
                         << coloured(" to age " + ageLabel(dump, newest.first + newest.size - 1), kDim);
                }
                out_ << '\n';
                data(dump, item, widths, folded.period == 1 || last ? "  " : "| ");
            }
        }
    }

    void data(const Dump& dump, const Item& item, const Row& widths, const char* margin) {
        for (std::size_t i = 1; i < item.size; ++i) {
            Row row = {ageLabel(dump, item.first + i), hexWord(dump.words[item.first + i]), {}, {}, {}, {}};
            row[5] = "    " + forTerminal(dataLabel(dump, item, i));
            write(margin, row, widths, kDim);
            out_ << '\n';
        }
    }

    // A line without its end.
    void write(const char* margin, const Row& row, const Row& widths, const char* colour) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::size_t width = widths[column].size();
            const std::string blanks(width - std::min(width, row[column].size()), ' ');
            const bool atRight = column == 0 || column == 2;
            line += atRight ? blanks + row[column] : row[column] + blanks;
            if (column + 1 < row.size()) line += "  ";
        }
        line.resize(line.find_last_not_of(' ') + 1);
        out_ << margin << coloured(line, colour);
    }

    std::ostream& out_;
    const NameTable& names_;
    bool colours_;
};

}  // namespace

std::unique_ptr<Page> textPage(std::ostream& out, const NameTable& names, bool colours) {
    return std::make_unique<TextPage>(out, names, colours);
}

}  // namespace kora::tracelog
