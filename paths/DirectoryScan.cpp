#include "paths/DirectoryScan.h"

#include <algorithm>

#include "paths/PathText.h"
#include "platform/Platform.h"
#include "strings/Bytes.h"

namespace kora {

namespace {

bool isWanted(std::string_view name, const DirectoryScan::Wanted& wanted) {
    const bool anyName = wanted.pattern.empty();
    if (wanted.type.empty()) return anyName || matchesWildcards(name, wanted.pattern);
    const std::size_t dot = name.rfind('.');
    const std::string_view type = dot == name.npos ? std::string_view{} : name.substr(dot + 1);
    if (!matchesWildcards(type, wanted.type)) return false;
    return anyName || matchesWildcards(name, wanted.pattern) || matchesWildcards(name.substr(0, dot), wanted.pattern);
}

bool comesBefore(const std::string& a, const std::string& b) {
    const auto byFoldedByte = [](char x, char y) { return signedByte(foldCase(x)) < signedByte(foldCase(y)); };
    const auto [x, y] = std::mismatch(a.begin(), a.end(), b.begin(), b.end(),
                                      [](char c, char d) { return foldCase(c) == foldCase(d); });
    if (x == a.end() && y == b.end()) return a < b;
    return y != b.end() && (x == a.end() || byFoldedByte(*x, *y));
}

}  // namespace

bool matchesWildcards(std::string_view name, std::string_view pattern) {
    if (pattern == "*.*") return true;
    std::size_t at = 0, in = 0;
    // Behind the last star seen, and how much of the name it takes for the moment: on a mismatch it takes one more.
    std::size_t behindStar = pattern.npos, starEnd = 0;
    while (in < name.size()) {
        if (at < pattern.size() && pattern[at] == '*') {
            behindStar = ++at;
            starEnd = in;
        } else if (at < pattern.size() && (pattern[at] == '?' || foldCase(pattern[at]) == foldCase(name[in]))) {
            ++at;
            ++in;
        } else if (behindStar != pattern.npos) {
            at = behindStar;
            in = ++starEnd;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == pattern.npos;
}

DirectoryScan::DirectoryScan(std::string_view directory, const Wanted& wanted) : directory_(directory) {
    std::vector<platform::DirectoryEntry> entries;
    platform::Failure ignored;
    if (!platform::fileSystem().list(directoryForSystem(directory), entries, ignored)) return;
    for (platform::DirectoryEntry& entry : entries) {
        const bool kindWanted = entry.kind == platform::FileKind::file        ? wanted.files
                                : entry.kind == platform::FileKind::directory ? wanted.directories
                                                                              : false;
        // A longer name fits into no FilePath.
        if (kindWanted && entry.name.size() < kPathTextSize && isWanted(entry.name, wanted))
            names_.push_back(std::move(entry.name));
    }
    std::sort(names_.begin(), names_.end(), comesBefore);
}

}  // namespace kora
