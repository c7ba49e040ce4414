#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kora {

/// Finds which of several names somebody may have meant: the one with the fewest typing errors, if these are few. A
/// character too many, too few or wrong, and two that are swapped, are one error each; letter case is none.
class Nearest {
public:
    explicit Nearest(std::string_view wanted) : wanted_(wanted) {}

    /// Of equally near names the first counts.
    void offer(std::string_view name);
    /// Empty when none is near.
    const std::string& name() const { return name_; }

private:
    std::string_view wanted_;
    std::string name_;
    std::size_t errors_ = static_cast<std::size_t>(-1);
};

}  // namespace kora
