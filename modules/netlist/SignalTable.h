#pragma once

#include <kora/Sht.h>

#include "Netlist.h"

namespace netlist {

/// How many signals a table can hold.
inline constexpr std::size_t kMostSignals = 32767;

std::size_t signalCount(const std::vector<Model>& models);

/// Fills an empty sheet with one row per signal, in the sheet's natural order of names, sized to fit. The columns are
/// Name, Kind, Fan-in, Fan-out and Driver; with more than one model their names come first, in a column Model, and are
/// what is sorted by first.
///
/// | column | holds | its marks |
/// |---|---|---|
/// | Name | protected, as is Model | |
/// | Kind | what the signal is of: input, output, latch, undriven; internal when it is none of these | |
/// | Fan-in | how many pins of its driver take a signal; nothing where the driver is unknown | |
/// | Fan-out | how many pins it feeds | `*` one of the leaders(), with its rank; `!` it feeds nothing and is no output |
/// | Driver | input, function of n inputs, latch, or the gate or the part by its type | `!` nothing; `?` unknown |
///
/// Row headings count from 1.
/// @return false when there are more than kMostSignals, or memory ran out; what the sheet holds is of no use then.
bool fillSignalTable(ShtSheet& sheet, const std::vector<Model>& models);

}  // namespace netlist
