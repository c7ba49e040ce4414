#pragma once

#include <string_view>

namespace kora {

/// A name split at its last run of digits. The views together are the name; one without digits is all suffix.
struct NameParts {
    std::string_view prefix;
    std::string_view digits;  ///< at most nine; more to the left of them belong to the prefix
    std::string_view suffix;
    int number;  ///< 0 without digits; the sixth digit from the right and those before it all weigh 10000
};

NameParts splitName(std::string_view name);

}  // namespace kora
