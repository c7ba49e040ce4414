#pragma once

#include <string>
#include <string_view>

namespace kora::newmodule {

/// Why no module can have this name, in one sentence; empty when one can. The name is a file's, a target's of CMake and
/// a part of names in C++, on both systems.
std::string complaintOfName(std::string_view name);

/// The name in the forms in which the template has its own.
struct NameForms {
    std::string name;    ///< as it is: wave_meter
    std::string type;    ///< for C++ types: WaveMeter
    std::string macro;   ///< WAVE_METER
    std::string option;  ///< the command-line option, four characters at most: wave
};
NameForms formsOf(std::string_view name);

/// A text of the template with the forms of @p name in the places of the template's own.
std::string renamed(std::string_view text, const NameForms& forms);

}  // namespace kora::newmodule
