#pragma once

#include "host/Options.h"
#include "host/Recorder.h"

namespace kora::host {

/// Starts the library with its modules, makes idle passes as long as something is left to do, and ends it. Answers the
/// exit code; what came of it stands in @p record, for a report also what modules did.
int run(const Options& options, RunRecord& record);

}  // namespace kora::host
