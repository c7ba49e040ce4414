#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "host/ModuleFile.h"

namespace kora::host {

/// A library that a file needs, or that one of those needs.
struct NeededLibrary {
    enum class State : std::uint8_t {
        found,
        loaded,   ///< the host needs it as well, so it is there by then
        unknown,  ///< a library of another system, of which nothing can be told here
        missing
    };
    std::string name;
    std::string path;      ///< where it was found
    std::string neededBy;  ///< the name of a library where it is not the file itself
    State state = State::missing;
};

/// Looks for libraries where the system's loader would. A file of the host's own kind is looked at as the host would
/// load it; one of another kind as far as that can be done from its own folder and the one above.
class LibrarySearch {
public:
    /// @p program is the host's own file, which tells what it has loaded itself.
    LibrarySearch(const ModuleFile& program, const ModuleFile& file);

    const std::vector<NeededLibrary>& needed() const { return needed_; }
    bool complete() const;
    /// Versions of libraries' names that the libraries found do not define: "GLIBC_2.38 of libc.so.6".
    std::vector<std::string> versionsMissing() const;
    /// Names that the file needs and nobody offers. Only asked where no library is missing.
    std::vector<std::string_view> namesMissing() const;

private:
    struct Library {
        std::string name;  // by which it was asked for
        ModuleFile file;
        NeededLibrary::State state = NeededLibrary::State::missing;
        bool known = false;  // what it exports
    };

    void add(const ModuleFile& file, bool loaded);
    const Library* find(std::string_view name) const;
    Library locate(std::string_view name, const ModuleFile& by) const;
    std::vector<std::string> foldersFor(const ModuleFile& by) const;
    std::vector<std::string_view> elfNamesMissing() const;
    std::vector<std::string_view> peNamesMissing() const;

    const ModuleFile& program_;
    const ModuleFile& file_;
    const bool native_;  // the file is of the host's own kind
    std::vector<NeededLibrary> needed_;
    std::vector<std::unique_ptr<Library>> libraries_;
};

}  // namespace kora::host
