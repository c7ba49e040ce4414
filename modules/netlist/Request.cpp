#include "Request.h"

#include <kora/File.h>

#include <filesystem>
#include <system_error>

#include "SheetPage.h"
#include "SheetText.h"

namespace netlist {

namespace {

constexpr Format kFormats[] = {
    {"tsv",
     [](ShtSheet& sheet, const CString&, CString& bytes, CString& complaint) {
         if (sheetAsTsv(sheet, bytes)) return true;
         complaint = "a row of the table has more than 64000 characters";
         return false;
     }},
    {"csv",
     [](ShtSheet& sheet, const CString&, CString& bytes, CString&) {
         bytes = sheetAsCsv(sheet);
         return true;
     }},
    {"html",
     [](ShtSheet& sheet, const CString& title, CString& bytes, CString&) {
         bytes = sheetAsHtml(sheet, title);
         return true;
     }},
};

bool isOption(const CString& argument, const char* option) {
    return (argument.starts_with('-') || argument.starts_with('/')) && argument.compare(1, CString::npos, option) == 0;
}

const Format* formatOf(const CString& argument) {
    for (const Format& format : kFormats)
        if (isOption(argument, format.option)) return &format;
    return nullptr;
}

// The file that an option names: none where the arguments end, or another option stands.
CString fileBehind(const CStringArray& arguments, std::size_t option) {
    const std::size_t place = option + 1;
    if (place >= arguments.size() || arguments[place].starts_with('-')) return {};
    return findOption(arguments, place) != place ? arguments[place] : CString();
}

bool isSameFile(const CString& a, const CString& b) {
    FilePath first(a.c_str()), second(b.c_str());
    std::error_code ignored;
    return first.FileCompare(&second) || std::filesystem::equivalent(a, b, ignored);
}

CString complaintOf(const Request& request) {
    if (request.netlist.empty()) return "-net needs the name of a netlist file";
    for (const Request::Table& table : request.tables) {
        if (table.file.empty()) return CString("-") + table.format->option + " needs the name of the file to write";
        if (isSameFile(table.file, request.netlist)) return table.file + ": a table cannot replace its netlist";
        for (const Request::Table* other = request.tables.data(); other != &table; ++other)
            if (isSameFile(table.file, other->file)) return table.file + ": only one table can be written to a file";
    }
    return {};
}

}  // namespace

std::span<const Format> formats() { return kFormats; }

std::size_t findOption(const CStringArray& arguments, std::size_t place) {
    while (place < arguments.size() && !isOption(arguments[place], kNetOption) && formatOf(arguments[place]) == nullptr)
        ++place;
    return place;
}

Request requestAt(const CStringArray& arguments, std::size_t place) {
    Request request;
    if (!isOption(arguments[place], kNetOption)) {
        for (std::size_t before = 0; before < place; ++before)
            if (isOption(arguments[before], kNetOption)) return request;
        request.complaint = arguments[place] + " stands behind the -net whose table it writes";
        return request;
    }
    request.netlist = fileBehind(arguments, place);
    for (std::size_t next = findOption(arguments, place + 1); next < arguments.size();
         next = findOption(arguments, next + 1)) {
        const Format* format = formatOf(arguments[next]);
        if (format == nullptr) break;
        request.tables.push_back({format, fileBehind(arguments, next)});
    }
    request.complaint = complaintOf(request);
    return request;
}

}  // namespace netlist
