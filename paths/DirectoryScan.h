#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kora {

/// Whether @p name fits a pattern with `*` for any characters and `?` for one, without regard to case. "*.*" fits
/// every name, as people expect of it.
bool matchesWildcards(std::string_view name, std::string_view pattern);

/// What one enumeration of a directory has found and still has to hand out.
class DirectoryScan {
public:
    struct Wanted {
        std::string_view pattern;  ///< empty: all
        std::string_view type;     ///< without the dot; empty: all
        bool files = false;
        bool directories = false;
    };

    /// Lists @p directory; a directory that cannot be listed holds nothing.
    DirectoryScan(std::string_view directory, const Wanted& wanted);

    const std::string& directory() const { return directory_; }
    /// The next name, null when there is none.
    const std::string* next() { return next_ < names_.size() ? &names_[next_++] : nullptr; }

private:
    std::string directory_;
    std::vector<std::string> names_;
    std::size_t next_ = 0;
};

}  // namespace kora
