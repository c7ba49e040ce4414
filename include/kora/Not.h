#pragma once

#include <kora/Kora.h>

#include <memory>

/// @file
/// Broadcasts about objects to whoever has asked to hear of them.

namespace kora {
struct NotRegistry;
}

/// What a listener is called with: the keys of the object, the listener's own data, the events of the broadcast that
/// it asked for, and the broadcast's argument. What the result means depends on the broadcast, see NotNotify::Notify().
typedef bool (*NotCallback)(long key1, long key2, long data, long events, long argument);

/// A registry of listeners to events about objects.
///
/// An object is a pair of keys and a listener a pair of callback and data; both are only compared. Two pairs match
/// exactly when both members are equal. They match as wildcards when each member is equal or is 0 on either side.
/// Events are bits of an unsigned 32-bit mask.
///
/// Objects are visited in the order in which they came into the registry, the listeners of each in theirs. The order
/// of the virtual operations is the interface; new ones go at the end.
class KORA_API NotNotify {
public:
    NotNotify();
    virtual ~NotNotify();
    NotNotify(const NotNotify&) = delete;
    NotNotify& operator=(const NotNotify&) = delete;

    /// Lets the listener hear of the events of @p mask about the object with exactly these keys. A listener that the
    /// object has already gets the events in addition, and is still called once for each broadcast.
    /// @return false when @p mask or @p callback is 0 (nothing has changed), or when memory ran out.
    virtual bool Attach(long key1, long key2, NotCallback callback, long data, unsigned long mask);
    /// Takes the events of @p mask from every listener of the object with exactly these keys that matches as a
    /// wildcard; a listener without events is gone, and so is an object without listeners.
    virtual void Detach(long key1, long key2, NotCallback callback, long data, unsigned long mask);
    /// Whether an object and a listener of it, both matching as wildcards, share an event with @p mask.
    virtual bool Exists(long key1, long key2, NotCallback callback, long data, unsigned long mask);
    /// Calls every listener that asked for one of @p events, of every object that matches as a wildcard. Where an
    /// object's key is 0 the listener gets the key given here.
    ///
    /// With @p stopOnTrue a callback that answers true ends the visit of its object (the walk goes on with the next),
    /// and one that answers false counts as not having handled the event. Without it, a callback that answers false
    /// is detached.
    ///
    /// A callback may detach its own listener and may broadcast. Listeners that a callback attaches all the same hear
    /// from the next broadcast on; those it detaches are not called any more.
    /// @return whether a listener was called; with @p stopOnTrue, what the last one called answered.
    virtual bool Notify(long key1, long key2, unsigned long events, long argument, bool stopOnTrue);

private:
    std::uint16_t id_;                             // counts the registries of the process; for the trace
    std::shared_ptr<kora::NotRegistry> registry_;  // null when memory ran out
};
