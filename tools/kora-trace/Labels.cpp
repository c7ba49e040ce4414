#include <algorithm>

#include "tools/kora-trace/Escapes.h"
#include "tools/kora-trace/Pages.h"

namespace kora::tracelog {

namespace {

std::string counted(std::uint64_t count, const char* what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

}  // namespace

std::string moduleLabel(std::uint32_t code, const NameTable& names) {
    const std::string* name = names.module(code);
    return name != nullptr ? *name : "module " + std::to_string(moduleOf(code));
}

std::string fileLabel(std::uint32_t code, const NameTable& names) {
    const std::string* name = names.file(code);
    return name != nullptr ? *name : "file " + std::to_string(fileOf(code));
}

std::string ageLabel(const Dump& dump, std::size_t word) {
    const auto age = dump.age(word);
    return age ? std::to_string(*age) : "?";
}

std::string faultLabel(const Dump& dump, const Item& item, const NameTable& names) {
    std::string text = "level " + std::to_string(levelOf(item.word)) + ", " + moduleLabel(item.word, names) + ' ' +
                       fileLabel(item.word, names) + ' ' + hexLocation(locationOf(item.word));
    if (item.place != nullptr) text += ' ' + item.place->text;
    if (hasData(item.word) && item.size > 1) text += ", data " + hexWord(dump.words[item.first + 1]);
    return text + ", age " + ageLabel(dump, item.first);
}

std::string dataLabel(const Dump& dump, const Item& item, std::size_t index) {
    std::string text = dataMeaning(item, index);
    if (item.kind != Kind::step) return text;
    // Characters are packed with the first one lowest.
    std::string characters;
    for (std::uint32_t word = dump.words[item.first + index]; word != 0; word >>= 8)
        characters += static_cast<char>(word & 0xFF);
    const bool shows = characters.size() > 1 &&
                       std::all_of(characters.begin(), characters.end(), [](char c) { return c > ' ' && c <= '~'; });
    return shows ? text + ": \"" + characters + '"' : text;
}

std::string countLabel(const Dump& dump) {
    if (!dump.count) return "the count of words is missing";
    std::string text = counted(*dump.count, "word") + " written";
    const std::uint32_t over = dump.overwritten();
    if (over > 0)
        text += ", the ring wrapped: the " + (over == 1 ? "oldest is" : std::to_string(over) + " oldest are") +
                " overwritten, slot 0 has age " + std::to_string(*dump.wrapAge());
    if (dump.countIsLow()) text += ", but there are more: the count passed 2^32, or is wrong";
    return text;
}

std::string summaryLabel(const Summary& summary) {
    std::string text = counted(summary.dumps, "dump") + ", " + counted(summary.notes, "note");
    if (summary.skippedLines > 0) text += ", " + counted(summary.skippedLines, "line") + " skipped";
    if (summary.olderDumps > 0) text += "; " + counted(summary.olderDumps, "older dump") + " left out";
    return text;
}

std::string linesLabel(std::uint64_t first, std::uint64_t lines) {
    if (lines == 1) return "line " + std::to_string(first);
    return "lines " + std::to_string(first) + " to " + std::to_string(first + lines - 1);
}

int severity(std::uint32_t level) { return level == 0 ? 0 : level < 4 ? 1 : level < 10 ? 2 : 3; }

}  // namespace kora::tracelog
