#pragma once

#include <kora/Kora.h>

class TskKoraModule;

/// @file
/// Errors for the user, faults for the trace, and everything that asks or tells the user.

/// Icon of a message box. Any other value shows no icon.
enum eMsgIcon : int { MsgIconInformation = 0, MsgIconExclamation = 1, MsgIconNone = 2, MsgIconQuestion = 3 };

/// Buttons of a message box. Any other value shows OK.
enum eMsgButton : int {
    MsgButtonAbortRetryIgnore = 10,
    MsgButtonOk = 11,
    MsgButtonOkCancel = 12,
    MsgButtonRetryCancel = 13,
    MsgButtonYesNo = 14,
    MsgButtonYesNoCancel = 15,
    MsgButtonContinueAlert = 16  ///< the continue alert, a dialog with two buttons of its own
};

/// The button that ended a message box.
enum eMsgReturn : int {
    MsgReturnNone = 0,
    MsgReturnAbort = 1,
    MsgReturnCancel = 2,
    MsgReturnIgnore = 3,
    MsgReturnNo = 4,
    MsgReturnOk = 5,
    MsgReturnRetry = 6,
    MsgReturnYes = 7,
    MsgReturnContinueSecond = 8,  ///< control 1220 of the continue alert
    MsgReturnContinueFirst = 9    ///< control 1219 of the continue alert
};

/// Severity of an internal fault: 0 to 15, higher is worse. Only the order counts.
enum eErrorLevel : int { ErrLevelLowest = 0, ErrLevelHighest = 15 };

/// Records an error that the user must hear about, unless one is pending already: the first error wins.
///
/// @param module     who failed; null counts as a module with an empty name. Its TskKoraName() is asked in any case.
/// @param number     -2 system memory exhausted, -1 memory getting low, anything else an internal error; 32 bits are kept
/// @param location   a value of the caller's choice that names the place; 32 bits are kept
/// @param reference  more detail, shown as a number
/// @return whether an error was pending before the call: false when this one was recorded, true when it was dropped
KORA_API bool ErrSet(TskKoraModule* module, long number, long location, void* reference);

/// Copies the recorded error and answers whether it is pending. The values of a reported error stay readable.
KORA_API bool ErrGet(TskKoraModule*& module, long& number, long& location, void*& reference);

/// Shows the pending error and clears it; answers whether one was pending.
///
/// The module may deal with it itself (TskErrHandler() answers true), then nothing is shown. Otherwise the text by
/// number is shown in a box with OK, with the module's name, location and reference; the number itself never is.
/// A call made while a report is showing answers true and shows nothing, and an error that is set then is dropped.
KORA_API bool ErrReport();

/// Files an internal fault in the trace; shows nothing to the user.
///
/// The ring receives the code (level in bits 28 to 31, bit 24 when there is data, module from bit 18, file from bit 12,
/// location), then @p data, then 0, and is dumped when tracing to file is on, with string @p textId of the library or
/// "Error dump module %x file %x loc %x". Fields are not masked: one that is too large spills into its neighbour.
/// The most severe fault is kept for ErrSevereGet(); of equal ones the newest.
KORA_API void ERR(eErrorLevel level, unsigned long module, unsigned long file, unsigned long location, void* data,
                  int textId);

/// The most severe fault filed by this process: its code (without the data bit), the data and the text id, which is 0
/// when the text could not be loaded. False, with zeros, when none was filed.
KORA_API bool ErrSevereGet(unsigned long& code, void*& data, int& textId);

/// Formats a message (at most 1023 characters; the rest is cut) and shows it; answers the button pressed.
///
/// @p title and the short are not used at all: the caption is the application's title. Callers pass them all the same.
KORA_API eMsgReturn MsgAlert(eMsgIcon icon, eMsgButton buttons, short ignored, const char* title, const char* format,
                             ...);

/// Formats a message as MsgAlert() does and shows it without icon and with OK.
KORA_API void TskError(const char* format, ...);

/// Formats a message and drops it. The silence is deliberate: callers report in their own way.
KORA_API void TskFatal(const char* format, ...);

/// What a file chooser is asked, and what it answers. Paths are in library form.
struct MsgFileChoice {
    CString prompt;       ///< shown as the chooser's title; may be empty
    CString filter;       ///< pairs of description and type, all separated by ';': "Text Files;txt"
    CString path;         ///< in: where to start, may be empty; out: the chosen path
    bool saving = false;  ///< choose a file to write instead of one to read
};

/// Everything that asks or tells the user. A host derives from it and installs the object with MsgPresenterSet().
///
/// What is not overridden does what the platform does: message boxes and dialogs on Windows; elsewhere the text goes
/// to standard error and the style's default button is the answer, so that nothing waits for a person who is not
/// there. The choosers are the exception: unless they are overridden they cancel.
class KORA_API MsgPresenter {
public:
    virtual ~MsgPresenter() {}
    /// A message box. @p style is a Windows message-box style (buttons in bits 0 to 3, icon in 4 to 7). Answers a
    /// Windows button: 1 OK, 2 Cancel, 3 Abort, 4 Retry, 5 Ignore, 6 Yes, 7 No.
    virtual int Alert(const char* text, unsigned style);
    /// The continue alert; answers 1219 or 1220.
    virtual int ContinueAlert(const char* text);
    /// An internal error. @p suppress becomes true when the user does not want to see this text again.
    virtual void ErrorDialog(const char* text, bool& suppress);
    /// One line on how far something has come.
    virtual void Progress(const char* text);
    /// Lets the user choose a file; false when cancelled.
    virtual bool ChooseFile(MsgFileChoice& choice);
    /// Lets the user choose a directory, starting at @p path; false when cancelled.
    virtual bool ChooseDirectory(const char* prompt, CString& path);
    /// The sound that draws the user's attention. On POSIX the bell, where standard error is a terminal.
    virtual void Beep();
};

/// Puts @p presenter in place of the one before, which is answered; null restores the platform's own. The caller keeps
/// both objects.
KORA_API MsgPresenter* MsgPresenterSet(MsgPresenter* presenter);
