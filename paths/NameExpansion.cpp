#include "paths/NameExpansion.h"

#include <kora/Dir.h>
#include <kora/Trace.h>

#include <optional>

#include "core/TraceCodes.h"
#include "paths/ProfileEntry.h"
#include "paths/SharedDirectories.h"
#include "platform/Platform.h"
#include "strings/Bytes.h"

namespace kora {

namespace {

enum Step : std::uint32_t { kEntry = 0x960, kExit = 0x97F };

std::string shared(SharedDirectory which) {
    const char* text = sharedDirectory(which);
    return text != nullptr ? text : "";
}

struct NamedDirectory {
    std::string_view name;
    std::string (*directory)();
};

constexpr NamedDirectory kNamedDirectories[] = {
    {"my documents", [] { return platform::environment().documents(); }},
    {"app data", DirGetAppDataDir},
    {"public data", DirGetPublicDataDir},
    {"program", [] { return shared(SharedDirectory::executable); }},
    {"start in", [] { return shared(SharedDirectory::startIn); }},
    {"windows", [] { return shared(SharedDirectory::systemBase); }},
    {"temp", [] { return shared(SharedDirectory::temporary); }},
};

std::optional<std::string> namedDirectory(std::string_view name) {
    for (const NamedDirectory& named : kNamedDirectories) {
        if (!equalIgnoringCase(name, named.name)) continue;
        std::string directory = named.directory();
        if (!directory.empty()) return directory;
    }
    return std::nullopt;
}

std::optional<std::string> qualifiedDirectory(std::string_view qualifier, std::string_view name) {
    std::string directory;
    if (equalIgnoringCase(qualifier, "ini") && profileDirectory(std::string(name), directory)) return directory;
    return std::nullopt;
}

std::optional<std::string> resolve(std::string_view reference) {
    if (reference.empty()) return std::nullopt;
    if (auto value = platform::environment().variable(std::string(reference))) return value;
    if (auto directory = namedDirectory(reference)) return directory;
    const std::size_t colon = reference.find(':', 1);
    return colon == reference.npos ? qualifiedDirectory("", reference)
                                   : qualifiedDirectory(reference.substr(0, colon), reference.substr(colon + 1));
}

std::string expand(std::string_view name) {
    std::string expanded;
    while (true) {
        const std::size_t opening = name.find('%');
        const std::size_t closing = opening == name.npos ? name.npos : name.find('%', opening + 1);
        if (closing == name.npos) return expanded.append(name);
        expanded.append(name.substr(0, opening));
        if (const auto value = resolve(name.substr(opening + 1, closing - opening - 1))) {
            expanded += platform::libraryPath(*value);
            name.remove_prefix(closing + 1);
        } else {
            // Its closing percent sign may open the next reference.
            expanded += '%';
            name.remove_prefix(opening + 1);
        }
    }
}

}  // namespace

std::string expandName(std::string_view name) {
    TraceCode(trace::code(trace::kFileLocation, kEntry));
    std::string expanded = expand(name);
    TraceCode(trace::code(trace::kFileLocation, kExit));
    return expanded;
}

}  // namespace kora
