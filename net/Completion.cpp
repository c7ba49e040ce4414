#include "net/Completion.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "core/TraceRing.h"
#include "net/Codes.h"

namespace kora {

namespace {

constexpr int kReceives = 2;

/// Does the rest when a notification is over, whether it returned or threw.
template <class Rest>
class Afterwards {
public:
    explicit Afterwards(Rest rest) : rest_(std::move(rest)) {}
    ~Afterwards() { rest_(); }
    Afterwards(const Afterwards&) = delete;
    Afterwards& operator=(const Afterwards&) = delete;

private:
    Rest rest_;
};

// What a driver says of a length, within what it was given.
short dataLength(const NetCommand& command) {
    return static_cast<short>(std::min(command.block.ncb_length, command.capacity));
}

bool receiveEnds(unsigned char code) {
    static constexpr unsigned char codes[] = {0x0F, 0x13, 0x15, 0x17, 0x24};
    return std::find(std::begin(codes), std::end(codes), code) != std::end(codes);
}

}  // namespace

void NetCompletion::run(NetCommand& command) {
    if (command.owner == nullptr) return netCommandFree(command);
    switch (command.block.ncb_command & static_cast<unsigned char>(~net::command::kAsynchronous)) {
        case net::command::kSendDatagram:
            return sent(command);
        case net::command::kReceiveDatagram:
            return received(command);
        case net::command::kAddGroupName:
            return nameAdded(command);
        default:
            return netCommandFree(command);
    }
}

void NetCompletion::sent(NetCommand& command) {
    traceStep(trace::kDatagramSent);
    const unsigned char code = command.block.ncb_retcode;
    const Afterwards rest([&] {
        NetCounters* const counters = command.counters;
        netCommandFree(command);
        if (counters == nullptr) return;
        ++counters->sendCompletions;
        counters->lastSendCode = code;
    });
    command.owner->DatagramSent(code, command.data.memory, dataLength(command));
}

void NetCompletion::received(NetCommand& command) {
    traceStep(trace::kDatagramReceived);
    const unsigned char code = command.block.ncb_retcode;
    const Afterwards rest([&] {
        if (command.counters != nullptr) {
            ++command.counters->receiveCompletions;
            command.counters->lastReceiveCode = code;
        }
        if (command.owner == nullptr || receiveEnds(code)) return netCommandFree(command);
        command.block.ncb_length = command.capacity;
        receive(command);
    });
    command.owner->DatagramReceived(code, command.data.memory, dataLength(command));
}

void NetCompletion::nameAdded(NetCommand& command) {
    traceStep(trace::kNameAdded);
    NetBIOS& object = *command.owner;
    const unsigned char code = command.block.ncb_retcode;
    if (code == 0) {
        std::memcpy(object.groupName, command.block.ncb_name, net::kNameSize);
        object.nameNumber = command.block.ncb_num;
    }
    const Afterwards rest([&] {
        const bool alone = command.owner == nullptr;
        netCommandFree(command);
        // The notification may have given the name back.
        if (alone || code != 0 || object.groupName[0] == 0) return;
        for (int i = 0; i < kReceives; ++i) receivePost(object);
    });
    object.GroupNameAdded(code);
}

void NetCompletion::receivePost(NetBIOS& object) {
    NetCommand* const command = netCommandMake(object, object.counters, object.callbackWindow, net::kLargestDatagram);
    if (command == nullptr) return;
    object.commandFill(command->block, net::command::kReceiveDatagram);
    command->block.ncb_num = object.nameNumber;
    std::memcpy(command->block.ncb_callname, object.groupName, net::kNameSize);
    std::memcpy(command->block.ncb_name, object.groupName, net::kNameSize);
    receive(*command);
}

void NetCompletion::receive(NetCommand& command) {
    NetCounters& counters = *command.counters;
    if (netCommandIssue(command) != 0) netCommandFree(command);
    ++counters.receivesPosted;
}

}  // namespace kora
