#pragma once

#include <kora/Kora.h>

#include <cstddef>
#include <span>

class ShtSheet;

namespace netlist {

/// A file format of the table, and the option that asks for it.
struct Format {
    const char* option;
    /// Empty @p bytes are filled; false with @p complaint when the format cannot hold the table.
    bool (*render)(ShtSheet& sheet, const CString& title, CString& bytes, CString& complaint);
};

/// All formats: "tsv", "csv" and "html".
std::span<const Format> formats();

/// The option that reads a netlist.
inline constexpr const char* kNetOption = "net";

/// What the command line asks for with one `-net FILE` and the `-tsv FILE`, `-csv FILE` and `-html FILE` behind it.
struct Request {
    struct Table {
        const Format* format;
        CString file;
    };
    CString netlist;
    std::vector<Table> tables;
    CString complaint;  ///< why it cannot be done, empty when it can
};

/// The place of the first of our options from @p place on; the number of arguments when there is none.
std::size_t findOption(const CStringArray& arguments, std::size_t place);

/// What the option at @p place asks for. Nothing, for a table that belongs to the `-net` before it.
Request requestAt(const CStringArray& arguments, std::size_t place);

}  // namespace netlist
