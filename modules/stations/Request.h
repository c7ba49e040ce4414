#pragma once

#include <kora/Kora.h>

#include <cstddef>
#include <span>

namespace stations {

/// What a command line asks for.
struct Request {
    CString group;              ///< empty when it joins none
    CStringArray lines;         ///< to be said, in visible characters
    std::size_t stations = 0;   ///< end when so many have met; 0 is no end
    std::uint32_t seconds = 0;  ///< end after this time; 0 is no end
    bool status = false;        ///< show what NetBIOS has done
    CString complaint;          ///< why it cannot be done, empty when it can
};

/// The names of all options.
std::span<const char* const> optionNames();

/// How many of our options there are among the arguments.
std::size_t optionCount(const CStringArray& arguments);

/// What the arguments ask for. @p group is the one that the station is in already, empty when it is in none.
Request requestIn(const CStringArray& arguments, const CString& group);

}  // namespace stations
