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

std::string replaced(std::string_view text, const LinePlace& place, const std::string& entry) {
    std::size_t end = place.end;
    if (end > place.begin && text[end - 1] == '\r') --end;
    std::string result;
    result.reserve(text.size() + entry.size());
    return result.append(text, 0, place.begin).append(entry).append(text, end);
}

std::string insertedBehind(std::string_view text, const LinePlace& place, const std::string& entry) {
    const std::string_view lineEnd = lineEndOf(text, place);
    std::string result;
    result.reserve(text.size() + entry.size() + lineEnd.size());
    result.append(text, 0, place.next);
    if (place.next == place.end)
        result.append(lineEnd).append(entry);  // the last line, and it stays without a line feed
    else
        result.append(entry).append(lineEnd);
    return result.append(text, place.next);
}

std::string withSection(std::string_view text, std::string_view section, const std::string& entry) {
    const std::string_view lineEnd = firstLineEnd(text);
    const bool openEnd = !text.empty() && !text.ends_with('\n');
    std::string result;
    result.reserve(text.size() + section.size() + entry.size() + 10);
    result += text;
    if (openEnd) result += lineEnd;
    if (!text.empty() && !endsInBlankLine(text)) result += lineEnd;
    result.append(headerText(section)).append(lineEnd).append(entry);
    if (!openEnd) result += lineEnd;
    return result;
}

}  // namespace

bool isProfileEntry(std::string_view section, std::string_view key, std::string_view value) {
    if ((std::string(section) += value).find('\n') != std::string::npos) return false;
    const std::string headerLine = headerText(section), entryLine = entryText(key, value);
    const ProfileLine header = readProfileLine(headerLine), entry = readProfileLine(entryLine);
    return header.kind == ProfileLine::Kind::header && header.name == section &&
           entry.kind == ProfileLine::Kind::entry && entry.name == key;
}

std::string profileWithEntry(std::string_view text, std::string_view section, std::string_view key,
                             std::string_view value) {
    const std::string entry = entryText(key, value);
    std::optional<LinePlace> behind;
    ProfileLine line;
    LinePlace place;
    for (SectionWalk walk(text, section); walk.next(line, place);) {
        const bool isEntry = line.kind == ProfileLine::Kind::entry;
        if (isEntry && equalIgnoringCase(line.name, key)) return replaced(text, place, entry);
        if (isEntry || !behind) behind = place;  // the first line of all is a header
    }
    return behind ? insertedBehind(text, *behind, entry) : withSection(text, section, entry);
}

}  // namespace kora
