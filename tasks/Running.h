#pragma once

#include "platform/Platform.h"

namespace kora {

/// Stands in every operation from which the host runs module code. While one lives, code of a module may be waiting
/// to be returned to, so what has to go is only put aside; it goes when the last one ends.
class Running {
public:
    Running();
    ~Running();
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;
};

/// Remembers a library whose module takes part.
void libraryKeep(platform::ModuleHandle library);
/// Unloads all libraries kept, the youngest first, as soon as no code of theirs can be running.
void librariesRelease();

}  // namespace kora
