#pragma once

#include "Roster.h"

namespace stations {

/// Prints a line with the local time in front of it, at once: who reads may be a pipe.
void printEvent(const CString& text);

/// The list of stations as a table, one line each behind one of headings, in natural order of their names. @p own is
/// the station whose list it is.
CStringArray tableOf(const Roster& roster, std::uint64_t own);

void printLines(const CStringArray& lines);

}  // namespace stations
