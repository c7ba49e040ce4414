#include "tasks/Running.h"

#include <new>

namespace kora {

namespace {

struct Library {
    platform::ModuleHandle handle;
    Library* older;
};

struct Libraries {
    Library* youngest;  // of those that are in use
    Library* leaving;   // youngest first
    int running;
};

constinit Libraries libraries{};

void unloadLeaving() {
    while (Library* library = libraries.leaving) {
        libraries.leaving = library->older;
        platform::unloadModule(library->handle);
        delete library;
    }
}

}  // namespace

Running::Running() { ++libraries.running; }

Running::~Running() {
    if (--libraries.running == 0) unloadLeaving();
}

void libraryKeep(platform::ModuleHandle library) {
    // Without memory for the note the library just stays loaded.
    if (Library* kept = new (std::nothrow) Library{library, libraries.youngest}) libraries.youngest = kept;
}

void librariesRelease() {
    Library** end = &libraries.youngest;
    while (*end != nullptr) end = &(*end)->older;
    *end = libraries.leaving;
    libraries.leaving = libraries.youngest;
    libraries.youngest = nullptr;
    if (libraries.running == 0) unloadLeaving();
}

}  // namespace kora
