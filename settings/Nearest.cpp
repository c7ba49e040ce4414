#include "settings/Nearest.h"

#include <algorithm>
#include <numeric>
#include <utility>
#include <vector>

#include "strings/Bytes.h"

namespace kora {

namespace {

constexpr std::size_t kMostErrors = 3;

std::size_t typingErrors(std::string_view a, std::string_view b) {
    // One row for each character of a: the errors up to it and up to each one of b.
    std::vector<std::size_t> row(b.size() + 1), before(row), twoBefore(row);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::swap(twoBefore, before);
        std::swap(before, row);
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const bool same = foldCase(a[i]) == foldCase(b[j]);
            row[j + 1] = std::min({before[j] + (same ? 0 : 1), before[j + 1] + 1, row[j] + 1});
            if (i > 0 && j > 0 && foldCase(a[i]) == foldCase(b[j - 1]) && foldCase(a[i - 1]) == foldCase(b[j]))
                row[j + 1] = std::min(row[j + 1], twoBefore[j - 1] + 1);
        }
    }
    return row.back();
}

}  // namespace

void Nearest::offer(std::string_view name) {
    const std::size_t longer = std::max(wanted_.size(), name.size());
    const std::size_t shorter = std::min(wanted_.size(), name.size());
    const std::size_t most = std::min(longer / 3, kMostErrors);
    if (longer - shorter > most) return;
    const std::size_t errors = typingErrors(wanted_, name);
    if (errors > most || errors >= errors_) return;
    errors_ = errors;
    name_ = name;
}

}  // namespace kora
