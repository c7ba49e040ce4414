#include "tools/kora-trace/HomePaths.h"

#include <algorithm>

#include "platform/Platform.h"
#include "strings/Bytes.h"

namespace kora::tracelog {

namespace {

// Behind these a person's name stands.
constexpr std::string_view kEverybodys[] = {"users", "home", "documents and settings"};
constexpr std::string_view kSeparators = "\\/";
constexpr std::string_view kEndsName = "\\/\"'<>|:;,=*?()[]{}\t\r\n";

bool isSeparator(char c) { return c == '\\' || c == '/'; }

bool isNameCharacter(char c) {
    return isDigit(c) || (foldCase(c) >= 'A' && foldCase(c) <= 'Z') || c == '_' || c == '-' || signedByte(c) < 0;
}

// Both separators are equal, and letter case does not count.
bool samePath(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return foldCase(x) == foldCase(y) || (isSeparator(x) && isSeparator(y)); });
}

bool standsAt(std::string_view text, std::size_t at, std::string_view what) {
    return !what.empty() && text.size() - at >= what.size() && samePath(text.substr(at, what.size()), what) &&
           (at + what.size() == text.size() || !isNameCharacter(text[at + what.size()]));
}

// The length of a path's part. There may be blanks in it where another part follows.
std::size_t partLength(std::string_view text) {
    constexpr std::size_t kLongest = 256;
    text = text.substr(0, kLongest);
    const std::size_t end = std::min(text.find_first_of(kEndsName), text.size());
    if (end < text.size() && isSeparator(text[end])) return end;
    return std::min(text.find(' '), end);
}

}  // namespace

HomePaths::HomePaths(const std::vector<std::string>& homes, const std::vector<std::string>& users) : users_(users) {
    for (std::string home : homes) {
        while (!home.empty() && isSeparator(home.back())) home.pop_back();
        // A root is nobody's home.
        const std::size_t last = home.find_last_of(kSeparators);
        if (last == home.npos) continue;
        users_.push_back(home.substr(last + 1));
        homes_.push_back(platform::libraryPath(home));
        homes_.push_back(std::move(home));
    }
    std::erase_if(users_, [](const std::string& user) { return user.empty(); });
    // Of two that begin alike the longer one.
    std::sort(homes_.begin(), homes_.end(),
              [](const std::string& a, const std::string& b) { return a.size() > b.size(); });
}

HomePaths HomePaths::ofThisUser() {
    std::vector<std::string> homes, users;
    platform::Environment& places = platform::environment();
    for (const char* name : {"HOME", "USERPROFILE"})
        if (auto value = places.variable(name)) homes.push_back(*value);
    for (const char* name : {"USER", "LOGNAME", "USERNAME"})
        if (auto value = places.variable(name)) users.push_back(*value);
    return {homes, users};
}

// How long the home directory is that stands there; 0 when there is none.
std::size_t HomePaths::homeAt(std::string_view text, std::size_t at) const {
    if (at > 0 && isNameCharacter(text[at - 1])) return 0;
    for (const std::string& home : homes_)
        if (standsAt(text, at, home)) return home.size();
    return 0;
}

// How long the name is that begins there, behind a separator. What stands before @p from has gone.
std::size_t HomePaths::userAt(std::string_view text, std::size_t from, std::size_t at) const {
    std::size_t behind = at;  // the folder that it stands in; escaped texts have every separator twice
    while (behind > from && isSeparator(text[behind - 1])) --behind;
    if (behind == at) return 0;
    for (const std::string_view folder : kEverybodys)
        if (behind - from > folder.size() && isSeparator(text[behind - folder.size() - 1]) &&
            samePath(text.substr(behind - folder.size(), folder.size()), folder))
            return partLength(text.substr(at));
    for (const std::string& user : users_)
        if (standsAt(text, at, user)) return user.size();
    return 0;
}

std::string HomePaths::removedFrom(std::string_view text) const {
    std::string out;
    out.reserve(text.size());
    std::size_t from = 0;  // behind what went last
    for (std::size_t at = 0; at < text.size();) {
        std::size_t length = homeAt(text, at);
        if (length == 0) length = userAt(text, from, at);
        if (length == 0) {
            out += text[at++];
            continue;
        }
        out += '~';
        from = at += length;
    }
    return out;
}

}  // namespace kora::tracelog
