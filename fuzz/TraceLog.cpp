#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "host/Utf8.h"
#include "tools/kora-trace/Fold.h"
#include "tools/kora-trace/LogReader.h"
#include "tools/kora-trace/Pages.h"

namespace kora::tracelog {

const char kLibraryVersion[] = "1";

const char kLibraryTable[] =
    "module 1 kora\nfile 1 Startup\nplace 0x100 an idle pass\nfile 5 Notify\nplace 0x010 told | number | reason\n"
    "file 27 RamArray\nfault 0x700 too large\n";

}  // namespace kora::tracelog

namespace {

using namespace kora::tracelog;

constexpr std::size_t kMostBytes = 12'000;  // a whole dump and more
constexpr std::size_t kMostShown = 3'000;   // of longer logs pages would take most of the time

void require(bool holds) {
    if (!holds) std::abort();
}

// A dump has 128 lines: a byte FE, and a number behind it, repeat the line before that often.
std::string expanded(std::string_view data) {
    std::string log;
    for (std::size_t i = 0; i < data.size() && log.size() < kMostBytes; ++i) {
        if (static_cast<unsigned char>(data[i]) != 0xFE || ++i == data.size()) {
            if (i < data.size()) log += data[i];
            continue;
        }
        const std::size_t end = std::min(log.find_last_of('\n'), log.size());
        const std::size_t before = end == 0 ? log.npos : log.find_last_of('\n', end - 1);
        const std::string line = log.substr(before == log.npos ? 0 : before + 1);
        for (auto times = static_cast<unsigned char>(data[i]); times > 0 && log.size() < kMostBytes; --times)
            log += line;
    }
    return log;
}

/// Checks every record, and shows it on all pages.
class Checks : public Sink {
public:
    Checks(const NameTable& names, bool shows) : names_(names) {
        if (!shows) return;
        pages_.push_back(textPage(text, names, false));
        pages_.push_back(jsonPage(json, names, "log"));
        pages_.push_back(htmlPage(html, names, "log"));
    }

    void note(const Note& note) override {
        came(note.line, note.line);
        for (const auto& page : pages_) page->note(note);
    }

    void skipped(const Skipped& skipped) override {
        require(skipped.lines > 0);
        came(skipped.line, skipped.line + skipped.lines - 1);
        for (const auto& page : pages_) page->skipped(skipped);
    }

    void dump(const Dump& dump) override {
        came(dump.line, dump.lastLine);
        words += dump.words.size();
        require(dump.words.size() <= Dump::kWords && dump.unwritten() <= dump.words.size());
        std::size_t age = Dump::kWords;
        for (std::size_t word = 0; word < dump.words.size(); ++word) {
            if (!dump.age(word)) continue;
            require(*dump.age(word) < age);
            age = *dump.age(word);
        }
        const std::vector<Item> items = decode(dump, names_);
        std::size_t next = dump.unwritten();
        for (const Item& item : items) {
            require(item.first == next && item.size > 0 && item.word == dump.words[next]);
            next += item.size;
        }
        require(next == dump.words.size());
        std::size_t folded = 0;
        for (const Fold& fold : fold(dump, items)) {
            require(fold.first == folded);
            folded += fold.period * fold.times;
        }
        require(folded == items.size());
        for (const auto& page : pages_) page->dump(dump);
    }

    // Every line is shown, belongs to a dump, or is named.
    void end(std::uint64_t lines) {
        std::sort(ranges_.begin(), ranges_.end());
        std::uint64_t covered = 0;
        for (const auto& [first, last] : ranges_) {
            require(first <= covered + 1);
            covered = std::max(covered, last);
        }
        require(covered == lines);
        for (const auto& page : pages_) page->end({});
    }

    std::ostringstream text, json, html;
    std::size_t words = 0;

private:
    void came(std::uint64_t first, std::uint64_t last) {
        require(first >= newest_ && last >= first);
        newest_ = first;
        ranges_.emplace_back(first, last);
    }

    const NameTable& names_;
    std::vector<std::unique_ptr<Page>> pages_;
    std::uint64_t newest_ = 1;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> ranges_;
};

void requireUtf8(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = kora::host::characterLength(text, at);
        const auto byte = static_cast<unsigned char>(text[at]);
        require(length > 0 && (byte >= ' ' || byte == '\n' || byte == '\t') && byte != 127);
        at += length;
    }
}

void requireNested(const std::string& json) {
    std::string open;
    bool inText = false;
    for (std::size_t i = 0; i < json.size(); ++i) {
        const char c = json[i];
        if (inText) {
            require(c != '\n');
            if (c == '\\') ++i;
            if (c == '"') inText = false;
        } else if (c == '"') {
            inText = true;
        } else if (c == '{' || c == '[') {
            open += c;
        } else if (c == '}' || c == ']') {
            require(!open.empty() && open.back() == (c == '}' ? '{' : '['));
            open.pop_back();
        }
    }
    require(open.empty() && !inText);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string log = expanded({reinterpret_cast<const char*>(data), size});
    NameTable names;
    std::string problem;
    require(names.add(log, problem) || !problem.empty());
    std::istringstream in(log);
    Checks checks(names, log.size() <= kMostShown);
    LogReader reader(checks);
    LineReader lines(in);
    std::uint64_t count = 0;
    for (Line line; lines.next(line); ++count) reader.line(line);
    reader.end();
    checks.end(count);
    require(checks.words * 8 <= log.size());
    requireUtf8(checks.text.str());
    requireUtf8(checks.json.str());
    requireUtf8(checks.html.str());
    requireNested(checks.json.str());
    require(checks.html.str().find("<script") == std::string::npos);
    return 0;
}
