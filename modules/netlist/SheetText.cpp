#include "SheetText.h"

#include <memory>

namespace netlist {

namespace {

CString counted(const char* text, long length) {
    return text != nullptr ? CString(text, static_cast<std::size_t>(length)) : CString();
}

// Rows top to bottom with the margin's column: at once if a buffer takes that, otherwise in halves.
bool appendRows(ShtSheet& sheet, int top, int bottom, short lastCol, CString& text) {
    sheet.ShtSheetSelectSet(ShtSelectCells, static_cast<short>(top), 0, static_cast<short>(bottom), lastCol);
    char* buffer = nullptr;
    long length = 0;
    if (sheet.ShtSheetToBuffer(buffer, length, /*selectionOnly=*/true)) {
        const std::unique_ptr<char, decltype(&ShtBufferFree)> owned(buffer, ShtBufferFree);
        text += counted(buffer, length);
        return true;
    }
    const int middle = top + (bottom - top) / 2;
    return top < bottom && appendRows(sheet, top, middle, lastCol, text) &&
           appendRows(sheet, middle + 1, bottom, lastCol, text);
}

void appendCsvField(const CString& field, CString& line) {
    if (field.find_first_of(",\"\r\n") == CString::npos) {
        line += field;
        return;
    }
    line += '"';
    for (const char c : field) line.append(c == '"' ? 2 : 1, c);
    line += '"';
}

template <typename Field>
void appendCsvLine(short cols, Field field, CString& text) {
    for (short c = 0; c < cols; ++c) {
        if (c > 0) text += ',';
        appendCsvField(field(c), text);
    }
    text += "\r\n";
}

}  // namespace

CString cellText(ShtSheet& sheet, short r, short c) {
    bool copied;
    char* text;
    long length;
    void* data;
    sheet.ShtCellGet(r, c, copied, text, length, data);
    return counted(text, length);
}

CString rowHeading(ShtSheet& sheet, short r) {
    char* text;
    long length;
    void* data;
    return sheet.ShtRowHeadingGet(r, text, length, data) && length > 0 ? counted(text, length) : std::to_string(r);
}

CString colHeading(ShtSheet& sheet, short c) {
    char* text;
    long length;
    void* data;
    return sheet.ShtColHeadingGet(c, text, length, data) && length > 0 ? counted(text, length) : std::to_string(c);
}

bool sheetAsTsv(ShtSheet& sheet, CString& text) {
    short rows, cols, top, left, bottom, right;
    sheet.ShtSheetSizeGet(&rows, &cols);
    const eShtSelect kind = sheet.ShtSheetSelectGet(&top, &left, &bottom, &right);
    text.clear();
    const bool isWhole = appendRows(sheet, 0, rows, cols, text);
    sheet.ShtSheetSelectSet(kind, top, left, bottom, right);
    return isWhole;
}

CString sheetAsCsv(ShtSheet& sheet) {
    short rows, cols;
    sheet.ShtSheetSizeGet(&rows, &cols);
    CString text;
    appendCsvLine(
        cols, [&sheet](short c) { return colHeading(sheet, c); }, text);
    for (short r = 0; r < rows; ++r)
        appendCsvLine(
            cols, [&sheet, r](short c) { return cellText(sheet, r, c); }, text);
    return text;
}

}  // namespace netlist
