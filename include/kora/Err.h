#pragma once

#include <kora/Kora.h>

class TskKoraModule;

enum eMsgIcon : int { MsgIconInformation = 0, MsgIconExclamation = 1, MsgIconNone = 2, MsgIconQuestion = 3 };

enum eMsgButton : int {
    MsgButtonAbortRetryIgnore = 10,
    MsgButtonOk = 11,
    MsgButtonOkCancel = 12,
    MsgButtonRetryCancel = 13,
    MsgButtonYesNo = 14,
    MsgButtonYesNoCancel = 15,
    MsgButtonContinueAlert = 16
};

enum eMsgReturn : int {
    MsgReturnNone = 0,
    MsgReturnAbort = 1,
    MsgReturnCancel = 2,
    MsgReturnIgnore = 3,
    MsgReturnNo = 4,
    MsgReturnOk = 5,
    MsgReturnRetry = 6,
    MsgReturnYes = 7,
    MsgReturnContinueSecond = 8,
    MsgReturnContinueFirst = 9
};

enum eErrorLevel : int { ErrLevelLowest = 0, ErrLevelHighest = 15 };

KORA_API bool ErrSet(TskKoraModule* module, long number, long location, void* reference);
KORA_API bool ErrGet(TskKoraModule*& module, long& number, long& location, void*& reference);
KORA_API bool ErrReport();
KORA_API void ERR(eErrorLevel level, unsigned long module, unsigned long file, unsigned long location, void* data,
                  int textId);
KORA_API eMsgReturn MsgAlert(eMsgIcon icon, eMsgButton buttons, short ignored, const char* title, const char* format,
                             ...);
KORA_API void TskError(const char* format, ...);
KORA_API void TskFatal(const char* format, ...);
KORA_API bool ErrSevereGet(unsigned long& code, void*& data, int& textId);

/// What a file chooser is asked, and what it answers. Paths are in library form.
struct MsgFileChoice {
    CString prompt;       ///< shown as the chooser's title; may be empty
    CString filter;       ///< pairs of description and type, separated by ';': "Text Files;txt"
    CString path;         ///< in: where to start, may be empty; out: the chosen path
    bool saving = false;  ///< choose a file to write instead of one to read
};

class KORA_API MsgPresenter {
public:
    virtual ~MsgPresenter() {}
    virtual int Alert(const char* text, unsigned style);
    virtual int ContinueAlert(const char* text);
    virtual void ErrorDialog(const char* text, bool& suppress);
    virtual void Progress(const char* text);
    virtual bool ChooseFile(MsgFileChoice& choice);
    virtual bool ChooseDirectory(const char* prompt, CString& path);
};

KORA_API MsgPresenter* MsgPresenterSet(MsgPresenter* presenter);
