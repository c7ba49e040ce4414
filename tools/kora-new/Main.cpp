#include <kora/Kora.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include "tools/kora-new/ModuleName.h"
#include "tools/kora-new/NewModule.h"

// Writes the folder of a new module.

namespace {

constexpr char kUsage[] =
    "Usage: kora-new [--dir DIR] NAME\n"
    "\n"
    "Writes a module called NAME into a new folder NAME: its source, its strings, a test, a CMakeLists.txt and a\n"
    "README.md, which says how to go on.\n"
    "\n"
    "  --dir DIR   makes the folder in DIR, not here\n"
    "  --help      shows this\n"
    "  --version   shows the version\n";

int misused(const std::string& complaint) {
    std::fprintf(stderr, "kora-new: %s\n", complaint.c_str());
    return 2;
}

std::string forShell(const std::filesystem::path& path) {
    const std::string text = path.string();
    return text.find(' ') == text.npos ? text : '"' + text + '"';
}

}  // namespace

int main(int count, char** arguments) try {
    using namespace kora::newmodule;
    std::string name, directory;
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        if (argument == "--help" || argument == "--version") {
            std::fputs(argument == "--help" ? kUsage : "kora-new " KORA_VERSION "\n", stdout);
            return 0;
        }
        if (argument == "--dir") {
            if (++i == count) return misused("--dir needs a folder.");
            directory = arguments[i];
        } else if (argument.starts_with("-")) {
            return misused("there is no option " + argument + "; --help shows all.");
        } else if (!name.empty()) {
            return misused("one module at a time, not " + name + " and " + argument + " too.");
        } else if (name = argument; name.empty()) {
            return misused(complaintOfName(name));
        }
    }
    if (name.empty()) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (const std::string complaint = complaintOfName(name); !complaint.empty()) return misused(complaint);
    std::vector<std::string> files;
    if (const std::string complaint = writeModule(name, directory, files); !complaint.empty()) {
        std::fprintf(stderr, "kora-new: %s\n", complaint.c_str());
        return 1;
    }
    for (const std::string& file : files) std::printf("%s\n", file.c_str());
    const std::filesystem::path folder = std::filesystem::path(files.front()).parent_path();
    const std::string source = forShell(folder), build = forShell(folder / "build");
    std::printf(
        "\nBuild and test it, with -DCMAKE_PREFIX_PATH=... behind the first line where Kora is not in the system's own "
        "folders:\n"
        "  cmake -S %s -B %s\n  cmake --build %s\n  ctest --test-dir %s --output-on-failure\n",
        source.c_str(), build.c_str(), build.c_str(), build.c_str());
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "kora-new: %s\n", failure.what());
    return 1;
}
