#include <kora/File.h>

#include <exception>
#include <string>

#include "platform/Platform.h"

namespace {

using kora::platform::FileKind;

// Names given out by this process, so that two are different before either file is made.
constinit std::uint32_t serial = 0;

constexpr int kAttempts = 10000;

FileKind kindOf(const std::string& path) {
    FileKind kind = FileKind::none;
    kora::platform::Failure ignored;
    kora::platform::fileSystem().kind(path, kind, ignored);
    return kind;
}

std::string directoryForTemporaryNames() {
    const auto tmp = kora::platform::environment().variable("TMP");
    for (const std::string& directory : {kora::platform::libraryPath(tmp.value_or("")), std::string("c:\\temp")})
        if (!directory.empty() && kindOf(directory) == FileKind::directory) return directory;
    return kora::platform::environment().temporary();
}

}  // namespace

bool FilePath::SetTempName(const char* prefix, const char* type) try {
    std::string stem = directoryForTemporaryNames();
    if (!stem.empty() && stem.back() != '\\') stem += '\\';
    stem += prefix != nullptr && *prefix != '\0' ? prefix : "qztemp_";
    stem += std::to_string(kora::platform::processId()) + '_';
    std::string suffix;
    if (type != nullptr && *type != '\0' && *type != '.') suffix = '.';
    if (type != nullptr) suffix += type;

    std::string name;
    int attempts = kAttempts;
    do {
        name = stem + std::to_string(++serial) + suffix;
    } while (kindOf(name) != FileKind::none && --attempts > 0);
    // The answer is true all the same; what is written next must not go to the old file.
    if (attempts == 0 || !FileStringSet(name.c_str())) FileNullSet();
    return true;
} catch (const std::exception&) {
    FileNullSet();
    return true;
}
