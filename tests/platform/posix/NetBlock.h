#pragma once

#include <kora/Net.h>

#include <algorithm>
#include <string>

#include "platform/NetbiosCodes.h"
#include "platform/posix/netbios/Name.h"

inline kora::platform::netbios::Name paddedName(const std::string& text) {
    kora::platform::netbios::Name name;
    std::copy_n((text + std::string(16, ' ')).begin(), name.size(), name.begin());
    return name;
}

/// A network control block with its buffer.
struct NetBlock : NetNcb {
    NetBlock(unsigned char command, const std::string& name = "", unsigned char number = 0, unsigned short length = 512)
        : NetNcb{} {
        ncb_command = command;
        ncb_num = number;
        ncb_buffer = data;
        ncb_length = length;
        std::ranges::copy(paddedName(name), ncb_name);
        std::ranges::copy(paddedName(name), ncb_callname);
    }
    NetBlock(const NetBlock& other) : NetNcb(other) { ncb_buffer = other.ncb_buffer ? data : nullptr; }
    std::string text() const { return {reinterpret_cast<const char*>(data), ncb_length}; }
    unsigned char data[512] = {};
};

inline NetBlock netSending(const std::string& text, const std::string& to, unsigned char from) {
    NetBlock block(kora::platform::netbios::command::kSendDatagram, to, from, static_cast<unsigned short>(text.size()));
    std::ranges::copy(text, block.data);
    return block;
}

inline NetBlock netCancelling(NetNcb& other) {
    NetBlock block(kora::platform::netbios::command::kCancel);
    block.ncb_buffer = reinterpret_cast<unsigned char*>(&other);
    return block;
}
