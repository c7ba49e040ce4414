#pragma once

#include "core/TraceCodes.h"

namespace kora {

/// ERR() for a fault of the library's own: of the lowest level, without data and text.
void fileFault(trace::Place place);

}  // namespace kora
