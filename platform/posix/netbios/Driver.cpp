#include "platform/posix/netbios/Driver.h"

#include <kora/Net.h>
#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <system_error>

#include "platform/NetbiosCodes.h"

namespace kora::platform::netbios {

namespace {

constexpr int kMostPackets = 16;  // of one socket, before anything else has its turn, and others the mutex

/// While it stands, threads are made that no signal interrupts.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t before_;
};

}  // namespace

unsigned char Driver::begin() {
    const std::optional<Scope> scope = Scope::of(settings_.scope);
    if (!scope) return code::kSystemRefuses;
    if (const unsigned char code = link_.open(settings_)) return code;
    wakeDescriptor_.emplace(posix::aboveStandardStreams(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)));
    if (!*wakeDescriptor_) return code::kNoResource;
    node_.emplace(link_, *scope, settings_.datagramPort, now());
    try {
        const SignalsBlocked blocked;
        thread_ = std::thread(&Driver::run, this);
    } catch (const std::system_error&) {
        return code::kNoResource;
    }
    threadId_ = thread_.get_id();
    return code::kGood;
}

unsigned char Driver::execute(NetNcb& block, std::unique_lock<std::mutex>& lock) {
    Waiter waiter;
    const bool synchronous = (block.ncb_command & command::kAsynchronous) == 0;
    const unsigned char code = node_->execute(block, waiter, now());
    // From here on an asynchronous block belongs to the thread.
    if (sleepsUntil_ && (node_->completions() > 0 || node_->due() < *sleepsUntil_)) wake();
    if (!synchronous || code != code::kPending) return code;
    // A post routine that waits keeps the thread at its other work meanwhile.
    if (onOwnThread()) {
        while (!waiter.done) step(lock);
    } else {
        waiter.changed.wait(lock, [&] { return waiter.done; });
    }
    return block.ncb_retcode;
}

void Driver::end() {
    node_->end();
    ending_ = true;
    wake();
}

void Driver::wake() {
    const std::uint64_t one = 1;
    // The only failure is a counter at its end, which wakes as well.
    [[maybe_unused]] const ssize_t written = write(wakeDescriptor_->get(), &one, sizeof one);
    sleepsUntil_.reset();
}

// ---- the thread ------------------------------------------------------------------------------------------------

void Driver::run() {
    std::unique_lock lock(mutex_);
    while (!ending_ || node_->completions() > 0) {
        post(lock);
        step(lock);
    }
}

/// Posts what has completed so far; what that completes in turn waits until the sockets had their turn.
void Driver::post(std::unique_lock<std::mutex>& lock) {
    posting_ = true;
    for (std::size_t left = node_->completions(); left > 0; --left) {
        const Completion completion = node_->takeCompletion();
        lock.unlock();
        void (*const routine)(NetNcb*) = completion.block->ncb_post;
        writeCode(*completion.block, completion.code);
        if (routine) routine(completion.block);
        lock.lock();
    }
    posting_ = false;
}

/// Waits for something to do, and does it.
void Driver::step(std::unique_lock<std::mutex>& lock) {
    constexpr Time kLongestSleep = 60'000;
    const Time time = now();
    Time until = std::min(node_->due(), time + kLongestSleep);
    if (ending_ || (!posting_ && node_->completions() > 0)) until = time;
    pollfd events[] = {{link_.descriptor(Link::names), POLLIN, 0},
                       {link_.descriptor(Link::answers), POLLIN, 0},
                       {link_.descriptor(Link::datagrams), POLLIN, 0},
                       {wakeDescriptor_->get(), POLLIN, 0}};
    sleepsUntil_ = until;
    lock.unlock();
    const int ready = poll(events, std::size(events), static_cast<int>(until > time ? until - time : 0));
    lock.lock();
    sleepsUntil_.reset();
    if (ready > 0) {
        std::uint64_t woken;
        if (events[Link::kChannels].revents != 0) [[maybe_unused]]
            const ssize_t cleared = read(wakeDescriptor_->get(), &woken, sizeof woken);
        for (const Link::Channel channel : {Link::names, Link::answers, Link::datagrams}) {
            if (events[channel].revents != 0) receive(channel);
        }
    }
    node_->advance(now());
}

void Driver::receive(Link::Channel channel) {
    Arrival arrival;
    for (int i = 0; i < kMostPackets && link_.receive(channel, arrival); ++i) {
        if (arrival.packet.empty()) continue;
        if (channel == Link::datagrams)
            node_->datagramReceived(arrival.packet, arrival.unicast);
        else
            node_->nameReceived(arrival.packet, arrival.from, now());
    }
}

}  // namespace kora::platform::netbios
