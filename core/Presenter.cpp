#include "core/Presenter.h"

#include <kora/Utl.h>

#include <new>

#include "core/TraceRing.h"
#include "platform/Platform.h"

namespace {

// The platform's own presenter, which also lets the user choose files; a presenter of the host's cancels those unless
// it overrides them.
class PlatformPresenter final : public MsgPresenter {
public:
    bool ChooseFile(MsgFileChoice& choice) override {
        return kora::platform::chooseFile(choice.prompt, choice.filter, choice.saving, choice.path);
    }
    bool ChooseDirectory(const char* prompt, CString& path) override {
        return kora::platform::chooseDirectory(prompt ? prompt : "", path);
    }
};

MsgPresenter& platformPresenter() {
    // Never destroyed: messages may come as late as the process's own end.
    alignas(PlatformPresenter) static unsigned char room[sizeof(PlatformPresenter)];
    static PlatformPresenter* const presenter = ::new (room) PlatformPresenter;
    return *presenter;
}

constinit MsgPresenter* hostPresenter = nullptr;

}  // namespace

namespace kora {

MsgPresenter& presenter() { return hostPresenter ? *hostPresenter : platformPresenter(); }

}  // namespace kora

int MsgPresenter::Alert(const char* text, unsigned style) { return kora::platform::showAlert(text, style); }

int MsgPresenter::ContinueAlert(const char* text) { return kora::platform::showContinueAlert(text); }

void MsgPresenter::ErrorDialog(const char* text, bool& suppress) {
    kora::platform::showErrorDialog(text, suppress, kora::traceRing.toFile);
}

void MsgPresenter::Progress(const char* text) { kora::platform::showProgress(text); }

bool MsgPresenter::ChooseFile(MsgFileChoice&) { return false; }

bool MsgPresenter::ChooseDirectory(const char*, CString&) { return false; }

void MsgPresenter::Beep() { kora::platform::beep(); }

MsgPresenter* MsgPresenterSet(MsgPresenter* presenter) {
    MsgPresenter& before = kora::presenter();
    hostPresenter = presenter == &platformPresenter() ? nullptr : presenter;
    return &before;
}

void UtlBeep() { kora::presenter().Beep(); }
