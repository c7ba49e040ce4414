#include "tools/kora-trace/Bundle.h"

#include <ctime>
#include <sstream>

#include "host/LoadDoctor.h"
#include "platform/Platform.h"
#include "tasks/ToolsFolder.h"
#include "tools/kora-trace/Escapes.h"
#include "tools/kora-trace/Pages.h"
#include "tools/kora-trace/ReadLog.h"

namespace kora::tracelog {

namespace {

constexpr std::size_t kMostBundledLog = 1024 * 1024;

std::string utcTime(std::int64_t seconds) {
    const auto time = static_cast<std::time_t>(seconds);
    const std::tm* utc = std::gmtime(&time);
    char text[32];
    const std::size_t length = utc != nullptr ? std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", utc) : 0;
    return std::string(text, length);
}

std::string moduleList(const BundleContents& contents) {
    const std::vector<std::string> files = moduleFiles(contents.toolsFolder);
    std::string list = std::to_string(files.size()) + (files.size() == 1 ? " module" : " modules") + " in " +
                       platform::nativePath(contents.toolsFolder) + ", times in UTC\n";
    for (const std::string& name : files) {
        const std::string path = contents.toolsFolder + (contents.toolsFolder.ends_with('\\') ? "" : "\\") + name;
        list += host::listingLine(host::readModuleFile(platform::nativePath(path)));
        platform::FileStatus status;
        platform::Failure ignored;
        if (platform::fileSystem().status(path, status, ignored)) list += ", of " + utcTime(status.modified);
        list += '\n';
    }
    return list;
}

std::string decoded(const std::string& log, const NameTable& names) {
    std::istringstream in(log);
    std::ostringstream out;
    readLog(in, *textPage(out, names, /*colours=*/false), LastDumps::kAll);
    return std::move(out).str();
}

std::string_view lastPart(std::string_view path) {
    const std::size_t separator = path.find_last_of("\\/");
    return separator == path.npos ? path : path.substr(separator + 1);
}

}  // namespace

void takeNewest(std::istream& log, BundleContents& contents) {
    constexpr std::size_t kPart = 256 * 1024;
    std::string& kept = contents.log;
    std::uint64_t read = 0;
    while (log) {
        const std::size_t held = kept.size();
        kept.resize(held + kPart);
        log.read(kept.data() + held, kPart);
        kept.resize(held + static_cast<std::size_t>(log.gcount()));
        read += static_cast<std::uint64_t>(log.gcount());
        if (kept.size() > 2 * kMostBundledLog) kept.erase(0, kept.size() - kMostBundledLog);
    }
    if (read > kMostBundledLog) {
        kept.erase(0, kept.size() - kMostBundledLog);
        kept.erase(0, kept.find('\n') + 1);  // nothing, where there is no line's end
    }
    contents.olderBytes = read - kept.size();
}

std::vector<ZipEntry> bundleEntries(const BundleContents& contents, const NameTable& names, const HomePaths& homes) {
    std::string about = "Packed by kora-trace " + std::string(kLibraryVersion) +
                        ". In every part a ~ stands for home directories and for the user's name in paths.\n\n";
    std::vector<ZipEntry> entries = {{"contents.txt", {}}};
    const auto add = [&](const std::string& name, std::string bytes, const std::string& what) {
        about += name + ": " + what + '\n';
        entries.push_back({name, std::move(bytes)});
    };
    // What it says is read from what is packed, which has nothing left to be removed.
    const std::string log = homes.removedFrom(contents.log), logName = homes.removedFrom(contents.logName);
    add("ts_error_log.txt", log,
        "the trace log " + logName +
            (contents.olderBytes > 0
                 ? ", its newest part; " + std::to_string(contents.olderBytes) + " older bytes are left out"
                 : ""));
    add("decoded.txt", decoded(log, names), "what it says");
    for (const auto& [path, what] : {std::pair{&contents.mainProfile, "the main profile "},
                                     std::pair{&contents.stateProfile, "the state file "}}) {
        std::string bytes;
        platform::Failure failure;
        const std::string shown = homes.removedFrom(*path);
        if (path->empty()) continue;
        if (platform::fileSystem().read(*path, bytes, failure))
            add("settings/" + utf8(lastPart(shown)), homes.removedFrom(bytes), what + shown);
        else
            about +=
                what + shown + (failure.cause == platform::Cause::notFound ? " is not there\n" : " cannot be read\n");
    }
    add("modules.txt", homes.removedFrom(moduleList(contents)),
        "the module files, with the versions that they were built for");
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
