#include <pwd.h>
#include <sys/auxv.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "platform/Platform.h"
#include "platform/posix/NativePath.h"

namespace kora::platform {

using namespace posix;

namespace {

/// The directory that variable @p name gives; empty when it is not set or not absolute.
std::string variableDirectory(Environment& environment, const char* name) {
    return directoryPath(environment.variable(name).value_or(""));
}

std::string home(Environment& environment) {
    std::string home = variableDirectory(environment, "HOME");
    if (!home.empty()) return home;
    passwd entry, *found = nullptr;
    char texts[4096];
    if (getpwuid_r(getuid(), &entry, texts, sizeof texts, &found) != 0 || !found || !found->pw_dir) return {};
    return directoryPath(found->pw_dir);
}

std::string below(const std::string& directory, const char* name) {
    return directory.empty() ? directory : directory + (directory.ends_with('\\') ? "" : "\\") + name;
}

/// The directory after @p key in a file of shell assignments, KEY="$HOME/a" or KEY="/a", of which the last counts.
std::string assignedDirectory(std::string_view file, std::string_view key, const std::string& homeDirectory) {
    std::string directory;
    while (!file.empty()) {
        std::string_view line = file.substr(0, file.find('\n'));
        file.remove_prefix(std::min(line.size() + 1, file.size()));
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        if (!line.starts_with(key)) continue;
        line.remove_prefix(key.size());
        if (!line.starts_with("=\"")) continue;
        line.remove_prefix(2);
        constexpr std::string_view kHome = "$HOME";
        const bool inHome = line.starts_with(kHome);
        if (inHome && homeDirectory.empty()) continue;
        if (inHome) line.remove_prefix(kHome.size());
        std::string text;
        for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
            if (line[i] == '\\' && i + 1 < line.size()) ++i;
            text += line[i];
        }
        if (!text.empty() && text[0] != '/') continue;
        directory = inHome ? directoryPath(nativePath(homeDirectory) + text) : directoryPath(text);
    }
    return directory;
}

/// Runs @p place; memory that runs out leaves the directory unnamed.
template <typename Place>
std::string named(Place place) {
    try {
        return place();
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace

std::optional<std::string> Environment::variable(const std::string& name) {
    const char* value = name.find('\0') == std::string::npos ? getenv(name.c_str()) : nullptr;
    return value ? std::optional<std::string>(value) : std::nullopt;
}

std::string Environment::documents() {
    return named([this] {
        const std::string homeDirectory = home(*this);
        std::string assignments;
        Failure ignored;
        FileSystem().read(below(userData(), "user-dirs.dirs"), assignments, ignored);
        std::string documents = assignedDirectory(assignments, "XDG_DOCUMENTS_DIR", homeDirectory);
        return documents.empty() ? homeDirectory : documents;
    });
}

std::string Environment::userData() {
    return named([this] {
        std::string configuration = variableDirectory(*this, "XDG_CONFIG_HOME");
        return configuration.empty() ? below(home(*this), ".config") : configuration;
    });
}

std::string Environment::sharedData() { return "Z:\\usr\\local\\share"; }

std::string Environment::systemDirectory() { return "Z:\\etc"; }

std::string Environment::temporary() {
    return named([this] {
        std::string temporary = variableDirectory(*this, "TMPDIR");
        return temporary.empty() ? std::string("Z:\\tmp") : temporary;
    });
}

std::string Environment::workingDirectory() {
    return named([] {
        char path[PATH_MAX];
        return getcwd(path, sizeof path) ? directoryPath(path) : std::string();
    });
}

std::string Environment::programDirectory() {
    return named([] {
        char path[PATH_MAX];
        const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
        // Where that is not mounted, the name under which the program was started.
        const auto* const started = reinterpret_cast<const char*>(getauxval(AT_EXECFN));
        if (length <= 0 && (!started || !realpath(started, path))) return std::string();
        const std::string_view program(path, length > 0 ? static_cast<std::size_t>(length) : std::strlen(path));
        return directoryPath(program.substr(0, program.rfind('/') + 1));
    });
}

std::string Environment::registryFolder() {
    return named([this] { return below(userData(), "Veltrane\\Tessera5\\registry"); });
}

}  // namespace kora::platform
