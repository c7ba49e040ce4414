#pragma once

#include <kora/Kora.h>

#include <cstddef>
#include <optional>

namespace stations {

inline constexpr std::size_t kMostBytes = 500;  ///< of a datagram
inline constexpr std::size_t kMostName = 31;
inline constexpr std::size_t kMostText = 443;
inline constexpr std::uint32_t kMostSeconds = 300;  ///< between two announcements

/// What a station sends to all. README.md describes the bytes.
struct Message {
    enum Kind { here, say, bye };
    Kind kind = here;
    std::uint64_t sender = 0;   ///< a random number that tells stations of one name apart
    CString name;               ///< 1 to kMostName bytes
    CString text;               ///< what is said, kMostText bytes at most
    std::uint32_t seconds = 1;  ///< until the station announces itself again, 1 to kMostSeconds
    std::uint32_t hears = 0;    ///< how many stations it hears, itself included
};

/// The message as a datagram. What is longer than may be is cut.
CString bytesOf(const Message& message);

/// The message that a datagram holds, nothing when it is none. The network is believed nothing: name and text come
/// back visible, and every number within its bounds.
std::optional<Message> messageIn(const void* data, std::size_t size);

}  // namespace stations
