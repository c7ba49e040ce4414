#include <kora/File.h>

#include <algorithm>
#include <exception>
#include <string_view>

#include "paths/PathText.h"
#include "platform/Platform.h"

namespace {

std::string_view first(std::string_view text, std::int64_t count) {
    return text.substr(0, static_cast<std::size_t>(std::max<std::int64_t>(count, 0)));
}

std::string_view last(std::string_view text, std::int64_t count) {
    const std::size_t kept = static_cast<std::size_t>(std::max<std::int64_t>(count, 0));
    return text.substr(text.size() - std::min(kept, text.size()));
}

CString concatenate(std::initializer_list<std::string_view> parts) {
    CString text;
    for (const std::string_view part : parts) text += part;
    return text;
}

}  // namespace

CString FileMakeFriendlyName(const char* path) try {
    std::string_view name = path != nullptr ? path : "";
    if (const std::size_t separator = name.rfind('\\'); separator != name.npos) name.remove_prefix(separator + 1);
    return CString(name.substr(0, name.rfind('.')));
} catch (const std::exception&) {
    return {};
}

CString FileMakeLimitedName(const char* path, int limit) try {
    const std::string_view whole = path != nullptr ? path : "";
    // Wide enough for every limit, the most negative included; pieces of less than nothing are empty.
    const std::int64_t room = limit;
    if (static_cast<std::int64_t>(whole.size()) <= room) return CString(whole);

    const std::size_t separator = whole.find_last_of("\\/");
    const std::string_view directory = separator != whole.npos ? whole.substr(0, separator) : std::string_view{};
    const std::string_view name = separator != whole.npos ? whole.substr(separator + 1) : whole;
    if (directory.empty()) {
        const std::int64_t kept = room / 2 - 2;
        return concatenate({first(name, kept), "...", last(name, kept)});
    }
    const std::int64_t length = static_cast<std::int64_t>(name.size());
    if (length <= room - 8) {
        const std::int64_t kept = (room - length) / 2 - 2;
        return concatenate({first(directory, kept), "...", last(directory, kept), "\\", name});
    }
    const std::int64_t kept = room / 2 - 4;
    return concatenate({"...\\", first(name, kept), "...", last(name, kept)});
} catch (const std::exception&) {
    return {};
}

CString FileMakePathRelative(const char* path) try {
    CStringArray dirs;
    FileGetSearchDirs(dirs);
    return FileMakePathRelative(path, dirs);
} catch (const std::exception&) {
    return {};
}

CString FileMakePathRelative(const char* path, CStringArray& dirs) try {
    const std::string whole = kora::platform::libraryPath(path != nullptr ? path : "");
    for (const CString& dir : dirs) {
        std::string_view rest;
        if (kora::liesIn(whole, kora::platform::libraryPath(dir), rest)) return CString(rest);
    }
    return path != nullptr ? path : "";
} catch (const std::exception&) {
    return {};
}
