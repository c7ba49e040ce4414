#include "host/SystemFolders.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace kora::host {

namespace {

constexpr int kDeepestInclude = 8;
constexpr std::size_t kMostFolders = 1000;

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::vector<std::string> split(std::string_view list, std::string_view separators) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find_first_of(separators, start), list.size());
        if (end > start) parts.emplace_back(list.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

void replaceAll(std::string& text, std::string_view what, const std::string& by) {
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
        text.replace(at, what.size(), by);
}

void readConfiguration(const std::string& path, int depth, std::vector<std::string>& folders);

/// Reads the files that @p pattern names: one "*" at most, in its last part.
void include(const std::string& pattern, int depth, std::vector<std::string>& folders) {
    const std::size_t star = pattern.find('*'), slash = pattern.rfind('/');
    if (star == std::string::npos || slash == std::string::npos || star < slash)
        return readConfiguration(pattern, depth, folders);
    const std::string begin = pattern.substr(slash + 1, star - slash - 1), end = pattern.substr(star + 1);
    std::vector<std::string> names;
    std::error_code error;
    for (std::filesystem::directory_iterator at(pattern.substr(0, slash + 1), error), last; !error && at != last;
         at.increment(error)) {
        std::string name = at->path().filename().string();
        if (name.size() >= begin.size() + end.size() && name.starts_with(begin) && name.ends_with(end))
            names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end());
    for (const std::string& name : names) readConfiguration(pattern.substr(0, slash + 1) + name, depth, folders);
}

void readConfiguration(const std::string& path, int depth, std::vector<std::string>& folders) {
    if (depth > kDeepestInclude) return;
    std::ifstream file(path);
    for (std::string line; folders.size() < kMostFolders && std::getline(file, line);) {
        const std::vector<std::string> words = split(line.substr(0, line.find('#')), " \t\r");
        if (words.size() == 2 && words[0] == "include")
            include(words[1].starts_with('/') ? words[1] : "/etc/" + words[1], depth + 1, folders);
        else if (!words.empty() && words[0].starts_with('/'))
            folders.push_back(words[0]);
    }
}

}  // namespace

std::vector<std::string> foldersOfUser() { return split(variable("LD_LIBRARY_PATH"), ":;"); }

std::vector<std::string> foldersOfLoader() {
    std::vector<std::string> folders;
    readConfiguration("/etc/ld.so.conf", 0, folders);
    for (const char* usual : {"/lib64", "/usr/lib64", "/lib", "/usr/lib"}) folders.emplace_back(usual);
    return folders;
}

std::vector<std::string> foldersOf(std::string_view list, const std::string& origin) {
    std::vector<std::string> folders = split(list, ":");
    for (std::string& folder : folders) {
        replaceAll(folder, "${ORIGIN}", origin);
        replaceAll(folder, "$ORIGIN", origin);
    }
    return folders;
}

std::vector<std::string> foldersOfWindows() {
    std::string root = variable("SystemRoot");
    if (root.empty()) root = "C:\\Windows";
    return {root + "\\System32", root};
}

std::vector<std::string> foldersOfPath() { return split(variable("PATH"), ";"); }

}  // namespace kora::host
