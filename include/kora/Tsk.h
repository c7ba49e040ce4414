#pragma once

#include <kora/DoubleList.h>
#include <kora/Kora.h>

class FilePath;

namespace kora {
struct ModuleAccess;
}

enum eTskKoraModule : int { TskKoraModuleOk = 0, TskKoraModuleFailed = 1 };

/// One string of a module's string table. Where modules have no resources of their own the table is exported under the
/// name TskKoraStrings and ended by an entry without text.
struct TskString {
    int id;
    const char* text;
};

class KORA_API TskKoraModule : public DoubleListElement {
public:
    TskKoraModule(eTskKoraModule& status, const char* name, bool awaken, bool second);
    ~TskKoraModule() override;
    TskKoraModule(const TskKoraModule&) = delete;
    TskKoraModule& operator=(const TskKoraModule&) = delete;

    virtual unsigned long TskHandleGet();
    virtual void TskHandleSet(unsigned long handle);
    virtual bool TskInit1();
    virtual bool TskInit2();
    virtual bool TskInit3();
    virtual bool TskInit4();
    virtual bool TskInitFinal();
    virtual void TskInitFile(FilePath* file);
    virtual void TskSuspend();
    virtual void TskResume();
    virtual void TskKoraSuspend();
    virtual void TskKoraResume();
    virtual bool TskExitRequest();
    virtual void TskExit1();
    virtual void TskExit2();
    virtual bool TskErrHandler();
    virtual const char* TskKoraName();
    virtual const char* TskFileName();
    virtual bool TskInitSuccessful();
    virtual bool TskAwaken();
    virtual bool TskWakeUp(const char* argument);
    virtual void TskWakeUp();
    virtual bool TskVisible();
    virtual void TskHide();

private:
    friend struct kora::ModuleAccess;

    char* name_ = nullptr;
    char* fileName_ = nullptr;
    unsigned long handle_ = 0;
    std::uint32_t serial_ = 0;
    bool initSuccessful_ = false;
    bool awaken_ = false;
};

struct tagMSG;

class KORA_API TskApplication {
public:
    TskApplication();
    virtual ~TskApplication();
};

KORA_API TskApplication* TskApplicationSet(TskApplication* application);
KORA_MODULE_EXPORT void TskKoraMain(eTskKoraModule& status, TskKoraModule** module, double);
KORA_API void* TskKoraConnect(unsigned long handle, const char* module, const char* function);
KORA_API TskKoraModule* TskKoraModuleGet(const char* name);
KORA_API unsigned long TskKoraHandleGet(const char* name);
KORA_API bool TskModuleExists(const char* name);
KORA_API bool TskModuleIsVisible(const char* name);
KORA_API bool TskKoraWakeUpByName(const char* name, const char* argument, bool toggle);
KORA_API bool TskModulesInitialized();
KORA_API bool TskExitKoraQuery();
KORA_API void TskExit();
KORA_API void TskQuitRequest();
KORA_API bool TskIsSuspended();
KORA_API unsigned long TskGetOurInstance();
KORA_API TskApplication* TskGetApp();
KORA_API bool TskRequestCmdLineNotify(const char* option, bool (*callback)(long, long, long, long, long), long data,
                                      bool on);
KORA_API int Startup(void* start, void* second);
KORA_API int Idle(long count);
KORA_API int PreTranslateMessage(tagMSG* message);
KORA_API int ExitInstance();
KORA_API int TskMessagePump();
KORA_API bool TskCmdLine(const CStringArray& arguments);
KORA_API void TskActiveModuleSet(TskKoraModule* module);
KORA_API TskKoraModule* TskActiveModuleGet();
