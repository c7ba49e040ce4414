#include "tools/kora-trace/LogReader.h"

#include <algorithm>

#include "strings/Bytes.h"

namespace kora::tracelog {

namespace {

constexpr std::string_view kStart = "$STARTDUMP(";
constexpr std::string_view kEnd = "$ENDDUMP";
constexpr std::size_t kWordsPerLine = 8, kDigits = 8;

// After so many foreign lines a dump does not go on; and no more processes than that write at once.
constexpr int kMostStrangers = 64;
constexpr std::size_t kMostOpen = 8;

int digitValue(char c) {
    if (isDigit(c)) return c - '0';
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

// The hexadecimal digits that @p text begins with, as the library writes them, eight at most.
std::size_t hexadecimal(std::string_view text, std::uint32_t& value) {
    std::size_t length = 0;
    value = 0;
    for (; length < std::min(text.size(), kDigits) && digitValue(text[length]) >= 0; ++length)
        value = value << 4 | static_cast<std::uint32_t>(digitValue(text[length]));
    return length;
}

// Takes the whole words that a line begins with; what is left behind them begins with the blank, if there was one.
std::vector<std::uint32_t> leadingWords(std::string_view& text) {
    std::vector<std::uint32_t> words;
    while (words.size() < kWordsPerLine) {
        const std::size_t front = words.empty() ? 0 : 1;
        if (front == 1 && !text.starts_with(' ')) break;
        std::uint32_t word;
        if (hexadecimal(text.substr(front), word) < kDigits) break;
        words.push_back(word);
        text.remove_prefix(front + kDigits);
    }
    return words;
}

// The length of a valid beginning of a dump's first line, with its count; 0 when there is none.
std::size_t startMark(std::string_view text, std::uint32_t& count) {
    if (!text.starts_with(kStart)) return 0;
    const std::size_t digits = hexadecimal(text.substr(kStart.size()), count);
    const std::size_t length = kStart.size() + digits;
    return digits > 0 && text.substr(length).starts_with(')') ? length + 1 : 0;
}

// Whether @p text has the shape of @p pattern, in which 0 stands for a digit.
bool hasShape(std::string_view text, std::string_view pattern) {
    if (text.size() < pattern.size()) return false;
    for (std::size_t i = 0; i < pattern.size(); ++i)
        if (pattern[i] == '0' ? !isDigit(text[i]) : text[i] != pattern[i]) return false;
    return true;
}

constexpr std::string_view kBehindMonth = " 00, 0000 - 00:00:00 - ";
constexpr std::size_t kMonth = 3;

/// Where a date as the library writes it begins, from @p from on; npos when there is none.
std::size_t findDate(std::string_view text) {
    for (std::size_t comma = text.find(", "); comma != text.npos; comma = text.find(", ", comma + 1))
        if (comma >= kMonth + 3 && hasShape(text.substr(comma - 3), kBehindMonth)) return comma - 3 - kMonth;
    return text.npos;
}

// Another length than three letters is the month of a host with a language of its own.
std::size_t dateLength(std::string_view text) {
    constexpr std::size_t kLongestMonth = 16;
    const std::size_t month = text.substr(0, kLongestMonth).find(' ');
    return month != text.npos && month > 0 && hasShape(text.substr(month), kBehindMonth) ? month + kBehindMonth.size()
                                                                                         : 0;
}

// Words may be missing here.
void markGap(Dump& dump) {
    if (dump.firstGap == Dump::kNone) dump.firstGap = dump.words.size();
    dump.lastGap = dump.words.size();
}

// A stray control character is shown; many are somebody else's bytes.
bool isText(std::string_view text) {
    constexpr std::size_t kTextForEachControl = 8;
    const auto controls = std::count_if(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte < ' ' && c != '\t') || byte == 0x7F;
    });
    return static_cast<std::size_t>(controls) * kTextForEachControl <= text.size();
}

}  // namespace

void LogReader::line(const Line& line) {
    number_ = line.number;
    read(line.text);
    if (line.cut) skip("the rest of a line of more than 65536 bytes");
    flush(false);
}

void LogReader::read(std::string_view text) {
    // A machine that lost its power leaves zeros where it had not written yet, and the next line follows them.
    const std::size_t zeros = text.rfind('\0') + 1;  // 0 where there are none
    text.remove_prefix(zeros);
    const bool readable = isText(text) && (zeros == 0 || !text.empty());
    if (zeros > 0 || !readable) {
        damaged();
        skip(readable ? "zero bytes" : "no text");
        if (!readable) return;
    }
    if (text == kEnd) return endDump();
    for (std::size_t at = text.find(kStart); at != text.npos; at = text.find(kStart, at + 1)) {
        std::uint32_t count;
        const std::size_t length = startMark(text.substr(at), count);
        if (length == 0) continue;
        // Whoever wrote the beginning of the line never came to its end.
        if (at > 0) read(text.substr(0, at));
        return startDump(text.substr(at + length), count);
    }
    std::string_view rest = text;
    const std::vector<std::uint32_t> words = leadingWords(rest);
    if (rest.empty() && words.size() == kWordsPerLine) return takeWords(words);
    if (open_.empty() || !readBroken(words, rest)) note(text);
}

