#pragma once

#include <string>

namespace kora {

/// Where the trace log is written, in library form.
std::string traceLogPath();

}  // namespace kora
