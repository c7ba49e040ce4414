#include "platform/Platform.h"

#include <cstddef>
#include <new>

namespace kora::platform {

namespace {

/// The system's own service: made at the first call and never destroyed, so that it serves during the construction
/// and destruction of anybody's static objects.
template <typename Service>
Service& systemService() {
    alignas(Service) static constinit std::byte storage[sizeof(Service)] = {};
    static Service& service = *::new (storage) Service;
    return service;
}

struct {
    FileSystem* files = nullptr;  // null: the system's
    Environment* environment = nullptr;
    Network* network = nullptr;
} constinit replacements;

}  // namespace

FileSystem& fileSystem() { return replacements.files ? *replacements.files : systemService<FileSystem>(); }

FileSystem* fileSystemSet(FileSystem* replacement) {
    FileSystem* before = &fileSystem();
    replacements.files = replacement;
    return before;
}

Environment& environment() {
    return replacements.environment ? *replacements.environment : systemService<Environment>();
}

Environment* environmentSet(Environment* replacement) {
    Environment* before = &environment();
    replacements.environment = replacement;
    return before;
}

Network& network() { return replacements.network ? *replacements.network : systemService<Network>(); }

Network* networkSet(Network* replacement) {
    Network* before = &network();
    replacements.network = replacement;
    return before;
}

}  // namespace kora::platform
