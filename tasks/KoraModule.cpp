#include <kora/Str.h>
#include <kora/Tsk.h>

#include <new>

#include "tasks/Registry.h"

namespace kora {

std::uint32_t ModuleAccess::serial(const TskKoraModule& module) { return module.serial_; }

void ModuleAccess::setFileName(TskKoraModule& module, const char* name) {
    ::operator delete(module.fileName_);
    module.fileName_ = StrNew(name);
}

void ModuleAccess::setInitSuccessful(TskKoraModule& module) { module.initSuccessful_ = true; }

void ModuleAccess::andInitSuccessful(TskKoraModule& module, bool result) {
    module.initSuccessful_ = module.initSuccessful_ && result;
}

}  // namespace kora

TskKoraModule::TskKoraModule(eTskKoraModule& status, const char* name, bool awaken, bool)
    : name_(StrNew(name)), serial_(++kora::registry.lastSerial), awaken_(awaken) {
    const bool named = name_ != nullptr || name == nullptr;
    status = kora::registryAttach(*this) && named ? TskKoraModuleOk : TskKoraModuleFailed;
}

TskKoraModule::~TskKoraModule() {
    kora::registryDetach(*this);
    ::operator delete(name_);
    ::operator delete(fileName_);
}

unsigned long TskKoraModule::TskHandleGet() { return handle_; }

void TskKoraModule::TskHandleSet(unsigned long handle) { handle_ = handle; }

bool TskKoraModule::TskInit1() { return true; }

bool TskKoraModule::TskInit2() { return true; }

bool TskKoraModule::TskInit3() { return true; }

bool TskKoraModule::TskInit4() { return true; }

bool TskKoraModule::TskInitFinal() { return true; }

void TskKoraModule::TskInitFile(FilePath*) {}

void TskKoraModule::TskSuspend() {}

void TskKoraModule::TskResume() {}

void TskKoraModule::TskKoraSuspend() {}

void TskKoraModule::TskKoraResume() {}

bool TskKoraModule::TskExitRequest() { return true; }

void TskKoraModule::TskExit1() {}

void TskKoraModule::TskExit2() {}

bool TskKoraModule::TskErrHandler() { return false; }

const char* TskKoraModule::TskKoraName() { return name_ != nullptr ? name_ : ""; }

const char* TskKoraModule::TskFileName() { return fileName_ != nullptr ? fileName_ : ""; }

bool TskKoraModule::TskInitSuccessful() { return initSuccessful_; }

bool TskKoraModule::TskAwaken() { return awaken_; }

bool TskKoraModule::TskWakeUp(const char*) { return false; }

void TskKoraModule::TskWakeUp() {}

bool TskKoraModule::TskVisible() { return false; }

void TskKoraModule::TskHide() {}
