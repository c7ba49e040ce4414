#pragma once

/// Commands and codes of network control blocks, and the library's own codes.
namespace kora::net {

inline constexpr unsigned char kSendDatagram = 0x20, kReceiveDatagram = 0x21, kDeleteName = 0x31, kAdapterStatus = 0x33,
                               kAddGroupName = 0x36, kInvalidCommand = 0x7F;
inline constexpr unsigned char kCommandMask = 0x7F, kAsynchronous = 0x80;

/// Return codes that decide what happens next.
inline constexpr unsigned char kInvalidCommandCode = 3, kNoResource = 9, kDuplicateName = 13, kSystemError = 64;

inline constexpr unsigned short kNoWindow = 4096, kNoPostRoutine = 4097, kNoMemory = 4099, kNameExists = 4100,
                                kNotSent = 65535, kNoName = 65535;

inline constexpr short kLargestDatagram = 500;
inline constexpr int kStatusSize = 348, kStatusRevision = 6;
inline constexpr int kNameSize = 16;

}  // namespace kora::net
