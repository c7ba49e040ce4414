#pragma once

/// Commands and return codes of network control blocks, as published.
namespace kora::platform::netbios {

namespace command {
inline constexpr unsigned char kSendDatagram = 0x20, kReceiveDatagram = 0x21, kSendBroadcast = 0x22,
                               kReceiveBroadcast = 0x23, kAddName = 0x30, kDeleteName = 0x31, kReset = 0x32,
                               kAdapterStatus = 0x33, kCancel = 0x35, kAddGroupName = 0x36, kEnumerate = 0x37,
                               kInvalid = 0x7F;  // which every adapter refuses
inline constexpr unsigned char kAsynchronous = 0x80;
}  // namespace command

namespace code {
inline constexpr unsigned char kGood = 0, kIllegalLength = 1, kIllegalCommand = 3, kTimedOut = 5, kIncomplete = 6,
                               kNoResource = 9, kCancelled = 11, kDuplicateName = 13, kTableFull = 14,
                               kIllegalNumber = 19, kNoAnswer = 20, kNameNotFound = 21, kNameInUse = 22,
                               kNameDeleted = 23, kInterfaceBusy = 33, kTooManyCommands = 34, kIllegalAdapter = 35,
                               kCompletedMeanwhile = 36, kNotCancellable = 38, kSystemRefuses = 53, kSystemError = 64,
                               kNoCarrier = 67, kNotLoaded = 251, kPending = 255;
}  // namespace code

}  // namespace kora::platform::netbios
