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

/// A dialog around one box to tick, which OK takes over and Cancel leaves.
INT_PTR boxDialog(HWND dialog, UINT message, WPARAM control, LPARAM parameter, int box, bool Content::*ticked) {
    if (message == WM_INITDIALOG) {
        begin(dialog, parameter, IDOK);
        CheckDlgButton(dialog, box, contentOf(dialog).*ticked);
        return FALSE;
    }
    if (message != WM_COMMAND || (LOWORD(control) != IDOK && LOWORD(control) != IDCANCEL)) return FALSE;
    if (LOWORD(control) == IDOK) contentOf(dialog).*ticked = IsDlgButtonChecked(dialog, box) == BST_CHECKED;
    EndDialog(dialog, LOWORD(control));
    return TRUE;
}

INT_PTR CALLBACK errorAdvanced(HWND dialog, UINT message, WPARAM control, LPARAM parameter) {
    return boxDialog(dialog, message, control, parameter, KORA_CONTROL_TRACE_TO_FILE, &Content::traceToFile);
}

INT_PTR CALLBACK error(HWND dialog, UINT message, WPARAM control, LPARAM parameter) {
    if (message == WM_COMMAND && LOWORD(control) == KORA_CONTROL_ADVANCED) {
        show(KORA_DIALOG_ERROR_ADVANCED, dialog, errorAdvanced, contentOf(dialog));
        return TRUE;
    }
    const INT_PTR handled = boxDialog(dialog, message, control, parameter, KORA_CONTROL_SUPPRESS, &Content::suppress);
    if (message == WM_INITDIALOG) SetWindowTextA(dialog, contentOf(dialog).title.c_str());
    return handled;
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
