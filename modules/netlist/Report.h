#pragma once

#include "Netlist.h"

namespace netlist {

/// The signals with the largest fan-out, the largest first and equal ones in natural order: five at most, and none that
/// feeds only one pin.
std::vector<NetId> leaders(const Model& model);

/// What there is to say of a model, line by line: its counts, the signals with the largest fan-out, and every list of
/// signals in natural order, as ranges where names follow each other.
CStringArray report(const Model& model);

}  // namespace netlist