// A line within a dump that is none of its whole ones; false when it is no part of the dump at all.
bool LogReader::readBroken(const std::vector<std::uint32_t>& words, std::string_view rest) {
    const bool ends = rest.ends_with(kEnd);
    const std::size_t date = findDate(rest);
    const std::string_view front = ends ? rest.substr(0, rest.size() - kEnd.size()) : rest.substr(0, date);
    const bool partOfWord = front.size() <= kDigits + 1 && front.find_first_not_of(" 0123456789abcdef") == front.npos;
    if (words.empty() && (front.empty() || !partOfWord)) return false;
    if (!words.empty()) takeWords(words);
    damaged();
    if (!rest.empty()) skip("a broken line of words");
    if (ends)
        endDump();
    else if (date != rest.npos)
        note(rest.substr(date));
    return true;
}

void LogReader::note(std::string_view text) {
    Note note{number_, {}, std::string(text)};
    if (const std::size_t length = dateLength(text); length > 0) {
        constexpr std::size_t kDash = 3;
        note.date = text.substr(0, length - kDash);
        note.text = text.substr(length);
        lastDate_ = note.date;
    }
    push(std::move(note));
    stranger();
}

void LogReader::skip(const char* why) {
    if (!waiting_.empty()) {
        if (auto* before = std::get_if<Skipped>(&waiting_.back().record);
            before != nullptr && before->why == why && before->line + before->lines >= number_) {
            before->lines = number_ - before->line + 1;
            return stranger();
        }
    }
    push(Skipped{number_, 1, why});
    stranger();
}

void LogReader::startDump(std::string_view rest, std::uint32_t count) {
    if (rest.starts_with(' ')) rest.remove_prefix(1);
    for (Entry* entry : open_)
        if (!entry->dump().isWhole()) entry->interrupted = true;
    Dump& dump = openDump().dump();
    dump.count = count;
    dump.reason = rest;
}

LogReader::Entry& LogReader::openDump() {
    if (open_.size() == kMostOpen) closeDump(0);
    Dump dump;
    dump.line = dump.lastLine = number_;
    dump.date = lastDate_;
    push(std::move(dump));
    waiting_.back().open = true;
    open_.push_back(&waiting_.back());
    return waiting_.back();
}

void LogReader::endDump() {
    if (open_.empty()) return skip("the end of a dump that did not begin");
    // Of several the one that is complete, else the newest.
    std::size_t ended = open_.size() - 1;
    for (std::size_t i = open_.size(); i-- > 0;) {
        if (!open_[i]->dump().isWhole()) continue;
        ended = i;
        break;
    }
    // Whoever is still silent after two whole dumps of others was cut off.
    for (std::size_t i = 0; i < ended; ++i) open_[i]->strangers += kMostStrangers / 2;
    open_[ended]->dump().ended = true;
    open_[ended]->dump().lastLine = number_;
    closeDump(ended);
    stranger();
}

void LogReader::takeWords(const std::vector<std::uint32_t>& words) {
    auto taker = std::find_if(open_.rbegin(), open_.rend(), [](Entry* entry) { return !entry->dump().isWhole(); });
    Entry& entry = taker != open_.rend() ? **taker : openDump();
    Dump& dump = entry.dump();
    const std::size_t taken = std::min(words.size(), Dump::kWords - dump.words.size());
    dump.words.insert(dump.words.end(), words.begin(), words.begin() + static_cast<std::ptrdiff_t>(taken));
    dump.lastLine = number_;
    entry.strangers = 0;
    if (words.size() < kWordsPerLine) markGap(dump);
    if (taken < words.size()) skip("more words than a dump has");
    if (!entry.interrupted || dump.mixed) return;
    // The lines of both may have gone to the other one.
    for (auto other = waiting_.rbegin(); other != waiting_.rend(); ++other) {
        if (auto* mixed = std::get_if<Dump>(&other->record)) mixed->mixed = true;
        if (&*other == &entry) break;
    }
}

void LogReader::damaged() {
    if (!open_.empty()) markGap(open_.back()->dump());
}

void LogReader::closeDump(std::size_t open) {
    open_[open]->open = false;
    open_.erase(open_.begin() + static_cast<std::ptrdiff_t>(open));
}

void LogReader::push(std::variant<Note, Dump, Skipped> record) {
    flush(false);
    waiting_.emplace_back();
    waiting_.back().record = std::move(record);
}

void LogReader::stranger() {
    for (std::size_t i = open_.size(); i-- > 0;)
        if (++open_[i]->strangers > kMostStrangers) closeDump(i);
}

void LogReader::flush(bool all) {
    while (!waiting_.empty() && !waiting_.front().open) {
        const auto& record = waiting_.front().record;
        // Skipped lines wait for more of their kind.
        if (!all && waiting_.size() == 1 && std::holds_alternative<Skipped>(record)) return;
        if (const auto* note = std::get_if<Note>(&record)) sink_.note(*note);
        if (const auto* dump = std::get_if<Dump>(&record)) sink_.dump(*dump);
        if (const auto* skipped = std::get_if<Skipped>(&record)) sink_.skipped(*skipped);
        waiting_.pop_front();
    }
}

void LogReader::end() {
    while (!open_.empty()) closeDump(open_.size() - 1);
    flush(true);
}

}  // namespace kora::tracelog
