#include <exception>

#include "platform/Platform.h"

namespace kora::platform {

namespace {

constexpr std::size_t kMaxPart = 240;  // file names end at 255

/// @p text as one file name, or as a chain of directories and a file where it is too long for one. Letter case does
/// not count, so capitals are folded; whatever could mean something to a file system is written %xx. The empty text,
/// the default value of a key, is "%"; a part that goes on below ends in "%" too.
std::string encoded(std::string_view text) {
    if (text.empty()) return "%";
    std::string result;
    std::size_t partStart = 0;
    for (char c : text) {
        if (result.size() - partStart >= kMaxPart) {
            result += "%\\";
            partStart = result.size();
        }
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        const bool plain = (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == ' ' || c == '-' || c == '_';
        if (plain) {
            result += c;
        } else {
            constexpr char kDigits[] = "0123456789abcdef";
            const auto byte = static_cast<unsigned char>(c);
            result += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
        }
    }
    return result;
}

/// The file of a value, in library form; empty without a place for it.
std::string valuePath(const std::string& folder, const std::string& section, const std::string& name) {
    return folder.empty() ? folder : folder + '\\' + encoded(section) + '\\' + encoded(name);
}

/// Makes the directories that @p path stands in.
bool makeWay(FileSystem& files, const std::string& path) {
    const std::string directory = path.substr(0, path.rfind('\\'));
    Failure failure;
    if (files.createDirectory(directory, failure) || failure.cause == Cause::exists) return true;
    return failure.cause == Cause::notFound && directory.find('\\') != std::string::npos && makeWay(files, directory) &&
           files.createDirectory(directory, failure);
}

bool isKnown(RegistryType type) {
    return type == RegistryType::text || type == RegistryType::binary || type == RegistryType::number32 ||
           type == RegistryType::number64;
}

}  // namespace

// A value's file is its type in decimal, a line feed, and its bytes.

bool registryFileRead(const std::string& folder, const std::string& section, const std::string& name,
                      RegistryValue& value) {
    try {
        std::string file;
        Failure failure;
        if (!FileSystem().read(valuePath(folder, section, name), file, failure)) return false;
        for (const RegistryType type :
             {RegistryType::text, RegistryType::binary, RegistryType::number32, RegistryType::number64}) {
            const std::string head = std::to_string(static_cast<std::uint32_t>(type)) + '\n';
            if (!file.starts_with(head)) continue;
            value.type = type;
            value.bytes = file.substr(head.size());
            return true;
        }
        return false;
    } catch (const std::exception&) {
        return false;
    }
}

bool registryFileWrite(const std::string& folder, const std::string& section, const std::string& name,
                       const RegistryValue& value) {
    try {
        FileSystem files;
        Failure failure;
        const std::string path = valuePath(folder, section, name);
        if (path.empty() || !isKnown(value.type) || !makeWay(files, path)) return false;
        // No encoded name holds a dot, so this is nobody's value.
        const std::string scratch = path.substr(0, path.rfind('\\')) + "\\new." + std::to_string(processId());
        const std::string file = std::to_string(static_cast<std::uint32_t>(value.type)) + '\n' + value.bytes;
        if (files.write(scratch, file, WriteMode::replace, /*flush=*/false, failure) &&
            files.rename(scratch, path, failure))
            return true;
        files.remove(scratch, failure);
        return false;
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace kora::platform
