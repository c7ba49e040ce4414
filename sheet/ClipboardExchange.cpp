#include <kora/Sht.h>

namespace {

// Gives a buffer back and closes the clipboard whatever happens between.
struct WrittenText {
    char* text = nullptr;
    long length = 0;
    WrittenText() = default;
    ~WrittenText() { ShtBufferFree(text); }
    WrittenText(const WrittenText&) = delete;
    WrittenText& operator=(const WrittenText&) = delete;
};

struct ClipboardText {
    char* text = nullptr;
    long length = 0;
    ClipboardText() = default;
    ~ClipboardText() {
        ClpTextFree(text);
        ClpClose();
    }
    ClipboardText(const ClipboardText&) = delete;
    ClipboardText& operator=(const ClipboardText&) = delete;
};

// Both beep for themselves, so that cutting beeps once.
bool copySelection(ShtSheet& sheet) {
    WrittenText written;
    if (!sheet.ShtSheetToBuffer(written.text, written.length, /*selectionOnly=*/true) || written.length <= 0)
        return false;
    if (!ClpClear() || !ClpOpen(/*forWriting=*/true)) return false;
    const bool put = ClpTextPut(written.text, written.length);
    ClpClose();
    return put;
}

}  // namespace

void ShtSheet::ShtSheetCopy() {
    if (!copySelection(*this)) UtlBeep();
}

void ShtSheet::ShtSheetCut() {
    if (copySelection(*this))
        ShtSheetClear(/*selectionOnly=*/true, /*headingsToo=*/false);
    else
        UtlBeep();
}

void ShtSheet::ShtSheetPaste() {
    if (!ClpTextAvailable() || !ClpOpen(/*forWriting=*/false)) return;
    ClipboardText held;
    if (!ClpTextGet(held.text, held.length)) return;
    if (!ShtSheetFromBuffer(held.text, held.length, /*atSelection=*/true, ShtSheetVirtGet())) UtlBeep();
}
