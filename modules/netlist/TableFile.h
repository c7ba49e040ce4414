#pragma once

#include <kora/Kora.h>

namespace netlist {

/// Writes @p bytes as the file @p name, down to the disk. After a failure the file is as it was before, not there or
/// with its old text, unless that cannot be written either.
/// @return why it could not be done, empty when it was.
CString writeTableFile(const CString& name, CString& bytes);

}  // namespace netlist
