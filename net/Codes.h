#pragma once

#include "platform/NetbiosCodes.h"

/// The published commands and return codes, and what is the library's own beside them.
namespace kora::net {

namespace command = platform::netbios::command;
namespace code = platform::netbios::code;

inline constexpr unsigned short kNoWindow = 4096, kNoPostRoutine = 4097, kNoMemory = 4099, kNameExists = 4100,
                                kNotSent = 65535, kNoName = 65535;

inline constexpr short kLargestDatagram = 500;
inline constexpr int kStatusSize = 348, kStatusRevision = 6;
inline constexpr int kNameSize = 16;

}  // namespace kora::net
