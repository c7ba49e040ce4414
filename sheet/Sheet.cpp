#include <kora/Ini.h>
#include <kora/Sht.h>

#include <algorithm>
#include <new>

#include "core/VirtualSlots.h"
#include "sheet/State.h"
#include "strings/Guarded.h"

namespace {

constexpr const char* kSection = "System SpreadSheet";

// What a sheet without memory of its own stands on; it takes no element.
kora::SheetState& noState() {
    struct None : kora::SheetState {
        None() { inited = false; }
    };
    static None state;
    return state;
}

}  // namespace

ShtSheet::ShtSheet(TskKoraModule* module, WinWindow* parentWindow, short resourceId)
    : WinWindow(module, parentWindow), state_(new (std::nothrow) kora::SheetState) {
    if (state_ == nullptr) {
        state_ = &noState();
        return;
    }
    state_->ownCellGet = kora::slotCode(*this, &ShtSheet::ShtCellGet);
    state_->ownCellShow = kora::slotCode(*this, &ShtSheet::ShtCellShow);
    state_->ownProgCellChange = kora::slotCode(*this, &ShtSheet::ShtProgCellChange);
    if (!WinCreate(resourceId)) state_->inited = false;
}

ShtSheet::~ShtSheet() {
    if (state_ != &noState()) delete state_;
}

void ShtSheet::WinCreateDone() {
    WinWindow::WinCreateDone();
    WinFont standard, font;
    IniGetFont(eIniMain, kSection, "Cell Font", standard, font);
    IniGetColor(eIniMain, kSection, "Cell Protected Color", 3, state_->protectColour);
    IniGetColor(eIniMain, kSection, "GridLines Color", 9, state_->gridLinesColour);
    ShtSheetFontSet(&font);
    for (const kora::SheetLine line : kora::kLines)
        if (state_->bandSize[line] == 0) state_->bandSize[line] = state_->defaultSize[line];
}

bool ShtSheet::ShtInited() { return state_->inited; }

void ShtSheet::ShtMove(LRCT* r) { WinMove(r); }
void ShtSheet::ShtShow() { WinShow(); }
void ShtSheet::ShtHide() { WinHide(); }

bool ShtSheet::ShtSheetGridLinesGet() { return state_->gridLines; }
void ShtSheet::ShtSheetGridLinesSet(bool on) {
    state_->gridLines = on;
    redrawSheet();
}

bool ShtSheet::ShtSheetAxisSwapGet() { return state_->axesSwapped; }
void ShtSheet::ShtSheetAxisSwapSet(bool on) { state_->axesSwapped = on; }

WinFont* ShtSheet::ShtSheetFontGet(WinFont* font) {
    if (font != nullptr) kora::guarded([&] { *font = state_->cellFont; });
    return font;
}

void ShtSheet::ShtSheetFontSet(WinFont* font) {
    if (font == nullptr) return;
    kora::guarded([&] { state_->cellFont = *font; });
    WinFontSet(&state_->cellFont);
    redrawSheet();
    LPNT size = {0, 0};
    WinTextMeasure("1234567890", 10, &size);
    state_->defaultSize = {kora::sizeFor(size.v), kora::sizeFor(size.h)};
}

void ShtSheet::ShtSheetUserMoveOkayGet(bool* rows, bool* cols) {
    if (rows != nullptr) *rows = state_->userMoves.row;
    if (cols != nullptr) *cols = state_->userMoves.column;
}
void ShtSheet::ShtSheetUserMoveOkaySet(bool rows, bool cols) { state_->userMoves = {rows, cols}; }
void ShtSheet::ShtSheetUserSizeOkayGet(bool* rows, bool* cols) {
    if (rows != nullptr) *rows = state_->userSizes.row;
    if (cols != nullptr) *cols = state_->userSizes.column;
}
void ShtSheet::ShtSheetUserSizeOkaySet(bool rows, bool cols) { state_->userSizes = {rows, cols}; }

void ShtSheet::ShtSheetSizeGet(short* rows, short* cols) {
    if (rows != nullptr) *rows = static_cast<short>(state_->table.rowCount());
    if (cols != nullptr) *cols = static_cast<short>(state_->table.colCount());
}

void ShtSheet::ShtSheetSizeUsedGet(short* rows, short* cols) {
    int usedRows = 0, usedCols = 0;
    for (int r = 0; r < state_->table.rowCount(); ++r) {
        const kora::TShtRow& row = *state_->table.row(r);
        int used = row.count();
        while (used > 0 && row[used - 1].length() == 0) --used;
        if (used > 0) usedRows = r + 1;
        usedCols = std::max(usedCols, used);
    }
    if (rows != nullptr) *rows = static_cast<short>(usedRows);
    if (cols != nullptr) *cols = static_cast<short>(usedCols);
}

bool ShtSheet::ShtSheetDirtyGet() { return state_->dirty || state_->dirtyCells > 0; }
void ShtSheet::ShtSheetDirtySet(bool dirty) { state_->dirty = dirty; }

bool ShtSheet::ShtSheetProtectGet() { return state_->isProtected; }
void ShtSheet::ShtSheetProtectSet(bool on) { state_->isProtected = on; }

void ShtSheet::ShtSheetUpdateNow() { WinUpdateNow(); }

int ShtSheet::ShtSheetProtectColourGet() { return state_->protectColour; }
int ShtSheet::ShtSheetGridLinesColourGet() { return state_->gridLinesColour; }

void ShtSheet::ShtUserCellChange(short, short) {}
void ShtSheet::ShtUserSelect() {}
void ShtSheet::ShtUserRightMouseDown(short, short) {}
void ShtSheet::ShtUserRightMouseUp(short, short) {}
void ShtSheet::ShtUserColMove(short, short) {}
void ShtSheet::ShtUserColMoveDone() {}
void ShtSheet::ShtUserRowMove(short, short) {}
void ShtSheet::ShtUserRowMoveDone() {}
bool ShtSheet::ShtProgCellChange(short, short) { return true; }
void ShtSheet::ShtProgCellChangeDone(bool) {}

void ShtSheet::endEdit() {
    if (!state_->editing) return;
    state_->editing = false;
    ShtEditEnd();
}

bool ShtSheet::ShtEditBegin(short r, short c) {
    if (state_->table.row(r) == nullptr || state_->table.column(c) == nullptr) return false;
    const kora::TShtCell* const cell = state_->table.cell(r, c);
    if (cell != nullptr && cell->isProtected) return false;
    endEdit();
    state_->editing = true;
    state_->editRow = r;
    state_->editCol = c;
    return true;
}

void ShtSheet::ShtEditEnd() { state_->editing = false; }

bool ShtSheet::ShtEditGet(short* r, short* c) {
    if (r != nullptr) *r = state_->editRow;
    if (c != nullptr) *c = state_->editCol;
    return state_->editing;
}
