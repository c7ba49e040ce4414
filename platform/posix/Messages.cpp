#include <poll.h>
#include <signal.h>
#include <sys/eventfd.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <deque>
#include <exception>
#include <mutex>

#include "platform/Platform.h"
#include "platform/posix/Handles.h"

namespace kora::platform {

namespace {

constexpr std::uint32_t kForever = 0xFFFFFFFF;
constexpr std::uintptr_t kInterrupt = 1;

struct Message {
    std::uint64_t serial;
    std::uint32_t receiver;
    std::uintptr_t value;
};

struct {
    std::mutex mutex;
    MessageSink sink = nullptr;            // null while messages are not started
    std::deque<Message>* queue = nullptr;  // there while the sink is
    std::uint64_t lastSerial = 0;
} constinit state;

// What the signal handler touches. The descriptor is made at the first start and stays: a handler may be about to
// write to it. It is readable when something was posted since the last pump.
constinit std::atomic<int> wakeDescriptor = -1;
constinit std::atomic<unsigned> interrupts = 0;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<unsigned>::is_always_lock_free);

struct {
    bool on = false;
    struct sigaction interruptBefore, terminateBefore;
} constinit signals = {};

void wake() {
    const std::uint64_t one = 1;
    // The only failure is a counter at its end, which wakes as well.
    [[maybe_unused]] const ssize_t written = write(wakeDescriptor.load(), &one, sizeof one);
}

void onSignal(int) {
    const int error = errno;
    interrupts.fetch_add(1);
    if (wakeDescriptor.load() >= 0) wake();
    errno = error;
}

/// Puts a message at the end of the queue, which is locked.
void append(std::uint32_t receiver, std::uintptr_t value) {
    state.queue->push_back({state.lastSerial + 1, receiver, value});
    ++state.lastSerial;
}

/// Takes the oldest message that is no younger than @p lastSerial.
bool take(std::uint64_t lastSerial, Message& message, MessageSink& sink) {
    const std::lock_guard lock(state.mutex);
    if (!state.queue || state.queue->empty()) return false;
    message = state.queue->front();
    if (message.serial > lastSerial) return false;
    sink = state.sink;
    state.queue->pop_front();
    return true;
}

std::int64_t millisecondsNow() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1'000 + now.tv_nsec / 1'000'000;
}

}  // namespace

bool messagesStart(MessageSink sink) {
    if (!sink) return false;
    try {
        const std::lock_guard lock(state.mutex);
        if (wakeDescriptor.load() < 0)
            wakeDescriptor = posix::aboveStandardStreams(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
        if (wakeDescriptor.load() < 0) return false;
        if (!state.queue) state.queue = new std::deque<Message>;
        state.sink = sink;
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void messagesStop() {
    const std::lock_guard lock(state.mutex);
    interrupts = 0;
    state.sink = nullptr;
    delete std::exchange(state.queue, nullptr);
}

bool messagesPost(std::uint32_t receiver, std::uintptr_t value) {
    try {
        const std::lock_guard lock(state.mutex);
        if (!state.queue) return false;
        append(receiver, value);
        wake();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

int messagesPump(int (*)(tagMSG*)) {
    std::uint64_t lastSerial;
    {
        const std::lock_guard lock(state.mutex);
        if (!state.queue) return 0;
        std::uint64_t posted;
        [[maybe_unused]] const ssize_t cleared = read(wakeDescriptor.load(), &posted, sizeof posted);
        try {
            for (; interrupts.load() > 0; interrupts.fetch_sub(1)) append(0, kInterrupt);
        } catch (const std::exception&) {
            wake();  // the interrupt stays for the next pump
        }
        lastSerial = state.lastSerial;
    }
    // What a handler posts waits for the next pump, so that two that answer each other cannot hold the thread.
    int handled = 0;
    Message message;
    MessageSink sink;
    while (take(lastSerial, message, sink)) {
        ++handled;
        sink(message.receiver, message.value);
    }
    return handled;
}

void messagesWait(std::uint32_t milliseconds) {
    {
        const std::lock_guard lock(state.mutex);
        if (!state.queue && milliseconds == kForever) return;  // nothing could ever end it
        // An exception of a handler leaves messages behind that were woken for already.
        if (state.queue && (!state.queue->empty() || interrupts.load() > 0)) return;
    }
    const std::int64_t end = millisecondsNow() + milliseconds;
    for (;;) {
        const std::int64_t left = std::clamp<std::int64_t>(end - millisecondsNow(), 0, 1'000'000'000);
        pollfd event = {wakeDescriptor.load(), POLLIN, 0};  // -1, before the first start, is passed over
        const int ready = poll(&event, 1, milliseconds == kForever ? -1 : static_cast<int>(left));
        if (ready > 0 || (ready < 0 && errno != EINTR)) return;
        if (milliseconds != kForever && millisecondsNow() >= end) return;
    }
}

bool interruptsToMessages(bool on) {
    if (on == signals.on) return true;
    if (!on) {
        sigaction(SIGINT, &signals.interruptBefore, nullptr);
        sigaction(SIGTERM, &signals.terminateBefore, nullptr);
        signals.on = false;
        return true;
    }
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    if (sigaction(SIGINT, &action, &signals.interruptBefore) != 0) return false;
    if (sigaction(SIGTERM, &action, &signals.terminateBefore) != 0) {
        sigaction(SIGINT, &signals.interruptBefore, nullptr);
        return false;
    }
    signals.on = true;
    return true;
}

}  // namespace kora::platform
