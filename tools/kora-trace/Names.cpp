#include "tools/kora-trace/Names.h"

#include <cassert>
#include <charconv>
#include <optional>

#include "strings/Bytes.h"
#include "tools/kora-trace/Decode.h"

namespace kora::tracelog {

namespace {

constexpr std::uint32_t kNoNumber = 0xFFFFFFFF;
constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == text.npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string_view nextWord(std::string_view& text) {
    text = trimmed(text);
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    text = trimmed(text.substr(word.size()));
    return word;
}

std::optional<std::uint32_t> number(std::string_view text, std::uint32_t largest) {
    int base = 10;
    if (text.starts_with("0x")) {
        text.remove_prefix(2);
        base = 16;
    }
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc{} || end != text.data() + text.size() || value > largest) return std::nullopt;
    return value;
}

PlaceName placeName(std::string_view text, bool fault) {
    PlaceName name;
    name.fault = fault;
    std::size_t bar = text.find('|');
    name.text = trimmed(text.substr(0, bar));
    while (bar != text.npos) {
        text.remove_prefix(bar + 1);
        bar = text.find('|');
        name.data.emplace_back(trimmed(text.substr(0, bar)));
    }
    return name;
}

}  // namespace

NameTable::NameTable() {
    std::string problem;
    [[maybe_unused]] const bool added = add(kLibraryTable, problem);
    assert(added && "the build makes a table that can be read");
}

bool NameTable::addLine(std::string_view line, std::map<std::uint32_t, Module>& modules, std::uint32_t& module,
                        std::uint32_t& file) {
    const std::string_view kind = nextWord(line);
    if (kind.empty() || kind.starts_with('#')) return true;
    const bool isModule = kind == "module", isFile = kind == "file", isFault = kind == "fault";
    if (!isModule && !isFile && !isFault && kind != "place") return false;
    const auto value = number(nextWord(line), isModule || isFile ? kLargestModule : kLargestLocation);
    if (!value || line.empty()) return false;
    if (isModule) {
        if (*value == 0) return false;
        module = *value;
        file = kNoNumber;
        const std::string_view name = nextWord(line);
        return modules.try_emplace(module, Module{std::string(name), std::string(line), {}, {}}).second;
    }
    if (module == kNoNumber) return false;
    if (isFile) {
        file = *value;
        return modules[module].files.try_emplace(file, nextWord(line)).second;
    }
    if (file == kNoNumber) return false;
    return modules[module].places.try_emplace(placeKey(file, *value), placeName(line, isFault)).second;
}

bool NameTable::add(std::string_view table, std::string& problem) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";  // which some editors write
    if (table.starts_with(kByteOrderMark)) table.remove_prefix(kByteOrderMark.size());
    problem.clear();
    std::map<std::uint32_t, Module> modules;
    std::uint32_t module = kNoNumber, file = kNoNumber;
    for (int line = 1; !table.empty(); ++line) {
        const std::size_t end = table.find('\n');
        if (!addLine(table.substr(0, end), modules, module, file)) {
            problem =
                "line " + std::to_string(line) + " is no line of a table of names, or a second one for its number";
            return false;
        }
        table.remove_prefix(end == table.npos ? table.size() : end + 1);
    }
    for (auto& [number, names] : modules) {
        Module& held = modules_[number];
        if (!held.name.empty() && held.name != names.name)
            problem = "module " + std::to_string(number) + " is " + names.name + " here, and was " + held.name;
        held = std::move(names);
    }
    return true;
}

const NameTable::Module* NameTable::find(std::uint32_t code) const {
    const auto found = modules_.find(moduleOf(code));
    return found != modules_.end() ? &found->second : nullptr;
}

const std::string* NameTable::module(std::uint32_t code) const {
    const Module* module = find(code);
    return module != nullptr ? &module->name : nullptr;
}

const std::string* NameTable::file(std::uint32_t code) const {
    const Module* module = find(code);
    if (module == nullptr) return nullptr;
    const auto found = module->files.find(fileOf(code));
    return found != module->files.end() ? &found->second : nullptr;
}

const PlaceName* NameTable::place(std::uint32_t code) const {
    const Module* module = find(code);
    if (module == nullptr) return nullptr;
    const auto found = module->places.find(placeKey(fileOf(code), locationOf(code)));
    return found != module->places.end() ? &found->second : nullptr;
}

std::string NameTable::tables() const {
    std::string text;
    for (const auto& [number, module] : modules_)
        text += (text.empty() ? "" : ", ") + module.name + (module.version.empty() ? "" : ' ' + module.version);
    return text;
}

}  // namespace kora::tracelog
