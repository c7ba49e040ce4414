#include "Report.h"

#include <kora/Str.h>

#include <algorithm>
#include <cstdio>

#include "VisibleText.h"

namespace stations {

namespace {

CString timeOfDay(std::time_t time) {
    char text[16] = "";
    const std::tm* local = std::localtime(&time);
    if (local != nullptr) std::strftime(text, sizeof text, "%H:%M:%S", local);
    return text;
}

}  // namespace

void printEvent(const CString& text) { printLines({timeOfDay(std::time(nullptr)) + ' ' + text}); }

CStringArray tableOf(const Roster& roster, std::uint64_t own) {
    struct Row {
        CString label;
        const Heard* station;
    };
    std::vector<Row> rows;
    std::size_t width = visibleLength("station");
    for (std::size_t place = 0; place < roster.all().size(); ++place) {
        rows.push_back({roster.label(place), &roster.all()[place]});
        width = std::max(width, visibleLength(rows.back().label));
    }
    std::ranges::stable_sort(rows, [](const Row& a, const Row& b) {
        return StrCompareName(a.label.c_str(), -1, b.label.c_str(), -1, /*caseSensitive=*/true) < 0;
    });
    const auto padded = [width](const CString& label) { return label + CString(width - visibleLength(label), ' '); };
    CStringArray lines{padded("station") + "  first     last      datagrams"};
    for (const Row& row : rows) {
        const CString count = std::to_string(row.station->datagrams);
        CString& line = lines.emplace_back(padded(row.label));
        line += "  " + timeOfDay(row.station->first.time) + "  " + timeOfDay(row.station->last.time) + "  " +
                CString(9 - std::min<std::size_t>(9, count.size()), ' ') + count;
        if (row.station->id == own) line += "  this station";
        if (row.station->gone) line += "  gone";
    }
    return lines;
}

void printLines(const CStringArray& lines) {
    for (const CString& line : lines) Strprintf("%s\n", line.c_str());
    std::fflush(stdout);
}

}  // namespace stations
