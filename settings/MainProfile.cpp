#include "settings/MainProfile.h"

#include <kora/Dir.h>
#include <kora/Trace.h>

#include <algorithm>
#include <set>
#include <vector>

#include "core/TraceRing.h"
#include "paths/NameExpansion.h"
#include "paths/PathText.h"
#include "platform/Platform.h"
#include "settings/ProfileFile.h"
#include "settings/ProfileText.h"
#include "strings/Bytes.h"

namespace kora {

namespace {

std::string folded(std::string text) {
    for (char& c : text) c = foldCase(c);
    return text;
}

void note(const std::string& path, const char* outcome) {
    TraceNote("LoadIniFileInt: ", (path + outcome).c_str(), false);
}

/// The profile files of a folder, in name order.
std::vector<std::string> profilesIn(const std::string& folder) {
    std::vector<platform::DirectoryEntry> entries;
    platform::Failure failure;
    if (!platform::fileSystem().list(folder, entries, failure)) note(folder, ": no such folder");
    std::vector<std::string> paths;
    for (const platform::DirectoryEntry& entry : entries)
        if (entry.kind == platform::FileKind::file && folded(entry.name).ends_with(".INI"))
            paths.push_back((folder.ends_with('\\') ? folder : folder + '\\') + entry.name);
    std::sort(paths.begin(), paths.end(), [](const std::string& a, const std::string& b) {
        const int order = compareTexts(folded(a), folded(b));
        return order != 0 ? order < 0 : a < b;
    });
    return paths;
}

/// The folder that a profile includes; empty when it includes none.
std::string includedFolder(const std::string& path, std::string_view text) {
    ProfileLine line;
    LinePlace place;
    if (!findProfileEntry(text, "System", "IncludeFolder", line, place)) return {};
    DirPath folder(std::string(pathAbove(path)).c_str());
    if (!folder.DirStringSet(expandName(line.value).c_str())) return {};
    return directoryForSystem(folder.DirStringGet());
}

}  // namespace

void loadProfile(const std::string& path, ProfileTable& table) {
    std::set<std::string> seen;
    std::vector<std::string> waiting = {path};  // the next one stands last
    while (!waiting.empty()) {
        const std::string next = std::move(waiting.back());
        waiting.pop_back();
        if (!seen.insert(folded(next)).second) continue;
        traceStep(trace::kProfileLoad);
        std::string text;
        platform::Failure failure;
        if (!readProfile(next, text, failure)) {
            note(next, failure.cause == platform::Cause::notFound ? ": no such file" : ": cannot be read");
            continue;
        }
        note(next, "");
        const std::string_view kept = table.add(std::move(text), next);
        const std::string folder = includedFolder(next, kept);
        if (folder.empty() || !seen.insert(folded(folder) + '\\').second) continue;
        traceStep(trace::kProfileInclude);
        const std::vector<std::string> included = profilesIn(folder);
        waiting.insert(waiting.end(), included.rbegin(), included.rend());
    }
}

}  // namespace kora
