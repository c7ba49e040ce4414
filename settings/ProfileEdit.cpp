#include "settings/ProfileEdit.h"

#include <algorithm>
#include <optional>

#include "settings/ProfileText.h"
#include "strings/Bytes.h"
#include "strings/WhiteSpace.h"

namespace kora {

namespace {

std::string entryText(std::string_view key, std::string_view value) {
    std::string text(key);
    text += " = ";
    text += value;
    return text;
}

std::string headerText(std::string_view section) { return '[' + std::string(section) + ']'; }

/// What the first line ends with; a text without a line feed takes a plain one.
std::string_view firstLineEnd(std::string_view text) {
    const std::size_t feed = text.find('\n');
    return feed != text.npos && feed > 0 && text[feed - 1] == '\r' ? "\r\n" : "\n";
}

std::string_view lineEndOf(std::string_view text, const LinePlace& place) {
    if (place.next == place.end) return firstLineEnd(text);
    return place.end > place.begin && text[place.end - 1] == '\r' ? "\r\n" : "\n";
}

bool endsInBlankLine(std::string_view text) {
    if (text.ends_with('\n')) text.remove_suffix(1);
    const std::size_t feed = text.rfind('\n');
    const std::string_view last = feed == text.npos ? text : text.substr(feed + 1);
    return std::all_of(last.begin(), last.end(), isWhiteSpace);
}

void replace(std::string_view text, const LinePlace& place, const std::string& entry, std::string& edited) {
    std::size_t end = place.end;
    if (end > place.begin && text[end - 1] == '\r') --end;
    edited.append(text, 0, place.begin).append(entry).append(text, end);
}

void insertBehind(std::string_view text, const LinePlace& place, const std::string& entry, std::string& edited) {
    const std::string_view lineEnd = lineEndOf(text, place);
    edited.append(text, 0, place.next);
    if (place.next == place.end)
        edited.append(lineEnd).append(entry);  // the last line, and it stays without a line feed
    else
        edited.append(entry).append(lineEnd);
    edited.append(text, place.next);
}

void addSection(std::string_view text, std::string_view section, const std::string& entry, std::string& edited) {
    const std::string_view lineEnd = firstLineEnd(text);
    const bool openEnd = !text.empty() && !text.ends_with('\n');
    edited += text;
    if (openEnd) edited += lineEnd;
    if (!text.empty() && !endsInBlankLine(text)) edited += lineEnd;
    edited.append(headerText(section)).append(lineEnd).append(entry);
    if (!openEnd) edited += lineEnd;
}

}  // namespace

bool isProfileEntry(std::string_view section, std::string_view key, std::string_view value) {
    if ((std::string(section) += value).find('\n') != std::string::npos) return false;
    const std::string headerLine = headerText(section), entryLine = entryText(key, value);
    const ProfileLine header = readProfileLine(headerLine), entry = readProfileLine(entryLine);
    return header.kind == ProfileLine::Kind::header && header.name == section &&
           entry.kind == ProfileLine::Kind::entry && entry.name == key;
}

void setProfileEntry(std::string_view text, std::string_view section, std::string_view key, std::string_view value,
                     std::string& edited) {
    const std::string entry = entryText(key, value);
    edited.clear();
    edited.reserve(text.size() + section.size() + entry.size() + 10);  // brackets and line ends
    std::optional<LinePlace> behind;
    ProfileLine line;
    LinePlace place;
    for (SectionWalk walk(text, section); walk.next(line, place);) {
        const bool isEntry = line.kind == ProfileLine::Kind::entry;
        if (isEntry && equalIgnoringCase(line.name, key)) return replace(text, place, entry, edited);
        if (isEntry || !behind) behind = place;  // the first line of all is a header
    }
    if (behind)
        insertBehind(text, *behind, entry, edited);
    else
        addSection(text, section, entry, edited);
}

}  // namespace kora
