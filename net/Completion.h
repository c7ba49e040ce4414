#pragma once

#include "net/Command.h"

namespace kora {

/// What happens to a NetBIOS object when one of its commands has completed. Notifications may throw, which the sender
/// of the message reports, and may delete the object; the command is ended all the same, and once.
struct NetCompletion {
    /// Ends a completed command: frees it or issues it again.
    static void run(NetCommand& command);

private:
    static void sent(NetCommand& command);
    static void received(NetCommand& command);
    static void nameAdded(NetCommand& command);
    static void receivePost(NetBIOS& object);
    static void receive(NetCommand& command);
};

}  // namespace kora
