#include "paths/PathText.h"

#include <kora/Utl.h>

#include <cstring>

#include "strings/Bytes.h"

namespace kora {

namespace {

constexpr char kSeparator = '\\';

bool hasDrive(std::string_view path) { return path.size() >= 2 && path[1] == ':'; }

bool hasServer(std::string_view path) {
    return path.size() >= 3 && path[0] == kSeparator && path[1] == kSeparator && path[2] != kSeparator;
}

std::string_view withoutEndSeparators(std::string_view path, std::size_t atLeast) {
    while (path.size() > atLeast && path.back() == kSeparator) path.remove_suffix(1);
    return path;
}

/// What text that begins with `\` keeps of the directory: its drive, or server and share.
std::string_view driveOrShare(std::string_view path) {
    if (hasDrive(path)) return path.substr(0, 2);
    return hasServer(path) ? withoutEndSeparators(pathRoot(path), 0) : std::string_view{};
}

/// A directory under construction. It may pass the limit on the way; what counts is what it comes to.
class Builder {
public:
    explicit Builder(std::string_view start) { put(start); }

    std::string_view text() const { return {text_, length_}; }
    void put(std::string_view more) {
        more.copy(text_ + length_, more.size());
        length_ += more.size();
    }
    void apply(std::string_view part) {
        if (part.empty() || part == ".") return;
        if (part == "..") {
            const std::size_t root = pathRoot(text()).size();
            if (withoutEndSeparators(text(), root).size() > root) length_ = pathAbove(text()).size();
            return;
        }
        if (length_ > 0 && text_[length_ - 1] != kSeparator) text_[length_++] = kSeparator;
        put(part);
    }

    static constexpr std::size_t kRoom = 2 * kPathTextSize;

private:
    char text_[kRoom];
    std::size_t length_ = 0;
};

}  // namespace

std::string_view pathRoot(std::string_view path) {
    if (hasDrive(path)) return path.substr(0, path.size() > 2 && path[2] == kSeparator ? 3 : 2);
    if (hasServer(path)) {
        const std::size_t share = path.find(kSeparator, 2);
        return share == path.npos ? path : path.substr(0, path.find(kSeparator, share + 1));
    }
    return path.substr(0, !path.empty() && path[0] == kSeparator ? 1 : 0);
}

std::string_view pathAbove(std::string_view path) {
    const std::string_view root = pathRoot(path);
    path = withoutEndSeparators(path, root.size());
    if (path.size() == root.size()) return {};
    const std::size_t last = path.rfind(kSeparator);
    if (last == path.npos || last < root.size()) return root;
    return withoutEndSeparators(path.substr(0, last), root.size());
}

bool resolveDirectory(std::string_view current, std::string_view text, char (&result)[kPathTextSize]) {
    if (text.empty() || text.size() >= kPathTextSize || current.size() >= kPathTextSize) return false;
    const bool whole = hasDrive(text) || hasServer(text);
    const bool fromRoot = text[0] == kSeparator;
    Builder directory(whole ? std::string_view{} : fromRoot ? driveOrShare(current) : current);
    if (whole || fromRoot) {
        directory.put(text);
    } else {
        while (!text.empty()) {
            const std::size_t end = text.find(kSeparator);
            directory.apply(text.substr(0, end));
            text.remove_prefix(end == text.npos ? text.size() : end + 1);
        }
    }
    const std::string_view made = directory.text();
    if (made.size() >= kPathTextSize) return false;
    std::memcpy(result, made.data(), made.size());
    result[made.size()] = '\0';
    return true;
}

bool joinPath(std::string& path, std::string_view directory, std::string_view name) {
    while (!name.empty() && name.front() == kSeparator) name.remove_prefix(1);
    if (hasDrive(name)) return false;
    char resolved[kPathTextSize];
    if (const std::size_t last = name.rfind(kSeparator); last != name.npos) {
        if (!resolveDirectory(directory, name.substr(0, last), resolved)) return false;
        directory = resolved;
        name.remove_prefix(last + 1);
    }
    path.assign(directory);
    if (!path.empty() && path.back() != kSeparator) path += kSeparator;
    path.append(name);
    return path.size() < kPathTextSize;
}

bool liesIn(std::string_view path, std::string_view directory, std::string_view& rest) {
    directory = withoutEndSeparators(directory, 0);
    if (directory.empty() || path.size() <= directory.size() || path[directory.size()] != kSeparator) return false;
    if (!equalIgnoringCase(path.substr(0, directory.size()), directory)) return false;
    rest = path.substr(directory.size());
    while (!rest.empty() && rest.front() == kSeparator) rest.remove_prefix(1);
    return !rest.empty();
}

void capitalizeForDisplay(char* path) {
    if (UtlOS() == 2) return;
    while (true) {
        char* end = path;
        bool lowerOnly = true;
        for (; *end != '\0' && *end != kSeparator; ++end) lowerOnly = lowerOnly && *end >= 'a' && *end <= 'z';
        if (lowerOnly) *path = foldCase(*path);
        if (*end == '\0') return;
        path = end + 1;
    }
}

std::string directoryForSystem(std::string_view directory) {
    std::string text(withoutEndSeparators(directory, pathRoot(directory).size()));
    if (text.size() == 2 && hasDrive(text)) text += kSeparator;
    return text;
}

}  // namespace kora
