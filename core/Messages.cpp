#include "core/Messages.h"

#include <kora/Err.h>

#include <cstdarg>

#include "core/Presenter.h"
#include "platform/Platform.h"
#include "strings/Format.h"

namespace {

unsigned iconStyle(eMsgIcon icon) {
    switch (icon) {
        case MsgIconInformation:
            return 0x40;
        case MsgIconExclamation:
            return 0x30;
        case MsgIconQuestion:
            return 0x20;
        default:
            return 0;
    }
}

unsigned buttonStyle(eMsgButton buttons) {
    switch (buttons) {
        case MsgButtonOkCancel:
            return 1;
        case MsgButtonAbortRetryIgnore:
            return 2;
        case MsgButtonYesNoCancel:
            return 3;
        case MsgButtonYesNo:
            return 4;
        case MsgButtonRetryCancel:
            return 5;
        default:
            return 0;
    }
}

// From the control that ended the box.
eMsgReturn pressed(int control) {
    switch (control) {
        case 1:
            return MsgReturnOk;
        case 2:
            return MsgReturnCancel;
        case 3:
            return MsgReturnAbort;
        case 4:
            return MsgReturnRetry;
        case 5:
            return MsgReturnIgnore;
        case 6:
            return MsgReturnYes;
        case 7:
            return MsgReturnNo;
        case 1219:
            return MsgReturnContinueFirst;
        case 1220:
            return MsgReturnContinueSecond;
        default:
            return MsgReturnNone;
    }
}

void formatMessage(char (&text)[kora::kMessageSize], const char* format, va_list arguments) {
    kora::formatBounded(text, sizeof text, format ? format : "", arguments);
}

}  // namespace

// The title and the short are part of the call and go nowhere: the caption is always the application's.
eMsgReturn MsgAlert(eMsgIcon icon, eMsgButton buttons, short, const char*, const char* format, ...) {
    kora::platform::releaseMouse();
    char text[kora::kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    formatMessage(text, format, arguments);
    va_end(arguments);
    MsgPresenter& presenter = kora::presenter();
    if (buttons == MsgButtonContinueAlert) return pressed(presenter.ContinueAlert(text));
    return pressed(presenter.Alert(text, iconStyle(icon) | buttonStyle(buttons)));
}

void TskError(const char* format, ...) {
    char text[kora::kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    formatMessage(text, format, arguments);
    va_end(arguments);
    MsgAlert(MsgIconNone, MsgButtonOk, 1, "System Error", "%s", text);
}

void TskFatal(const char* format, ...) {
    // Formats and stays silent: callers go on to report in their own way.
    char text[kora::kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    formatMessage(text, format, arguments);
    va_end(arguments);
}
