#include "tools/kora-trace/Escapes.h"
#include "tools/kora-trace/Fold.h"
#include "tools/kora-trace/PageStyle.h"
#include "tools/kora-trace/Pages.h"
#include "tools/kora-trace/Timeline.h"

namespace kora::tracelog {

namespace {

constexpr std::string_view kDetails = "<details";
constexpr const char* kTimes = "\xC3\x97 ";

std::string cell(const char* style, const std::string& text) {
    return (*style != '\0' ? std::string("<td class=\"") + style + "\">" : "<td>") + forHtml(text) + "</td>";
}

std::string severityClass(const Item& fault) { return "sev" + std::to_string(severity(levelOf(fault.word))); }

// The overview stands at the top, so the page is put together before it is written.
class HtmlPage : public Page {
public:
    HtmlPage(std::ostream& out, const NameTable& names, const std::string& log) : out_(out), names_(names), log_(log) {}

    void note(const Note& note) override {
        between("<p>" + (note.date.empty() ? "" : "<span class=\"date\">" + forHtml(note.date) + "</span>") +
                forHtml(note.text) + "</p>\n");
    }

    void skipped(const Skipped& skipped) override {
        between("<p class=\"skipped\">" + linesLabel(skipped.line, skipped.lines) + " skipped: " + skipped.why +
                "</p>\n");
    }

    void dump(const Dump& dump) override {
        endBetween();
        const std::vector<Item> items = decode(dump, names_);
        const Item* fault = severest(items);
        overviewRow(dump, fault);
        const std::string reason = dump.reason.empty() ? "Dump" : forHtml(dump.reason);
        body_ += "<section class=\"card\" id=\"line" + std::to_string(dump.line) + "\">\n<h2>" + reason +
                 "</h2>\n<p class=\"soft\">" + linesLabel(dump.line, dump.lastLine - dump.line + 1) +
                 (dump.date.empty() ? "" : ", after the note of " + forHtml(dump.date)) + "; " + countLabel(dump) +
                 "</p>\n";
        for (const std::string& sentence : dump.damage())
            body_ += "<p class=\"damage\">Damaged: " + forHtml(sentence) + "</p>\n";
        if (fault != nullptr)
            body_ += "<p>Severest fault: <span class=\"chip " + severityClass(*fault) + "\">" +
                     std::to_string(levelOf(fault->word)) + "</span> " + forHtml(faultLabel(dump, *fault, names_)) +
                     "</p>\n";
        if (!items.empty()) {
            body_ += "<div class=\"scroll\">\n" + timeline(dump, items, names_) + "</div>\n";
            steps(dump, items);
        }
        body_ += "</section>\n";
    }

    void end(const Summary& summary) override {
        endBetween();
        if (lastSteps_ > 0) body_.insert(lastSteps_, " open");
        out_ << "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"
                "<meta name=\"viewport\" content=\"width=device-width\">\n<title>Trace: "
             << forHtml(log_) << "</title>\n<style>" << kPageStyle << "</style></head>\n<body>\n<h1>" << forHtml(log_)
             << "</h1>\n<p class=\"soft\">" << summaryLabel(summary) << ". Names of " << forHtml(names_.tables())
             << ".</p>\n";
        if (!overview_.empty())
            out_ << "<div class=\"card scroll\"><table class=\"overview\">\n<tr><th "
                    "class=\"n\">line</th><th>dump</th><th>after the note "
                    "of</th>"
                    "<th class=\"n\">words written</th><th>severest fault</th></tr>\n"
                 << overview_ << "</table></div>\n";
        out_ << body_ << "</body></html>\n";
    }

private:
    void between(const std::string& paragraph) {
        if (!between_) body_ += "<div class=\"log\">\n";
        between_ = true;
        body_ += paragraph;
    }

    void endBetween() {
        if (between_) body_ += "</div>\n";
        between_ = false;
    }

    void overviewRow(const Dump& dump, const Item* fault) {
        const std::string line = std::to_string(dump.line);
        overview_ += "<tr>" + cell("n", line) + "<td><a href=\"#line" + line + "\">" +
                     (dump.reason.empty() ? "Dump" : forHtml(dump.reason)) + "</a></td>" + cell("date", dump.date) +
                     cell("n", dump.count ? std::to_string(*dump.count) : "?") + "<td>";
        if (fault != nullptr)
            overview_ += "<span class=\"chip " + severityClass(*fault) + "\">" + std::to_string(levelOf(fault->word)) +
                         "</span> " + forHtml(fileLabel(fault->word, names_)) +
                         (fault->place != nullptr ? ": " + forHtml(fault->place->text) : "");
        overview_ += "</td></tr>\n";
    }

    void steps(const Dump& dump, const std::vector<Item>& items) {
        body_ += kDetails;
        lastSteps_ = body_.size();
        body_ +=
            "><summary>Steps, the oldest first</summary><div class=\"scroll\"><table class=\"steps\">\n"
            "<tr><th class=\"n\">age</th><th>word</th><th class=\"n\">level</th><th>module</th><th>file</th>"
            "<th>place</th></tr>\n";
        for (const Fold& folded : fold(dump, items))
            for (std::size_t i = 0; i < folded.period; ++i) step(dump, items, folded, i);
        body_ += "</table></div></details>\n";
    }

    void step(const Dump& dump, const std::vector<Item>& items, const Fold& folded, std::size_t i) {
        const Item& item = items[folded.first + i];
        if (dump.gapBefore(item.first))
            body_ += "<tr><td colspan=\"6\" class=\"damage\">words are missing here</td></tr>\n";
        const std::string group = folded.period > 1 ? " group" : "";
        const std::string style = item.kind == Kind::fault  ? severityClass(item)
                                  : item.kind == Kind::word ? "data"
                                                            : "";
        const bool code = item.kind != Kind::word;
        std::string place = code ? hexLocation(locationOf(item.word)) : "no code";
        if (item.place != nullptr) place += ' ' + item.place->text;
        body_ += "<tr class=\"" + style + group + "\">" + cell("n", ageLabel(dump, item.first)) +
                 cell("w", hexWord(item.word)) +
                 cell("n", item.kind == Kind::fault ? std::to_string(levelOf(item.word)) : "") +
                 cell("", code ? moduleLabel(item.word, names_) : "") +
                 cell("", code ? fileLabel(item.word, names_) : "") + "<td>" + forHtml(place);
        if (folded.times > 1 && i + 1 == folded.period) {
            const Item& newest = items[folded.first + folded.period * folded.times - 1];
            body_ += " <span class=\"times\">" + std::string(kTimes) + std::to_string(folded.times) +
                     "</span> <span class=\"soft\">to age " + ageLabel(dump, newest.first + newest.size - 1) +
                     "</span>";
        }
        body_ += "</td></tr>\n";
        for (std::size_t word = 1; word < item.size; ++word)
            body_ += "<tr class=\"data" + group + "\">" + cell("n", ageLabel(dump, item.first + word)) +
                     cell("w", hexWord(dump.words[item.first + word])) + "<td></td><td></td><td></td>" +
                     cell("", dataLabel(dump, item, word)) + "</tr>\n";
    }

    std::ostream& out_;
    const NameTable& names_;
    std::string log_, overview_, body_;
    bool between_ = false;
    std::size_t lastSteps_ = 0;  // where the steps of the newest dump are told to be open
};

}  // namespace

std::unique_ptr<Page> htmlPage(std::ostream& out, const NameTable& names, const std::string& log) {
    return std::make_unique<HtmlPage>(out, names, log);
}

}  // namespace kora::tracelog
