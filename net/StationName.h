#pragma once

#include <string>

namespace kora {

/// The station's name as it is now, in full.
std::string stationName();

}  // namespace kora
