#include "host/ModuleFile.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace kora::host {

namespace {

constexpr const char* kSeparators = std::filesystem::path::preferred_separator == '/' ? "/" : "/\\";
constexpr std::uint64_t kMostBytes = 256 << 20;

// Empty when it can be opened and read from begin to end.
std::string obstacle(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    switch (status.type()) {
        case std::filesystem::file_type::regular:
            return {};
        case std::filesystem::file_type::directory:
            return "is a directory";
        case std::filesystem::file_type::not_found:
            return "is not there";
        case std::filesystem::file_type::none:
            return "cannot be looked at (" + error.message() + ")";
        default:
            return "is no ordinary file";
    }
}

std::string read(const std::string& path, std::vector<unsigned char>& bytes) {
    if (std::string trouble = obstacle(path); !trouble.empty()) return trouble;
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file ? static_cast<std::streamoff>(file.tellg()) : -1;
    if (size < 0) return "cannot be read";
    if (size == 0) return "is empty";
    if (static_cast<std::uint64_t>(size) > kMostBytes) return "is larger than any module (256 MB)";
    bytes.resize(static_cast<std::size_t>(size));
    file.seekg(0);
    if (!file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size))) return "cannot be read";
    return {};
}

}  // namespace

std::vector<std::string_view> ModuleFile::entries() const {
    std::vector<std::string_view> found;
    if (hasEntry()) found.push_back(kEntryName);
    for (const std::string_view name : tables.exports)
        if (name != kEntryName && name.find("TskKoraMain") != std::string_view::npos) found.push_back(name);
    return found;
}

bool ModuleFile::hasEntry() const {
    return std::find(tables.exports.begin(), tables.exports.end(), kEntryName) != tables.exports.end();
}

ModuleFile readModuleFile(const std::string& path) {
    ModuleFile file;
    file.path = path;
    try {
        file.trouble = read(path, file.bytes);
    } catch (const std::filesystem::filesystem_error&) {
        file.trouble = "has a name that this system does not know";
    }
    if (file.trouble.empty()) file.tables = readBinary(file.bytes);
    return file;
}

std::string printable(std::string_view text) {
    std::string shown(text);
    for (char& character : shown)
        if (static_cast<unsigned char>(character) < ' ' || character == 127) character = '?';
    return shown;
}

std::string folderOf(const std::string& path) {
    const std::size_t last = path.find_last_of(kSeparators);
    if (last == std::string::npos) return ".";
    return last == 0 ? path.substr(0, 1) : path.substr(0, last);
}

std::string nameOf(const std::string& path) {
    const std::size_t last = path.find_last_of(kSeparators);
    return last == std::string::npos ? path : path.substr(last + 1);
}

}  // namespace kora::host
