#pragma once

namespace kora {

/// The module start-up: prepares the registry, loads the modules of the tools folder and takes them through their
/// phases. What a module throws comes out. Modules that were started and not ended stay as they are.
void modulesStart();
/// The last pass over the modules, when everything else has started.
void modulesFinish();
/// Lets the next start-up load modules again; ending them is TskExit()'s.
void modulesEnded();

}  // namespace kora
