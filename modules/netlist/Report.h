#pragma once

#include "Netlist.h"

namespace netlist {

/// What there is to say of a model, line by line: its counts, the signals with the largest fan-out, and every list of
/// signals in natural order, as ranges where names follow each other.
CStringArray report(const Model& model);

}  // namespace netlist
