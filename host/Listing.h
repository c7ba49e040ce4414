#pragma once

#include <string>

#include "host/ModuleFile.h"
#include "host/Recorder.h"

namespace kora::host {

/// Tells what the module files of the tools folder are and export, without running them; with @p all every exported
/// name. Answers the exit code.
int listModules(const ModuleFile& program, bool all);

/// Adds what the load doctor says to the modules that could not be loaded.
void adviseOnModules(const ModuleFile& program, RunRecord& record);

/// Tells whether the module file @p path would load, and if not, why. Answers the exit code: 0 when it would.
int explainModule(const ModuleFile& program, const std::string& path);

}  // namespace kora::host
