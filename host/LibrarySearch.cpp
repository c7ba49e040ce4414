#include "host/LibrarySearch.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "host/SystemFolders.h"

namespace kora::host {

namespace {

using State = NeededLibrary::State;
using Format = BinaryFile::Format;

constexpr std::size_t kMostLibraries = 1000;
constexpr char kSeparator = static_cast<char>(std::filesystem::path::preferred_separator);

std::string lower(std::string_view text) {
    std::string folded(text);
    for (char& character : folded)
        if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    return folded;
}

// Names that stand for whatever library of the Windows system has the function.
bool isStandIn(std::string_view name) {
    return lower(name).starts_with("api-ms-") || lower(name).starts_with("ext-ms-");
}

void append(std::vector<std::string>& folders, const std::vector<std::string>& more) {
    folders.insert(folders.end(), more.begin(), more.end());
}

}  // namespace

LibrarySearch::LibrarySearch(const ModuleFile& program, const ModuleFile& file)
    : program_(program), file_(file), native_(program.tables.sameMachine(file.tables)) {
    if (native_) add(program, /*loaded=*/true);
    add(file, /*loaded=*/false);
}

const LibrarySearch::Library* LibrarySearch::find(std::string_view name) const {
    for (const auto& library : libraries_) {
        const bool same = file_.tables.format == Format::pe
                              ? lower(library->name) == lower(name)
                              : library->name == name || library->file.tables.ownName == name;
        if (same) return library.get();
    }
    return nullptr;
}

/// Finds what @p file needs, and what that needs, breadth first as the loader does.
void LibrarySearch::add(const ModuleFile& file, bool loaded) {
    std::vector<const ModuleFile*> open{&file};
    for (std::size_t next = 0; next < open.size(); ++next) {
        const ModuleFile& by = *open[next];
        const bool direct = next == 0;
        for (const std::string_view name : by.tables.needed) {
            const Library* library = find(name);
            const bool anew = library == nullptr;
            if (anew) {
                if (libraries_.size() == kMostLibraries) return;
                Library located = locate(name, by);
                // The host runs, so what it needs is there, whether its way is seen from here or not.
                if (loaded) located.state = State::loaded;
                library = libraries_.emplace_back(std::make_unique<Library>(std::move(located))).get();
                if (library->known) open.push_back(&library->file);
            }
            if (!loaded && (direct || (anew && library->state == State::missing)))
                needed_.push_back(
                    {std::string(name), library->file.path, direct ? "" : nameOf(by.path), library->state});
        }
    }
}

/// The folders that a library which @p by needs is looked for in.
std::vector<std::string> LibrarySearch::foldersFor(const ModuleFile& by) const {
    const std::string own = folderOf(file_.path);
    std::vector<std::string> folders;
    if (file_.tables.format == Format::elf) {
        const BinaryFile &tables = by.tables, &program = program_.tables;
        if (tables.runpath.empty()) append(folders, foldersOf(tables.rpath, folderOf(by.path)));
        if (native_ && tables.runpath.empty() && program.runpath.empty())
            append(folders, foldersOf(program.rpath, folderOf(program_.path)));
        if (native_) append(folders, foldersOfUser());
        append(folders, foldersOf(tables.runpath, folderOf(by.path)));
        if (native_) append(folders, foldersOfLoader());
    } else if (native_) {
        folders = {own, folderOf(program_.path)};
        append(folders, foldersOfWindows());
        append(folders, foldersOfPath());
    }
    // Where the host of a file of another kind stands is not known. The tools folder is usually in its folder.
    if (!native_) append(folders, {own, own + kSeparator + ".."});
    return folders;
}

LibrarySearch::Library LibrarySearch::locate(std::string_view name, const ModuleFile& by) const {
    const auto library = [&](ModuleFile file, State state, bool known) {
        return Library{std::string(name), std::move(file), state, known};
    };
    const std::vector<std::string> system =
        native_ && file_.tables.format == Format::pe ? foldersOfWindows() : std::vector<std::string>();
    std::vector<std::string> folders = foldersFor(by);
    // A name with a folder in it is no matter of looking.
    const bool whole = name.find('/') != std::string_view::npos;
    if (whole) folders = {""};
    for (const std::string& folder : folders) {
        ModuleFile file = readModuleFile(whole ? std::string(name) : folder + kSeparator + std::string(name));
        if (!file.trouble.empty()) continue;
        // What the Windows system's own libraries need is its own affair.
        const bool ofSystem = std::find(system.begin(), system.end(), folder) != system.end();
        if (ofSystem || file.tables.sameMachine(file_.tables)) return library(std::move(file), State::found, !ofSystem);
    }
    return library({}, native_ && !isStandIn(name) ? State::missing : State::unknown, false);
}

bool LibrarySearch::complete() const {
    return std::none_of(needed_.begin(), needed_.end(),
                        [](const NeededLibrary& library) { return library.state == State::missing; });
}

std::vector<std::string> LibrarySearch::versionsMissing() const {
    std::vector<std::string> missing;
    for (const BinaryFile::Version& version : file_.tables.versionsNeeded) {
        const Library* const library = find(version.library);
        // A library that has no versions at all is taken for one that has them all.
        if (library == nullptr || library->file.tables.versionsDefined.empty()) continue;
        const auto& defined = library->file.tables.versionsDefined;
        if (std::find(defined.begin(), defined.end(), version.name) == defined.end())
            missing.push_back(std::string(version.name) + " of " + std::string(version.library));
    }
    return missing;
}

std::vector<std::string_view> LibrarySearch::namesMissing() const {
    return file_.tables.format == Format::pe ? peNamesMissing() : elfNamesMissing();
}

/// What has been loaded offers its names to all: the host, its libraries, the file itself, and its own.
std::vector<std::string_view> LibrarySearch::elfNamesMissing() const {
    std::unordered_set<std::string_view> offered(program_.tables.exports.begin(), program_.tables.exports.end());
    for (const auto& library : libraries_) {
        if (!library->known) return {};
        offered.insert(library->file.tables.exports.begin(), library->file.tables.exports.end());
    }
    std::vector<std::string_view> missing;
    for (const BinaryFile::Import& import : file_.tables.imports)
        if (!offered.contains(import.name)) missing.push_back(import.name);
    return missing;
}

/// Each name is asked of the one library that the file names for it.
std::vector<std::string_view> LibrarySearch::peNamesMissing() const {
    std::vector<std::string_view> missing;
    std::string_view asked;
    std::unordered_set<std::string_view> offered;
    bool known = false;
    for (const BinaryFile::Import& import : file_.tables.imports) {
        if (import.library != asked || asked.empty()) {
            asked = import.library;
            const Library* const library = find(asked);
            known = library != nullptr && library->known;
            offered.clear();
            if (known) offered.insert(library->file.tables.exports.begin(), library->file.tables.exports.end());
        }
        if (known && !offered.contains(import.name)) missing.push_back(import.name);
    }
    return missing;
}

}  // namespace kora::host
