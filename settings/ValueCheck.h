#pragma once

#include <kora/Ini.h>

#include <string>
#include <string_view>

namespace kora {

/// What is wrong with a value, in words; empty when nothing is.
struct ValueFault {
    std::string text;
    std::string suggestion;
};

/// Whether @p text, which is not empty, is all of a value of that kind.
ValueFault valueFault(eIniKind kind, std::string_view text);

}  // namespace kora
