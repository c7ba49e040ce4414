#pragma once

#include <kora/Sht.h>

namespace netlist {

/// The text that a cell shows.
CString cellText(ShtSheet& sheet, short r, short c);
/// The text that a heading shows: without one of its own, its number.
CString rowHeading(ShtSheet& sheet, short r);
CString colHeading(ShtSheet& sheet, short c);

/// The whole sheet as ShtSheetToBuffer() writes it, margin included, however long that is. The selection is the same
/// afterwards.
/// @return false when a single row has more than the 64000 characters that go into a buffer, or memory ran out.
bool sheetAsTsv(ShtSheet& sheet, CString& text);

/// The cells as comma-separated values (RFC 4180), below a line of the column headings. What holds a comma, a quote, CR
/// or LF is quoted; lines end in CR LF.
CString sheetAsCsv(ShtSheet& sheet);

}  // namespace netlist
