#include <kora/File.h>
#include <kora/Ini.h>
#include <kora/Tmr.h>
#include <kora/Trace.h>
#include <kora/Tsk.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <string>

#include "paths/RecentFiles.h"
#include "platform/Platform.h"
#include "strings/Bytes.h"
#include "strings/Guarded.h"
#include "tasks/ApplicationState.h"
#include "tasks/Timers.h"

namespace kora {

constinit ApplicationState applicationState{};

namespace {

constexpr std::size_t kRecentFiles = 16;
constexpr const char* kRecentSection = "Recent File List";

// How long the loop may rest while an idle timer of normal priority runs.
constexpr std::uint32_t kIdleRest = 10;
constexpr std::uint32_t kNoLimit = 0xFFFFFFFF;

struct Applications {
    TskApplication* current;
    TskApplication* own;  // the default, never destroyed: modules may still ask for it while the process ends
    alignas(TskApplication) unsigned char storage[sizeof(TskApplication)];
};

constinit Applications applications{};

TskApplication* ownApplication() {
    if (applications.own == nullptr) applications.own = new (applications.storage) TskApplication;
    return applications.own;
}

std::string recentName(std::size_t index) { return "File" + std::to_string(index + 1); }

// How long the loop may rest before a timed timer fires.
std::uint32_t restUntilDue() {
    std::uint32_t rest = 0;
    return timersNextDue(rest) ? rest : kNoLimit;
}

}  // namespace

void failureNote() { TskExitCodeSet(1); }

void exceptionNote(const char* text) {
    failureNote();
    try {
        TraceException(text);
    } catch (...) {
        // The presenter itself threw, and there is nobody else to tell.
    }
}

bool recentFilesExist() {
    CStringArray ignored;
    return TskGetApp()->TskAppRecentGet(ignored);
}

void recentFileAdd(const char* fullName) {
    TskApplication* application = TskGetApp();
    application->TskAppRecentAdd(fullName);
    application->TskAppSettingsSave();
}

void recentFilesList(CStringArray& list) { TskGetApp()->TskAppRecentGet(list); }

}  // namespace kora

TskApplication::TskApplication() = default;

TskApplication::~TskApplication() {
    if (kora::applications.current == this) kora::applications.current = nullptr;
}

void TskApplication::TskAppPrepareOnce() {}

void TskApplication::TskAppPrepare() {
    // Another program may have added files since.
    recent_.clear();
    recentRead_ = false;
}

bool TskApplication::TskAppInit() { return true; }

bool TskApplication::TskAppStart(void*) { return true; }

int TskApplication::TskAppIdle(long) {
    TmrDoIdleTimers();
    return TmrHighPriorityIdleRunning() ? 1 : 0;
}

int TskApplication::TskAppPreTranslate(tagMSG*) { return 0; }

bool TskApplication::TskAppQuit() {
    // Who has agreed is not asked again.
    if (!kora::applicationState.ending) kora::applicationState.ending = TskExitKoraQuery();
    return kora::applicationState.ending;
}

bool TskApplication::TskAppEnding() { return kora::applicationState.ending; }

void TskApplication::TskAppStay(bool on) { kora::applicationState.staying += on ? 1 : -1; }

bool TskApplication::TskAppBusy() {
    std::uint32_t ignored;
    return kora::applicationState.staying > 0 || TmrIdleRunning() || TmrHighPriorityIdleRunning() ||
           kora::timersNextDue(ignored);
}

void TskApplication::TskAppWait() {
    if (TmrHighPriorityIdleRunning()) return;
    const std::uint32_t rest = kora::restUntilDue();
    kora::platform::messagesWait(TmrIdleRunning() ? std::min(rest, kora::kIdleRest) : rest);
}

int TskApplication::TskAppExit() { return kora::applicationState.exitCode; }

void TskApplication::TskAppRecentAdd(const char* fullName) {
    if (fullName == nullptr || *fullName == '\0') return;
    kora::guarded([&] {
        CStringArray& files = recentFiles();
        std::string added = fullName;
        std::erase_if(files, [&](const CString& file) { return kora::equalIgnoringCase(file, added); });
        files.insert(files.begin(), std::move(added));
        if (files.size() > kora::kRecentFiles) files.resize(kora::kRecentFiles);
    });
}

bool TskApplication::TskAppRecentGet(CStringArray& list) {
    kora::guarded([&] {
        const CStringArray& files = recentFiles();
        list.insert(list.end(), files.begin(), files.end());
    });
    return true;
}

void TskApplication::TskAppSettingsSave() {
    kora::guarded([&] {
        const CStringArray& files = recentFiles();
        for (std::size_t i = 0; i < files.size(); ++i)
            SetRegOption(kora::kRecentSection, kora::recentName(i).c_str(), files[i]);
    });
}

CStringArray& TskApplication::recentFiles() {
    if (!recentRead_) {
        recentRead_ = true;
        for (std::size_t i = 0; i < kora::kRecentFiles; ++i) {
            CString file;
            if (GetRegOption(kora::kRecentSection, kora::recentName(i).c_str(), file) && !file.empty())
                recent_.push_back(std::move(file));
        }
    }
    return recent_;
}

TskApplication* TskApplicationSet(TskApplication* application) {
    TskApplication* before = TskGetApp();
    kora::applications.current = application;
    return before;
}

TskApplication* TskGetApp() {
    return kora::applications.current != nullptr ? kora::applications.current : kora::ownApplication();
}

void TskPrepareOnceRequest() { kora::applicationState.prepareOnce = true; }

void TskExitCodeSet(int code) {
    if (kora::applicationState.exitCode == 0) kora::applicationState.exitCode = code;
}

int TskExitCodeGet() { return kora::applicationState.exitCode; }
