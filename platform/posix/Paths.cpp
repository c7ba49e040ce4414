#include <cerrno>

#include "platform/Platform.h"
#include "platform/posix/NativePath.h"

namespace kora::platform {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isSeparator(char c) { return c == '\\' || c == '/'; }

/// @p text with every run of separators, of either kind, made one @p separator.
std::string withSeparator(std::string_view text, char separator) {
    std::string result;
    result.reserve(text.size() + 2);
    bool inRun = false;
    for (const char c : text) {
        if (!isSeparator(c))
            result += c;
        else if (!inRun)
            result += separator;
        inRun = isSeparator(c);
    }
    return result;
}

bool hasDrive(std::string_view path) { return path.size() >= 2 && isLetter(path[0]) && path[1] == ':'; }
bool hasServer(std::string_view path) { return path.starts_with("\\\\"); }

}  // namespace

std::string libraryPath(std::string_view text) {
    return text.starts_with('/') ? "Z:" + withSeparator(text, '\\') : std::string(text);
}

std::string nativePath(std::string_view path) {
    if (hasServer(path)) return std::string(path);
    if (!hasDrive(path)) return withSeparator(path, '/');
    if (path[0] != 'Z' && path[0] != 'z') return std::string(path);
    const std::string_view rest = path.substr(2);
    return rest.empty() || !isSeparator(rest[0]) ? '/' + withSeparator(rest, '/') : withSeparator(rest, '/');
}

std::vector<std::string> splitDirectoryList(std::string_view value) {
    const char separator = value.find(';') == std::string_view::npos ? ':' : ';';
    std::vector<std::string> entries;
    for (std::size_t start = 0; start <= value.size();) {
        std::size_t end = value.find(separator, start);
        // The colon of a drive belongs to its entry.
        if (separator == ':' && end == start + 1 && value.substr(end).starts_with(":\\") && isLetter(value[start]))
            end = value.find(separator, end + 1);
        const std::string_view entry = value.substr(start, end - start);
        if (!entry.empty()) entries.push_back(libraryPath(entry));
        if (end == std::string_view::npos) break;
        start = end + 1;
    }
    return entries;
}

namespace posix {

bool nativeName(const std::string& path, std::string& native, Failure& failure) {
    if (path.find('\0') != std::string::npos) return fail(failure, EINVAL);
    if (path.empty() || hasServer(path)) return fail(failure, ENOENT);
    if (hasDrive(path) && path[0] != 'Z' && path[0] != 'z') return fail(failure, ENOENT);
    native = nativePath(path);
    return true;
}

std::string directoryPath(std::string_view native) {
    if (!native.starts_with('/') || native.find('\\') != std::string_view::npos) return {};
    while (native.size() > 1 && native.ends_with('/')) native.remove_suffix(1);
    return libraryPath(native);
}

Cause causeOf(int error) {
    switch (error) {
        case 0:
            return Cause::none;
        case ENOENT:
        case ENOTDIR:
            return Cause::notFound;
        case EACCES:
        case EPERM:
        case EROFS:
            return Cause::denied;
        case EEXIST:
            return Cause::exists;
        case EISDIR:
        case ENXIO:
        case ENODEV:
            return Cause::wrongKind;
        case ENOTEMPTY:
            return Cause::notEmpty;
        case EBUSY:
        case ETXTBSY:
        case EAGAIN:
            return Cause::busy;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return Cause::full;
        case EOPNOTSUPP:
        case ENOSYS:
        case EXDEV:
            return Cause::unsupported;
        default:
            return Cause::other;
    }
}

bool fail(Failure& failure, int error) {
    failure = {causeOf(error), static_cast<std::uint32_t>(error)};
    return false;
}

}  // namespace posix

}  // namespace kora::platform
