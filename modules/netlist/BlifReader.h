#pragma once

#include "Netlist.h"

class FilePath;
class TskKoraModule;

namespace netlist {

/// Why a file could not be taken, in one line for people, and where: the line counted from 1, 0 for the whole file.
struct Complaint {
    CString text;
    long line = 0;
};

/// Reads the models of a BLIF file: `.model`, `.inputs`, `.outputs`, `.names` with its rows, `.latch`, `.gate`,
/// `.subckt` and `.end`; what other statements say of delays, loads and areas is passed over.
///
/// The last pin of a `.gate` is taken for its output, as the tools that write them have it. The pins of a `.subckt`
/// have the directions that its model gives them, if the file holds that model.
/// @return false with the first thing that is wrong; what @p models holds is of no use then.
bool readBlif(FilePath& file, TskKoraModule* module, std::vector<Model>& models, Complaint& complaint);

}  // namespace netlist
