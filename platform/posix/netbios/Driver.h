#pragma once

#include <mutex>
#include <thread>

#include "platform/posix/netbios/Link.h"

namespace kora::platform::netbios {

/// A node on its network, with the one thread that receives, keeps the time and posts. Everything in it is under the
/// mutex that it is given; post routines are called without it.
class Driver {
public:
    Driver(std::mutex& mutex, const NetworkSettings& settings) : mutex_(mutex), settings_(settings) {}

    /// Answers 0, or the return code that says why it cannot begin.
    unsigned char begin();
    const NetworkSettings& settings() const { return settings_; }

    // With the mutex locked:
    /// Executes a block; waits for a synchronous one, with the mutex unlocked, after which the driver may be gone.
    unsigned char execute(NetNcb& block, std::unique_lock<std::mutex>& lock);
    bool isIdle() const { return node_->isIdle() && !posting_; }
    /// Ends the node; the thread ends once every command is posted.
    void end();

    /// Waits for the thread's end.
    void join() { thread_.join(); }
    bool onOwnThread() const { return std::this_thread::get_id() == threadId_; }

private:
    void run();
    void step(std::unique_lock<std::mutex>& lock);
    void post(std::unique_lock<std::mutex>& lock);
    void receive(Link::Channel channel);
    void wake();

    std::mutex& mutex_;
    const NetworkSettings settings_;
    Link link_;
    std::optional<Node> node_;
    std::optional<posix::Descriptor> wakeDescriptor_;
    std::thread thread_;
    std::thread::id threadId_;
    bool posting_ = false;
    bool ending_ = false;
    std::optional<Time> sleepsUntil_;  // while the thread waits
};

}  // namespace kora::platform::netbios
