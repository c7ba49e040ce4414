#pragma once

#include <kora/Sht.h>

namespace netlist {

/// The sheet as one page of HTML that needs nothing else and shows what the sheet shows: headings, which stay when the
/// page is scrolled, sizes, alignment, protected cells in their colour, marks, grid lines, the font. A column is wider
/// than in the sheet where a text would be cut. A byte that is no UTF-8 shows as the character of that number, control
/// characters as their pictures.
CString sheetAsHtml(ShtSheet& sheet, const CString& title);

}  // namespace netlist
