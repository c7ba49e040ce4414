#pragma once

#include <kora/Tsk.h>

#include <string>

namespace kora {

/// The library's own strings, ended by an entry without text. On Windows the string table of the library's resources
/// holds the same.
extern const TskString ownStrings[];

/// String @p id of the library's own table; empty when there is none.
std::string ownString(int id);

}  // namespace kora
