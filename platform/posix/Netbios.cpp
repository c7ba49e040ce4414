#include <kora/Net.h>

#include <memory>
#include <new>
#include <utility>

#include "platform/Platform.h"
#include "platform/NetbiosCodes.h"
#include "platform/posix/netbios/Driver.h"

namespace kora::platform {

namespace {

using netbios::Driver;

struct {
    std::mutex changing;  // while a driver is begun or ended; locked first
    std::mutex mutex;
    Driver* driver = nullptr;
    Driver* ending = nullptr;  // its thread may still be posting
} constinit state;

/// Takes the driver away, so that nobody gives it another command.
void detach() {
    state.ending = std::exchange(state.driver, nullptr);
    state.ending->end();
}

void destroyDetached() {
    state.ending->join();
    const std::lock_guard lock(state.mutex);
    delete std::exchange(state.ending, nullptr);
}

/// Sees to it that a driver stands, with the settings as they are now where it has nothing to lose. Answers 0, or the
/// return code that says why there is none.
unsigned char begin(NetworkSettings (*settings)()) {
    const std::lock_guard changing(state.changing);
    {
        const std::lock_guard lock(state.mutex);
        if (state.driver && !state.driver->isIdle()) return netbios::code::kGood;
    }
    const NetworkSettings wanted = settings();
    {
        const std::lock_guard lock(state.mutex);
        if (state.driver && (!state.driver->isIdle() || state.driver->settings() == wanted))
            return netbios::code::kGood;
        if (state.driver) detach();
    }
    if (state.ending) destroyDetached();
    auto driver = std::make_unique<Driver>(state.mutex, wanted);
    if (const unsigned char code = driver->begin()) return code;
    const std::lock_guard lock(state.mutex);
    state.driver = driver.release();
    return netbios::code::kGood;
}

unsigned char execute(NetNcb& block, NetworkSettings (*settings)()) {
    for (bool begun = false;; begun = true) {
        {
            std::unique_lock lock(state.mutex);
            if (state.driver && (begun || !state.driver->isIdle())) return state.driver->execute(block, lock);
            // The end waits for the post routine that asks for this.
            if (state.ending && state.ending->onOwnThread()) return netbios::refuse(block, netbios::code::kCancelled);
        }
        if (const unsigned char code = begin(settings)) return netbios::refuse(block, code);
    }
}

}  // namespace

SharedBlock Network::allocate(std::size_t size) {
    auto* const bytes = new (std::nothrow) unsigned char[size]();
    return {bytes, reinterpret_cast<std::uintptr_t>(bytes)};
}

void Network::release(const SharedBlock& block) { delete[] static_cast<unsigned char*>(block.memory); }

unsigned char Network::execute(NetNcb& block, NetworkSettings (*settings)()) {
    try {
        return platform::execute(block, settings);
    } catch (const std::bad_alloc&) {
        return netbios::refuse(block, netbios::code::kNoResource);
    }
}

void networkStop() {
    {
        // A post routine would wait for its own thread.
        const std::lock_guard lock(state.mutex);
        const Driver* const there = state.driver ? state.driver : state.ending;
        if (there && there->onOwnThread()) return;
    }
    const std::lock_guard changing(state.changing);
    {
        const std::lock_guard lock(state.mutex);
        if (!state.driver) return;
        detach();
    }
    destroyDetached();
}

std::optional<std::string> registeredComputerName() { return std::nullopt; }

}  // namespace kora::platform
