#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kora::tracelog {

/// The version whose codes kLibraryTable has, and the table itself: both made by the build.
extern const char kLibraryVersion[];
extern const char kLibraryTable[];

struct PlaceName {
    std::string text;
    bool fault = false;             ///< it is filed with ERR()
    std::vector<std::string> data;  ///< what the words behind the code say
};

/// Names of modules, their files and the places in those. A table of them is text; `#` begins a comment line:
///
///     module 5 counter 1.2       number 1 to 63, name, and perhaps a version
///     file 1 Counter             number 0 to 63, name, and perhaps more for those who read the table
///     place 0x010 counting begins | how far
///     fault 0x700 there are too many
///
/// A `|` begins what a data word behind the code says. Numbers are decimal or begin with 0x.
class NameTable {
public:
    /// With the library's own names.
    NameTable();

    /// Adds a table. Its modules replace those of the same number; @p problem says so where their names differ, and is
    /// empty otherwise. False, with nothing changed and @p problem naming the line, when it cannot be read.
    bool add(std::string_view table, std::string& problem);

    /// Names by code, whose level and data flag do not matter; null when there are none.
    const std::string* module(std::uint32_t code) const;
    const std::string* file(std::uint32_t code) const;
    const PlaceName* place(std::uint32_t code) const;

    /// "kora 0.1.0", one after the other.
    std::string tables() const;

private:
    struct Module {
        std::string name, version;
        std::map<std::uint32_t, std::string> files;
        std::map<std::uint32_t, PlaceName> places;  // by file and location
    };
    std::map<std::uint32_t, Module> modules_;

    bool addLine(std::string_view line, std::map<std::uint32_t, Module>& modules, std::uint32_t& module,
                 std::uint32_t& file);
    const Module* find(std::uint32_t code) const;
};

}  // namespace kora::tracelog
