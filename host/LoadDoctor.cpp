#include "host/LoadDoctor.h"

#include <algorithm>
#include <utility>

namespace kora::host {

namespace {

using Kind = BinaryFile::Kind;
using Format = BinaryFile::Format;
using State = NeededLibrary::State;

constexpr std::size_t kMostNamesShown = 20;

std::string quoted(std::string_view name) { return '"' + printable(name) + '"'; }

bool isKora(std::string_view library) { return library.starts_with("libkora.so") || library == "kora.dll"; }

/// What keeps every loader from the file, whatever else is there.
std::string unreadable(const ModuleFile& file) {
    if (!file.trouble.empty()) return "The file " + file.trouble + ": name a module file that can be read.";
    if (!file.tables.damage.empty())
        return "The file is damaged, " + file.tables.damage + ": build it or copy it here again.";
    if (file.tables.format == Format::unknown)
        return "This is neither an ELF nor a PE file: build the module with kora_add_module().";
    if (file.tables.kind != Kind::library)
        return std::string("This is ") + (file.tables.kind == Kind::program ? "a program" : "no library") +
               ": build the module with kora_add_module().";
    return {};
}

std::string missingLibrary(const NeededLibrary& library, Format format) {
    const std::string by = library.neededBy.empty() ? "It" : printable(library.neededBy);
    std::string text = by + " needs " + printable(library.name) + ", which is not in reach: ";
    if (isKora(library.name))
        return text + "build it against this host's version of Kora, or use the host of that version.";
    if (format == Format::pe) return text + "put it beside the module, or install it.";
    return text + "install it, or name its folder in LD_LIBRARY_PATH.";
}

/// Under which decoration the entry is there, when it is not the one that the library looks for.
std::string wrongEntry(const ModuleFile& file) {
    const std::vector<std::string_view> names = file.entries();
    if (names.empty()) return "It exports no entry: define it with KORA_MODULE().";
    const std::string_view name = names.front();
    const std::string is = "Its entry is exported as " + quoted(name) + ", ";
    if (name.starts_with('?')) return is + "as another compiler decorates it: build it with GCC, MinGW or Clang.";
    if (name.starts_with("_Z")) return is + "with other parameters or a scope: define it with KORA_MODULE().";
    return is + "without the decoration of C++: define it with KORA_MODULE(), and not as extern \"C\".";
}

/// What would keep its own kind of host from the file; empty when nothing is seen.
std::string obstacle(const ModuleFile& file, const Diagnosis& diagnosis, const std::string& version) {
    for (const NeededLibrary& library : diagnosis.needed)
        if (library.state == State::missing) return missingLibrary(library, file.tables.format);
    if (!diagnosis.versionsMissing.empty())
        return "It needs version " + printable(diagnosis.versionsMissing.front()) +
               ", which this machine's does not have: build it on a system as old as this one, or update this one.";
    const std::string built = printable(file.tables.koraVersion);
    const bool other = !built.empty() && built != version;
    if (const std::size_t count = diagnosis.namesMissing.size(); count > 0)
        return "It needs " + std::to_string(count) + (count == 1 ? " name" : " names") +
               " that no library here exports, " + quoted(diagnosis.namesMissing.front()) +
               " first: " + (other ? "take it to a host of Kora " + built + ", or build" : std::string("build")) +
               " it again against Kora " + version + ".";
    return file.hasEntry() ? "" : wrongEntry(file);
}

void line(std::string& text, const char* title, const std::string& value) {
    text += "  " + std::string(title);
    text.append(12 - std::string_view(title).size(), ' ');
    text += value + '\n';
}

std::string entryText(const ModuleFile& file) {
    const std::vector<std::string_view> names = file.entries();
    if (names.empty()) return "none";
    return printable(names.front()) +
           (file.hasEntry() ? "" : " (the library looks for " + std::string(kEntryName) + ")");
}

std::string stateText(const NeededLibrary& library) {
    switch (library.state) {
        case State::loaded:
            return library.path.empty() ? "loaded by the host" : library.path + " (the host's)";
        case State::found:
            return library.path;
        case State::unknown:
            return "not beside it, which cannot be judged here";
        default:
            return "MISSING";
    }
}

void lines(std::string& text, const char* title, const std::vector<std::string>& values) {
    for (std::size_t i = 0; i < values.size() && i < kMostNamesShown; ++i)
        line(text, i == 0 ? title : "", printable(values[i]));
    if (values.size() > kMostNamesShown)
        line(text, "", "and " + std::to_string(values.size() - kMostNamesShown) + " more");
}

}  // namespace

std::string builtAgainst(const BinaryFile& file) {
    if (!file.koraVersion.empty()) return std::string(file.koraVersion);
    const auto found = std::find_if(file.needed.begin(), file.needed.end(), isKora);
    constexpr std::string_view kStem = "libkora.so.";
    return found != file.needed.end() && found->starts_with(kStem) ? std::string(found->substr(kStem.size())) : "";
}

Diagnosis diagnose(const ModuleFile& file, const ModuleFile& program, const std::string& version) {
    Diagnosis diagnosis;
    diagnosis.advice = unreadable(file);
    if (!diagnosis.advice.empty()) return diagnosis;
    const LibrarySearch search(program, file);
    diagnosis.needed = search.needed();
    if (search.complete()) {
        diagnosis.versionsMissing = search.versionsMissing();
        for (const std::string_view name : search.namesMissing()) diagnosis.namesMissing.emplace_back(name);
    }
    diagnosis.advice = obstacle(file, diagnosis, version);
    const bool native = file.tables.sameMachine(program.tables);
    const bool sound = diagnosis.advice.empty();
    diagnosis.loads = native && sound;
    if (!native) {
        std::string text = "It is for " + file.tables.machineText() + " and this host is " +
                           program.tables.machineText() +
                           ": build it for this one, or take it to a host of its own kind";
        if (diagnosis.advice.starts_with("It")) diagnosis.advice.front() = 'i';
        diagnosis.advice = text + (sound ? "." : ", which would refuse it as well: " + diagnosis.advice);
    } else if (sound) {
        diagnosis.advice = "It would load.";
    }
    return diagnosis;
}

std::string listingLine(const ModuleFile& file) {
    const BinaryFile& tables = file.tables;
    std::string text = printable(nameOf(file.path)) + ": ";
    if (!file.trouble.empty()) return text + file.trouble;
    text += tables.machineText() + ", " + std::to_string(file.bytes.size()) + " bytes";
    if (!tables.damage.empty()) return text + ", damaged";
    const std::string built = printable(builtAgainst(tables));
    if (!built.empty()) text += ", for Kora " + built;
    text += file.hasEntry() ? ", entry" : file.entries().empty() ? ", no entry" : ", wrong entry";
    if (tables.strings) text += ", strings: " + std::to_string(*tables.strings);
    return text + ", exported names: " + std::to_string(tables.exports.size());
}

std::string diagnosisText(const ModuleFile& file, const Diagnosis& diagnosis, const std::string& version) {
    std::string text = printable(file.path) + '\n';
    if (file.trouble.empty()) {
        const BinaryFile& tables = file.tables;
        line(text, "format",
             tables.machineText() +
                 (tables.kind == Kind::library   ? " library"
                  : tables.kind == Kind::program ? " program"
                                                 : "") +
                 ", " + std::to_string(file.bytes.size()) + " bytes");
        if (tables.kind == Kind::library) {
            line(text, "entry", entryText(file));
            const std::string built = printable(builtAgainst(tables));
            line(text, "built for",
                 (built.empty() ? "a version of Kora that is not said" : "Kora " + built) + "; this host has " +
                     version);
            if (tables.strings) line(text, "strings", std::to_string(*tables.strings));
            line(text, "exports", std::to_string(tables.exports.size()));
        }
        std::size_t width = 0;
        for (const NeededLibrary& library : diagnosis.needed) width = std::max(width, library.name.size());
        const char* title = "needs";
        for (const NeededLibrary& library : diagnosis.needed) {
            std::string name = printable(library.name);
            name.resize(width + 2, ' ');
            line(text, std::exchange(title, ""),
                 name + printable(stateText(library)) +
                     (library.neededBy.empty() ? "" : ", needed by " + printable(library.neededBy)));
        }
        lines(text, "versions", diagnosis.versionsMissing);
        lines(text, "unresolved", diagnosis.namesMissing);
    }
    return text + printable(diagnosis.advice) + '\n';
}

}  // namespace kora::host
