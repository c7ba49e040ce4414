#pragma once

#include <string>

#include "host/Options.h"
#include "host/Recorder.h"

namespace kora::host {

/// A path in library form as the programs of this system write it.
std::string nativeText(const std::string& path);

/// The host's own file. @p called is the name by which it was started.
std::string programFile(const std::string& called);

/// Puts the profile and the tools folder that were named in force. Answers what is wrong with them, or nothing.
std::string usePlaces(const Options& options);

/// Notes which ones are in force.
void notePlaces(RunRecord& record);

}  // namespace kora::host
