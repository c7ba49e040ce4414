#include "platform/posix/netbios/Name.h"

#include <algorithm>

#include "strings/Bytes.h"

namespace kora::platform::netbios {

bool isWildcard(const Name& name) {
    return name[0] == '*' &&
           std::all_of(name.begin() + 1, name.end(), [](unsigned char byte) { return byte == '\0' || byte == ' '; });
}

std::optional<Scope> Scope::of(std::string_view text) {
    constexpr std::size_t kMaxLabel = 63;
    if (text.size() > kMaxLength) return std::nullopt;
    std::size_t label = 0;
    for (const char c : text) {
        if (c != '.') {
            if (++label > kMaxLabel) return std::nullopt;
        } else if (label == 0) {
            return std::nullopt;
        } else {
            label = 0;
        }
    }
    if (label == 0 && !text.empty()) return std::nullopt;
    Scope scope;
    std::copy(text.begin(), text.end(), scope.text_.begin());
    scope.length_ = static_cast<std::uint8_t>(text.size());
    return scope;
}

bool Scope::operator==(const Scope& other) const { return equalIgnoringCase(text(), other.text()); }

}  // namespace kora::platform::netbios
