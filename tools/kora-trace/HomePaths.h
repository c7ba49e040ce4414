#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kora::tracelog {

/// Takes out of texts what tells whose machine they come from: a `~` takes the place of the user's home directory, of
/// the name behind a folder that holds everybody's (`\Users\`, `/home/`), and of a part of a path that is the user's
/// name.
class HomePaths {
public:
    /// @p homes in native form; @p users are names.
    HomePaths(const std::vector<std::string>& homes, const std::vector<std::string>& users);
    /// Those of whoever runs this program.
    static HomePaths ofThisUser();

    std::string removedFrom(std::string_view text) const;

private:
    std::size_t homeAt(std::string_view text, std::size_t at) const;
    std::size_t userAt(std::string_view text, std::size_t from, std::size_t at) const;

    std::vector<std::string> homes_, users_;
};

}  // namespace kora::tracelog
