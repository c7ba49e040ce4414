#include "paths/NameExpansion.h"

#include <kora/Dir.h>
#include <kora/File.h>

#include <optional>
#include <utility>

#include "core/TraceRing.h"
#include "paths/ProfileEntry.h"
#include "paths/SharedDirectories.h"
#include "platform/Platform.h"
#include "strings/Bytes.h"

namespace kora {

namespace {

struct NamedDirectory {
    std::string_view name;
    std::string (*directory)();
};

constexpr NamedDirectory kNamedDirectories[] = {
    {"my documents", [] { return platform::environment().documents(); }},
    {"app data", DirGetAppDataDir},
    {"public data", DirGetPublicDataDir},
    {"program", [] { return std::string(sharedText(SharedDirectory::executable)); }},
    {"start in", [] { return std::string(sharedText(SharedDirectory::startIn)); }},
    {"windows", [] { return std::string(sharedText(SharedDirectory::systemBase)); }},
    {"temp", [] { return std::string(sharedText(SharedDirectory::temporary)); }},
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

/// What stands for a reference; nobody's answer is empty.
struct Answer {
    eFileAnswer from = FileAnswerNobody;
    std::string text;
};

Answer answerFrom(eFileAnswer from, std::optional<std::string> text) {
    return text ? Answer{from, platform::libraryPath(*text)} : Answer{};
}

Answer resolve(std::string_view reference) {
    if (reference.empty()) return {};
    if (auto value = platform::environment().variable(std::string(reference)))
        return answerFrom(FileAnswerVariable, std::move(value));
    if (auto directory = namedDirectory(reference)) return answerFrom(FileAnswerDirectory, std::move(directory));
    const std::size_t colon = reference.find(':', 1);
    return answerFrom(FileAnswerProfile, colon == reference.npos ? qualifiedDirectory("", reference)
                                                                 : qualifiedDirectory(reference.substr(0, colon),
                                                                                      reference.substr(colon + 1)));
}

std::string expand(std::string_view name, std::vector<FileReference>* references) {
    std::string expanded;
    while (true) {
        const std::size_t opening = name.find('%');
        const std::size_t closing = opening == name.npos ? name.npos : name.find('%', opening + 1);
        if (closing == name.npos) return expanded.append(name);
        expanded.append(name.substr(0, opening));
        const std::string_view reference = name.substr(opening + 1, closing - opening - 1);
        const Answer answer = resolve(reference);
        if (references && !reference.empty()) references->push_back({CString(reference), answer.from, answer.text});
        if (answer.from != FileAnswerNobody) {
            expanded += answer.text;
            name.remove_prefix(closing + 1);
        } else {
            // Its closing percent sign may open the next reference.
            expanded += '%';
            name.remove_prefix(opening + 1);
        }
    }
}

}  // namespace

std::string expandName(std::string_view name, std::vector<FileReference>* references) {
    traceStep(trace::kExpansionBegins);
    std::string expanded = expand(name, references);
    traceStep(trace::kExpansionDone);
    return expanded;
}

}  // namespace kora
