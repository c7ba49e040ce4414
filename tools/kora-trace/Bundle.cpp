#include "tools/kora-trace/Bundle.h"

#include <ctime>
#include <sstream>

#include "platform/Platform.h"
#include "tasks/ToolsFolder.h"
#include "tools/kora-trace/Pages.h"
#include "tools/kora-trace/ReadLog.h"

namespace kora::tracelog {

namespace {

// The newest lines, at most as many bytes as a bundle takes.
std::string_view newestPart(std::string_view log) {
    if (log.size() <= kMostBundledLog) return log;
    log.remove_prefix(log.size() - kMostBundledLog);
    const std::size_t end = log.find('\n');
    return end == log.npos ? log : log.substr(end + 1);
}

std::string utcTime(std::int64_t seconds) {
    const auto time = static_cast<std::time_t>(seconds);
    const std::tm* utc = std::gmtime(&time);
    char text[32];
    const std::size_t length = utc != nullptr ? std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", utc) : 0;
    return std::string(text, length);
}

std::string moduleList(const BundleContents& contents) {
    std::string list = "Modules in " + contents.toolsFolder + " (bytes, time in UTC" +
                       (contents.version != nullptr ? ", version" : "") + ")\n";
    const std::vector<std::string> files = moduleFiles(contents.toolsFolder);
    for (const std::string& name : files) {
        const std::string path = contents.toolsFolder + (contents.toolsFolder.ends_with('\\') ? "" : "\\") + name;
        platform::FileStatus status;
        platform::Failure ignored;
        list += name;
        if (platform::fileSystem().status(path, status, ignored))
            list += "  " + std::to_string(status.size) + "  " + utcTime(status.modified);
        if (contents.version != nullptr) {
            const std::string version = contents.version(path);
            list += "  " + (version.empty() ? "unknown" : version);
        }
        list += '\n';
    }
    if (files.empty()) list += "none\n";
    return list;
}

std::string decoded(const std::string& log, const std::string& name, const NameTable& names, bool json) {
    std::istringstream in(log);
    std::ostringstream out;
    const auto page = json ? jsonPage(out, names, name) : textPage(out, names, /*colours=*/false);
    readLog(in, *page, LastDumps::kAll);
    return std::move(out).str();
}

std::string_view lastPart(std::string_view path) {
    const std::size_t separator = path.find_last_of("\\/");
    return separator == path.npos ? path : path.substr(separator + 1);
}

}  // namespace

std::vector<ZipEntry> bundleEntries(const BundleContents& contents, const NameTable& names, const HomePaths& homes) {
    std::string about = "Packed by kora-trace " + std::string(kLibraryVersion) +
                        ". In every part a ~ stands for home directories and for the user's name in paths.\n\n";
    std::vector<ZipEntry> entries = {{"contents.txt", {}}};
    const auto add = [&](const std::string& name, std::string bytes, const std::string& what) {
        about += name + ": " + what + '\n';
        entries.push_back({name, std::move(bytes)});
    };
    // The log first, then what it says: names in the other outputs may be spelt with escapes.
    const std::string_view part = newestPart(contents.log);
    const std::string log = homes.removedFrom(part), logName = homes.removedFrom(contents.logName);
    add("ts_error_log.txt", log,
        "the trace log " + logName +
            (part.size() < contents.log.size()
                 ? ", its newest part; " + std::to_string(contents.log.size() - part.size()) +
                       " older bytes are left out"
                 : ""));
    add("decoded.txt", decoded(log, logName, names, /*json=*/false), "what it says");
    add("decoded.json", decoded(log, logName, names, /*json=*/true), "the same for programs");
    for (const auto& [path, what] : {std::pair{&contents.mainProfile, "the main profile "},
                                     std::pair{&contents.stateProfile, "the state file "}}) {
        std::string bytes;
        platform::Failure failure;
        const std::string shown = homes.removedFrom(*path);
        if (path->empty()) continue;
        if (platform::fileSystem().read(*path, bytes, failure))
            add(std::string(lastPart(shown)), homes.removedFrom(bytes), what + shown);
        else
            about +=
                what + shown + (failure.cause == platform::Cause::notFound ? " is not there\n" : " cannot be read\n");
    }
    add("modules.txt", homes.removedFrom(moduleList(contents)), "the module files, with sizes and times");
    entries.front().bytes = about;
    return entries;
}

std::string bundleList(const std::vector<ZipEntry>& entries) {
    constexpr std::size_t kSizeWidth = 10;
    std::string list;
    for (const ZipEntry& entry : entries) {
        const std::string size = std::to_string(entry.bytes.size());
        list +=
            std::string(size.size() < kSizeWidth ? kSizeWidth - size.size() : 0, ' ') + size + "  " + entry.name + '\n';
    }
    return list;
}

}  // namespace kora::tracelog
