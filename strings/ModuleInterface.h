#pragma once

class TskKoraModule;

/// What the layers below the module registry need to know of a module. The registry answers
/// (tasks/ModuleInterface.cpp); stated here so that dependencies keep pointing one way.
namespace kora {

const char* moduleName(TskKoraModule* module);  ///< never null: the empty text for a null module or a null name
bool moduleHandlesError(TskKoraModule* module);
unsigned long moduleHandleByName(const char* name);  ///< 0 when no such module takes part

}  // namespace kora
