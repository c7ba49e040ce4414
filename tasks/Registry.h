#pragma once

#include <kora/Tsk.h>

#include <cstdint>

namespace kora {

class ModuleWalk;

/// The modules of this process, in the order in which they registered themselves.
struct Registry {
    DoubleList* modules;       ///< null until start-up or until the first module object is made
    TskKoraModule* active;     ///< null when no module is active
    ModuleWalk* walks;         ///< the walks that are under way, innermost first
    std::uint32_t lastSerial;  ///< of the module object made last; tells what an entry made
    bool suspended;
};

extern Registry registry;

/// What the registry and the loader do with a module beyond what everybody may.
struct ModuleAccess {
    static std::uint32_t serial(const TskKoraModule& module);
    static void setFileName(TskKoraModule& module, const char* name);
    static void setInitSuccessful(TskKoraModule& module);
    /// The result of a phase: once false, always false.
    static void andInitSuccessful(TskKoraModule& module, bool result);
};

/// Makes the registry when there is none; false when memory ran out.
bool registryStart();
/// Deletes every module, the oldest first, and the registry.
void registryStop();
/// Links a module in at the end; false when memory ran out.
bool registryAttach(TskKoraModule& module);
/// Unlinks a module that is going; a module that is not linked in is left alone.
void registryDetach(TskKoraModule& module);
bool registryHolds(const TskKoraModule* module);
/// Deletes every module object made after the one with this serial number.
void registryDeleteAfter(std::uint32_t serial);

/// Visits the modules in registry order. Whatever a visited module does (delete itself or others, make new ones, end
/// the registry), the walk goes on with what is there.
class ModuleWalk {
public:
    ModuleWalk();
    ~ModuleWalk();
    ModuleWalk(const ModuleWalk&) = delete;
    ModuleWalk& operator=(const ModuleWalk&) = delete;

    TskKoraModule* next();
    /// As next(), over the modules that take part alone.
    TskKoraModule* nextSuccessful();
    /// Whether the module answered last is still there.
    bool holdsCurrent() const { return current_ != nullptr; }

private:
    friend void registryDetach(TskKoraModule& module);

    TskKoraModule* current_ = nullptr;  // null when it has gone
    TskKoraModule* after_ = nullptr;    // what comes next when it has gone
    ModuleWalk* outer_;
};

}  // namespace kora
