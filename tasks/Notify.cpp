#include <kora/Not.h>

#include <new>
#include <utility>

#include "core/TraceRing.h"
#include "tasks/PairRegister.h"

namespace kora {

struct NotObject {
    PairRegister<std::uint32_t> listeners;  // the events of each pair of callback and data
};

struct NotRegistry {
    // Shared, so that an object whose listeners are being called outlives its removal.
    PairRegister<std::shared_ptr<NotObject>> objects;
};

}  // namespace kora

namespace {

using kora::Pair;
using Place = std::size_t;

constinit std::uint16_t registriesMade = 0;

Pair objectPair(long key1, long key2) { return {static_cast<std::uintptr_t>(key1), static_cast<std::uintptr_t>(key2)}; }

Pair listenerPair(NotCallback callback, long data) {
    return {reinterpret_cast<std::uintptr_t>(callback), static_cast<std::uintptr_t>(data)};
}

kora::NotObject& objectFor(kora::NotRegistry& registry, const Pair& keys) {
    auto place = registry.objects.find(keys);
    if (!place) {
        registry.objects.add(keys, std::make_shared<kora::NotObject>());
        place = registry.objects.find(keys);
    }
    return *registry.objects.at(*place);
}

}  // namespace

NotNotify::NotNotify() : id_(registriesMade++) {
    try {
        registry_ = std::make_shared<kora::NotRegistry>();
    } catch (const std::bad_alloc&) {
    }
}

NotNotify::~NotNotify() {
    if (registry_ == nullptr) return;
    // A broadcast may be under way; it finds nobody left to call.
    registry_->objects.walk([this](Place place) {
        if (const auto& object = registry_->objects.at(place)) object->listeners.clear();
        return true;
    });
    registry_->objects.clear();
}

bool NotNotify::Attach(long key1, long key2, NotCallback callback, long data, unsigned long mask) {
    const auto events = static_cast<std::uint32_t>(mask);
    if (events == 0 || callback == nullptr || registry_ == nullptr) return false;
    try {
        auto& listeners = objectFor(*registry_, objectPair(key1, key2)).listeners;
        const Pair listener = listenerPair(callback, data);
        if (const auto place = listeners.find(listener))
            listeners.at(*place) |= events;
        else
            listeners.add(listener, events);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void NotNotify::Detach(long key1, long key2, NotCallback callback, long data, unsigned long mask) {
    if (registry_ == nullptr) return;
    const auto place = registry_->objects.find(objectPair(key1, key2));
    if (!place) return;
    const auto events = static_cast<std::uint32_t>(mask);
    auto& listeners = registry_->objects.at(*place)->listeners;
    listeners.walkMatching(listenerPair(callback, data), [&](Place listener) {
        const std::uint32_t left = listeners.at(listener) & ~events;
        if (left != 0)
            listeners.at(listener) = left;
        else
            listeners.remove(listener);
        return true;
    });
    if (listeners.empty()) registry_->objects.remove(*place);
}

bool NotNotify::Exists(long key1, long key2, NotCallback callback, long data, unsigned long mask) {
    if (registry_ == nullptr) return false;
    const auto events = static_cast<std::uint32_t>(mask);
    bool found = false;
    registry_->objects.walkMatching(objectPair(key1, key2), [&](Place place) {
        auto& listeners = registry_->objects.at(place)->listeners;
        listeners.walkMatching(listenerPair(callback, data), [&](Place listener) {
            found = (listeners.at(listener) & events) != 0;
            return !found;
        });
        return !found;
    });
    return found;
}

bool NotNotify::Notify(long key1, long key2, unsigned long events, long argument, bool stopOnTrue) {
    kora::traceStep(kora::trace::kBroadcast);
    kora::traceData(id_);
    const std::shared_ptr<kora::NotRegistry> registry = registry_;  // a callback may destroy this object
    if (registry == nullptr) return false;
    const auto wanted = static_cast<std::uint32_t>(events);
    bool handled = false;
    registry->objects.walkMatching(objectPair(key1, key2), [&](Place place) {
        const std::shared_ptr<kora::NotObject> object = registry->objects.at(place);
        const Pair own = registry->objects.pairAt(place);
        const long told1 = own.first != 0 ? static_cast<long>(own.first) : key1;
        const long told2 = own.second != 0 ? static_cast<long>(own.second) : key2;
        auto& listeners = object->listeners;
        listeners.walkMasks(wanted, [&](Place listener) {
            const std::uint32_t bits = listeners.at(listener) & wanted;
            handled = true;
            const auto [callback, data] = listeners.pairAt(listener);
            const bool answer = reinterpret_cast<NotCallback>(callback)(told1, told2, static_cast<long>(data),
                                                                        static_cast<long>(bits), argument);
            if (answer) return !stopOnTrue;
            if (stopOnTrue)
                handled = false;
            else
                listeners.remove(listener);
            return true;
        });
        if (listeners.empty()) registry->objects.remove(place);
        return true;
    });
    return handled;
}
