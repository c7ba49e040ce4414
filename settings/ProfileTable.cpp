#include "settings/ProfileTable.h"

#include "settings/FoldedHash.h"
#include "settings/ProfileText.h"
#include "strings/Bytes.h"

namespace kora {

namespace {

// Memory for entries is taken for lines of this length at once; what longer ones leave of it is never touched.
constexpr std::size_t kUsualLine = 20;

}  // namespace

bool ProfileTable::Entry::hasKey(std::string_view wanted) const {
    return equalTexts(key(), wanted) || equalIgnoringCase(key(), wanted);
}

std::uint32_t ProfileTable::otherSectionIndex(std::string_view name) const {
    const std::uint32_t found =
        sectionsByName_.find(foldedHash(name), [&](std::uint32_t index) { return sections_[index].name == name; });
    if (found != HashIndex::kNone) lastSection_ = found;
    return found;
}

std::uint32_t ProfileTable::sectionMade(std::string_view name) {
    const auto next = static_cast<std::uint32_t>(sections_.size());
    sections_.push_back({name, {}, {}});
    const std::uint32_t found = sectionsByName_.findOrAdd(
        foldedHash(name), [&](std::uint32_t index) { return sections_[index].name == name; }, next);
    if (found != HashIndex::kNone) {
        sections_.pop_back();
        return found;
    }
    // Sections are about as long as the one before, as a rule.
    if (next > 0) sections_[next].keys.reserve(sections_[next - 1].keys.size());
    return next;
}

std::string_view ProfileTable::add(std::string added, std::string path) {
    sources_.push_back(std::make_unique<const Source>(Source{std::move(path), std::move(added)}));
    const std::string_view text = sources_.back()->text;
    const auto firstOfFile = static_cast<std::uint32_t>(entries_.size());
    entries_.reserve(entries_.size() + text.size() / kUsualLine);
    const bool hasNul = text.find('\0') != text.npos;
    Section* section = nullptr;
    LinePlace place;
    for (std::size_t at = 0; at < text.size(); at = place.next) {
        place = lineAt(text, at);
        const ProfileLine line = readProfileLine(place.in(text), hasNul);
        const auto next = static_cast<std::uint32_t>(entries_.size());
        if (line.kind == ProfileLine::Kind::header) {
            section = &sections_[sectionMade(line.name)];
            section->runs.push_back({next, 0});
        } else if (line.kind == ProfileLine::Kind::entry && section) {
            entries_.push_back({line.name.data(), static_cast<std::uint16_t>(line.name.size()),
                                static_cast<std::uint16_t>(line.value.data() - line.name.data()),
                                static_cast<std::uint16_t>(line.value.size()), false});
            const std::uint32_t before = section->keys.findOrAdd(
                foldedHash(line.name), [&](std::uint32_t index) { return entries_[index].hasKey(line.name); }, next);
            if (before < firstOfFile) {
                entries_.pop_back();
            } else {
                entries_.back().repeats = before != HashIndex::kNone;
                ++section->runs.back().count;
            }
        }
    }
    return text;
}

inline std::uint32_t ProfileTable::sectionIndex(std::string_view name) const {
    if (lastSection_ < sections_.size() && equalTexts(sections_[lastSection_].name, name)) return lastSection_;
    return otherSectionIndex(name);
}

bool ProfileTable::hasSection(std::string_view section) const { return sectionIndex(section) != HashIndex::kNone; }

std::optional<std::string_view> ProfileTable::value(std::string_view section, std::string_view key) const {
    const std::uint32_t index = sectionIndex(section);
    if (index == HashIndex::kNone) return std::nullopt;
    const Section& in = sections_[index];
    std::uint32_t found = in.expected();
    if (found == HashIndex::kNone || entries_[found].repeats || !equalTexts(entries_[found].key(), key))
        found = in.keys.find(foldedHash(key), [&](std::uint32_t candidate) { return entries_[candidate].hasKey(key); });
    if (found == HashIndex::kNone) return std::nullopt;
    in.next = found + 1 - in.runs.back().first;
    return entries_[found].value();
}

const ProfileTable::Entry* ProfileTable::entry(std::string_view section, std::size_t index) const {
    const std::uint32_t found = sectionIndex(section);
    if (found == HashIndex::kNone) return nullptr;
    for (const Run& run : sections_[found].runs) {
        if (index < run.count) return &entries_[run.first + index];
        index -= run.count;
    }
    return nullptr;
}

}  // namespace kora
