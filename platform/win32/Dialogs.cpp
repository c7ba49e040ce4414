#include "platform/Unattended.h"
#include "platform/win32/Desktop.h"
#include "platform/win32/ResourceIds.h"

namespace kora::platform {

namespace {

/// What a dialog shows and changes. The texts are made beforehand: nothing in a dialog's procedure may throw.
struct Content {
    std::string title;
    std::string text;
    bool suppress = false;
    bool traceToFile = false;

    explicit Content(const char* shown) : title(applicationTitle()) {
        for (; shown && *shown; ++shown) {
            if (*shown == '\n' && (text.empty() || text.back() != '\r')) text += '\r';
            text += *shown;
        }
    }
};

Content& contentOf(HWND dialog) { return *reinterpret_cast<Content*>(GetWindowLongPtrA(dialog, DWLP_USER)); }

void begin(HWND dialog, LPARAM parameter, int focus) {
    SetWindowLongPtrA(dialog, DWLP_USER, parameter);
    const HWND text = GetDlgItem(dialog, KORA_CONTROL_TEXT);
    SetWindowTextA(text, contentOf(dialog).text.c_str());
    // The bar is there for the longest messages only.
    SCROLLINFO lines = {};
    lines.cbSize = sizeof lines;
    lines.fMask = SIF_RANGE | SIF_PAGE;
    if (GetScrollInfo(text, SB_VERT, &lines) && static_cast<int>(lines.nPage) > lines.nMax - lines.nMin)
        ShowScrollBar(text, SB_VERT, FALSE);
    const HICON icon = LoadIconA(nullptr, reinterpret_cast<LPCSTR>(IDI_EXCLAMATION));
    SendDlgItemMessageA(dialog, KORA_CONTROL_ICON, STM_SETICON, reinterpret_cast<WPARAM>(icon), 0);
    SetFocus(GetDlgItem(dialog, focus));
}

INT_PTR show(int resource, HWND owner, DLGPROC procedure, Content& content) {
    return DialogBoxParamA(reinterpret_cast<HINSTANCE>(ownModule()), MAKEINTRESOURCEA(resource), owner, procedure,
                           reinterpret_cast<LPARAM>(&content));
}

/// The same for a dialog that does not belong to another one of ours; 0 or less when it could not be shown.
INT_PTR showFirst(int resource, DLGPROC procedure, Content& content) {
    if (!windowsVisible()) return 0;
    MessageBeep(MB_ICONEXCLAMATION);
    return show(resource, ownerWindow(), procedure, content);
}

// The procedures answer false to WM_INITDIALOG because they have set the focus themselves.

INT_PTR CALLBACK errorAdvanced(HWND dialog, UINT message, WPARAM control, LPARAM parameter) {
    if (message == WM_INITDIALOG) {
        begin(dialog, parameter, IDOK);
        CheckDlgButton(dialog, KORA_CONTROL_TRACE_TO_FILE, contentOf(dialog).traceToFile);
        return FALSE;
    }
    if (message != WM_COMMAND) return FALSE;
    switch (LOWORD(control)) {
        case IDOK:
            contentOf(dialog).traceToFile = IsDlgButtonChecked(dialog, KORA_CONTROL_TRACE_TO_FILE) == BST_CHECKED;
            [[fallthrough]];
        case IDCANCEL:
            EndDialog(dialog, LOWORD(control));
            return TRUE;
        default:
            return FALSE;
    }
}

INT_PTR CALLBACK error(HWND dialog, UINT message, WPARAM control, LPARAM parameter) {
    if (message == WM_INITDIALOG) {
        begin(dialog, parameter, IDOK);
        SetWindowTextA(dialog, contentOf(dialog).title.c_str());
        CheckDlgButton(dialog, KORA_CONTROL_SUPPRESS, contentOf(dialog).suppress);
        return FALSE;
    }
    if (message != WM_COMMAND) return FALSE;
    switch (LOWORD(control)) {
        case KORA_CONTROL_ADVANCED:
            show(KORA_DIALOG_ERROR_ADVANCED, dialog, errorAdvanced, contentOf(dialog));
            return TRUE;
        case IDOK:
            contentOf(dialog).suppress = IsDlgButtonChecked(dialog, KORA_CONTROL_SUPPRESS) == BST_CHECKED;
            [[fallthrough]];
        case IDCANCEL:
            EndDialog(dialog, LOWORD(control));
            return TRUE;
        default:
            return FALSE;
    }
}

INT_PTR CALLBACK continueAlert(HWND dialog, UINT message, WPARAM control, LPARAM parameter) {
    if (message == WM_INITDIALOG) {
        begin(dialog, parameter, KORA_CONTROL_CONTINUE);
        SetWindowTextA(dialog, contentOf(dialog).title.c_str());
        return FALSE;
    }
    if (message != WM_COMMAND) return FALSE;
    switch (LOWORD(control)) {
        case KORA_CONTROL_CONTINUE:
            EndDialog(dialog, KORA_CONTROL_CONTINUE);
            return TRUE;
        case KORA_CONTROL_STOP:
        case IDCANCEL:  // Esc and the closing of the window
            EndDialog(dialog, KORA_CONTROL_STOP);
            return TRUE;
        default:
            return FALSE;
    }
}

}  // namespace

int showContinueAlert(const char* text) {
    Content content(text);
    const INT_PTR answer = showFirst(KORA_DIALOG_CONTINUE, continueAlert, content);
    if (answer > 0) return static_cast<int>(answer);
    tellUnattended(text);
    return KORA_CONTROL_CONTINUE;
}

void showErrorDialog(const char* text, bool& suppress, bool& traceToFile) {
    Content content(text);
    content.suppress = suppress;
    content.traceToFile = traceToFile;
    if (showFirst(KORA_DIALOG_ERROR, error, content) <= 0) {
        tellUnattended(text);
        content.suppress = false;
    }
    suppress = content.suppress;
    traceToFile = content.traceToFile;
}

}  // namespace kora::platform
