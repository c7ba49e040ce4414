#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace kora::platform::netbios {

using Bytes = std::span<const unsigned char>;

/// A NetBIOS name: sixteen bytes of any value, short ones padded with blanks; the last one often tells its use.
using Name = std::array<unsigned char, 16>;

/// Whether it stands for every name: `*` and then NULs or blanks alone.
bool isWildcard(const Name& name);

/// The rest of the name behind a NetBIOS name on the network: labels with dots between them, letters without regard to
/// case. Its length is bounded, since names on the network are: 255 bytes with everything.
class Scope {
public:
    static constexpr std::size_t kMaxLength = 220;
    Scope() = default;
    /// Nothing for a text that no name on the network can carry: an empty label, one of more than 63 bytes, too long.
    static std::optional<Scope> of(std::string_view text);
    std::string_view text() const { return {text_.data(), length_}; }
    bool operator==(const Scope& other) const;

private:
    std::array<char, kMaxLength> text_{};
    std::uint8_t length_ = 0;
};

/// A name with its scope, as packets carry it.
struct ScopedName {
    Name name{};
    Scope scope;
    bool operator==(const ScopedName&) const = default;
};

}  // namespace kora::platform::netbios
