#include "platform/Platform.h"

namespace kora::platform {

// Library form is what this system writes anyway.

std::string libraryPath(std::string_view text) { return std::string(text); }

std::string nativePath(std::string_view path) { return std::string(path); }

std::vector<std::string> splitDirectoryList(std::string_view value) {
    std::vector<std::string> entries;
    while (!value.empty()) {
        const std::size_t end = value.find(';');
        if (end != 0) entries.emplace_back(value.substr(0, end));
        value.remove_prefix(end == value.npos ? value.size() : end + 1);
    }
    return entries;
}

}  // namespace kora::platform
