#pragma once

#include <kora/Kora.h>
#include <kora/Utl.h>
#include <kora/Win.h>

#include <optional>

/// @file
/// The sheet: a grid of text cells with headings down the left and along the top.
///
/// A cell is addressed by row and column, signed 16-bit numbers from 0. -1 stands for none or for all, as each
/// operation says. Storage is dense from the front and ragged at the end: writing to a cell creates every row and
/// column heading up to it and the cells of its own row, nothing else, so rows may have different numbers of cells. No
/// element is numbered beyond 32766.
///
/// Readers never create anything. Writers create what they address; they answer false only when a number is below 0 or
/// 32767, or memory runs out, and then what had been created stays.
///
/// Texts are counted, not terminated, in 8-bit characters.

class TskKoraModule;

/// What a change does to the screen.
enum eShtCellUpdate : std::int32_t {
    ShtCellUpdateNone = 0,
    ShtCellUpdateInvalidate = 1,  ///< what changed is invalidated
    ShtCellUpdateNow = 2          ///< and then ShtSheetUpdateNow() is called
};

/// Where a row (column) that is not fully visible is scrolled to. Any other value leaves the position as it is.
enum eShtCellShow : std::int32_t {
    ShtCellShowNone = 0,
    ShtCellShowFirst = 1,
    ShtCellShowMiddle = 2,
    ShtCellShowLast = 3
};

/// How the text sits in its cell; every other value is right too. Headings are centred.
enum eShtCellAlign : std::int32_t { ShtCellAlignLeft = 0, ShtCellAlignCentre = 1, ShtCellAlignRight = 2 };

/// What a selection consists of.
enum eShtSelect : std::int32_t {
    ShtSelectNone = 0,
    ShtSelectCells = 1,
    ShtSelectRows = 2,  ///< whole rows: every column of them, whatever the rectangle says
    ShtSelectCols = 3,
    ShtSelectSheet = 4
};

/// What a sort compares; every other value is cells too.
enum eShtSort : std::int32_t { ShtSortHeadings = 0, ShtSortCells = 1 };

/// How rows (columns) are sized.
enum eShtAutoSize : std::int32_t {
    ShtAutoSizeNone = 0,
    ShtAutoSizeDefault = 1,  ///< the default row height (column width)
    ShtAutoSizeFit = 2       ///< as large as the texts need
};

/// How wide the band of row headings becomes.
enum eShtHeaderSize : std::int32_t {
    ShtHeaderSizeNone = 0,
    ShtHeaderSizeHalf = 1,     ///< half the default column width
    ShtHeaderSizeDefault = 2,  ///< the default column width
    ShtHeaderSizeFit = 3       ///< widened to what the row headings need
};

namespace kora {
enum class SheetLine : int;
enum class SheetRedraw : int;
template <class Value>
struct PerLine;
using SheetExtent = PerLine<int>;
struct SheetRange;
struct SheetState;
class TShtCell;
}  // namespace kora

/// A grid of text cells, complete without a window: a host that has windows overrides the operations of WinWindow and
/// draws what ShtCellRectGet() tells.
///
/// The sheet calls its own operations through their slots, so an override of one takes effect within the others. Slot
/// order is the interface; new operations go at the end.
///
/// *Bulk operations* (clear, fill, reading a buffer) change cell after cell as follows, passing over protected ones:
/// the cell becomes dirty, gets a copy of its new text (clearing takes its mark as well), and ShtProgCellChange() is
/// asked; a false answer stops the operation behind that cell. ShtProgCellChangeDone() is told at the end whether the
/// operation was completed.
///
/// Clearing, filling, sorting and sizing show the busy cursor of the cursors 1050 to 1053, advanced once a row (a cell,
/// when filling), and the arrow (32512) at the end. Operations on more than one cell begin by ending an edit in place.
class KORA_API ShtSheet : public WinWindow {
public:
    /// An empty sheet in @p parentWindow, which may be null, as may @p module. The font and the two colours come from
    /// the section "System SpreadSheet": "Cell Font" (12 points without a face), "Cell Protected Color" (3), "GridLines
    /// Color" (9). Not virtual, grid lines shown, axes not swapped, not dirty, not protected; the user may size rows
    /// and columns and may not move them.
    ShtSheet(TskKoraModule* module, WinWindow* parentWindow, short resourceId);
    ~ShtSheet() override;

    /// False when there was no memory for the sheet or its window could not be made; nothing can be written to it then.
    virtual bool ShtInited();
    virtual void ShtMove(LRCT* r);  ///< WinMove()
    virtual void ShtShow();         ///< WinShow()
    virtual void ShtHide();         ///< WinHide()

    /// Virtual mode: the sheet holds at any time at least two screens of rows and columns from the scroll position on.
    /// Switching it on scrolls to the top left and grows the sheet, through ShtColAdd() and then ShtRowAdd(); switching
    /// it off scrolls there too and deletes the empty rows at the end, then the columns, each through ShtRowDel()
    /// (ShtColDel()), down to what ShtSheetSizeUsedGet() tells.
    virtual bool ShtSheetVirtGet();
    virtual void ShtSheetVirtSet(bool on);       ///< see ShtSheetVirtGet()
    virtual bool ShtSheetGridLinesGet();         ///< whether grid lines are shown
    virtual void ShtSheetGridLinesSet(bool on);  ///< and invalidates the sheet
    virtual bool ShtSheetAxisSwapGet();          ///< what ShtSheetAxisSwapSet() kept
    virtual void ShtSheetAxisSwapSet(bool on);   ///< kept for the owner; nothing here acts on it
    /// Copies the cell font into @p font and answers it; null answers null.
    virtual WinFont* ShtSheetFontGet(WinFont* font);
    /// Sets the cell font and, from it, the default row height (a line) and column width (ten digits). Rows and columns
    /// keep their sizes. Null changes nothing.
    virtual void ShtSheetFontSet(WinFont* font);
    /// What the user may do with the mouse; either pointer may be null. The sheet's own operations are not bound by it.
    virtual void ShtSheetUserMoveOkayGet(bool* rows, bool* cols);
    virtual void ShtSheetUserMoveOkaySet(bool rows, bool cols);    ///< see ShtSheetUserMoveOkayGet()
    virtual void ShtSheetUserSizeOkayGet(bool* rows, bool* cols);  ///< see ShtSheetUserMoveOkayGet()
    virtual void ShtSheetUserSizeOkaySet(bool rows, bool cols);    ///< see ShtSheetUserMoveOkayGet()
    /// How many rows and column headings there are; either pointer may be null.
    virtual void ShtSheetSizeGet(short* rows, short* cols);
    /// The size without what is empty at the end: one more than the highest row, and the highest column, that holds a
    /// text. Both are 0 without any text. A null @p cols is allowed too.
    virtual void ShtSheetSizeUsedGet(short* rows, short* cols);
    /// Destroys all rows and columns and what is in them. The sheet is dirty then, nothing is selected, and in virtual
    /// mode it grows again. Font, defaults and settings stay.
    virtual void ShtSheetDelete();
    /// Bulk: clears the cells of the selection (nothing happens without one) or the sheet. With @p headingsToo the
    /// headings of those rows, and every column heading from the first of those columns to the last of the sheet, lose
    /// their text and mark and become dirty. No operation takes that back: ShtSheetDirtyGet() stays
    /// true as long as these rows and columns are there.
    virtual void ShtSheetClear(bool selectionOnly, bool headingsToo);
    /// Bulk: copies the selection's top row over the rows below, column after column; rows and columns that do not
    /// exist are left out. Marks stay where they are. With @p headingsToo the top row's heading too, unless a hook
    /// stopped the filling; the count of dirty cells is then that of the last heading alone, 0 or 1: callers rely on
    /// it.
    ///
    /// In virtual mode a selection that is not of plain cells is refused with a beep.
    virtual void ShtSheetFillDown(bool headingsToo);
    /// The mirror image, row after row; with @p headingsToo each heading that becomes dirty is counted.
    virtual void ShtSheetFillRight(bool headingsToo);
    /// Sorts all rows by their headings or by their cells and scrolls to the top left; nothing is selected then, and
    /// the sheet is dirty. Whatever belongs to a row travels with it; columns stay.
    ///
    /// Empty texts come last; runs of digits compare as numbers, kept to 16 bits; other characters as signed bytes, so
    /// capitals come before small letters and 0x80 to 0xFF before both. By cells, the first pair of cells that differs
    /// decides. Equal rows come out in the reverse order of before. Rows of which one has no cells left to compare
    /// count as equal: rows of different lengths can make an order that contradicts itself, and come out as a SortTree
    /// hands them back. Without memory the rows stay where they are.
    virtual void ShtSheetSort(eShtSort by);
    /// Sets row heights, column widths and the width of the row headings' band. Nothing happens when the sheet has no
    /// rows or no columns. A width is that of the widest text and 200 more; sizes stay within 16 bits.
    virtual void ShtSheetAutoSize(eShtAutoSize rows, eShtAutoSize cols, eShtHeaderSize header);
    /// Whether the dirty flag is set or some cell is dirty.
    virtual bool ShtSheetDirtyGet();
    virtual void ShtSheetDirtySet(bool dirty);  ///< sets the flag alone; cells stay as they are
    virtual bool ShtSheetProtectGet();          ///< what ShtSheetProtectSet() kept
    virtual void ShtSheetProtectSet(bool on);   ///< kept for the owner; nothing here acts on it
    virtual void ShtSheetUpdateNow();           ///< WinUpdateNow()
    /// The selection and its kind; any pointer may be null. The rectangle is what was set.
    virtual eShtSelect ShtSheetSelectGet(short* top, short* left, short* bottom, short* right);
    /// Selects rows @p top to @p bottom and columns @p left to @p right, both included; a -1 reaches to that end of the
    /// sheet. Calls no hook. Inserting and deleting do not adjust the selection.
    virtual void ShtSheetSelectSet(eShtSelect kind, short top, short left, short bottom, short right);
    /// Moves a selection of one cell to the next cell of its row, behind the last column to the next row's first,
    /// behind the last row to the first.
    /// @return false, with nothing changed, when the selection is anything else or outside the sheet
    virtual bool ShtSheetSelectNext();
    /// Writes the selection, or everything, as text: TAB between cells, CR behind each row, no LF, no quoting.
    /// Everything means one column and one row more than the sheet has: each row ends with an empty cell, and an empty
    /// row follows. @p buffer is not terminated and belongs to the caller, who hands it to ShtBufferFree().
    ///
    ///     a b         "a TAB b TAB CR c TAB d TAB CR TAB TAB CR", 13 characters
    ///     c d
    ///
    /// @return false, with null and 0, when there are more than 64000 characters or there is no memory. Without a
    ///         selection true, with null and 0.
    virtual bool ShtSheetToBuffer(char*& buffer, long& length, bool selectionOnly);
    /// Bulk: reads cells from such a text, from the selection's top left on or from (0, 0). CR and LF each end a row,
    /// so CR LF leaves an empty row between. With @p create, or in virtual mode, missing rows and columns are made;
    /// without it what lies outside is dropped. @p buffer may be the text of one of the sheet's cells; when there is no
    /// memory to hold it apart meanwhile, nothing is read and ShtProgCellChangeDone() is told false.
    /// @return false only when @p atSelection is true and nothing is selected
    virtual bool ShtSheetFromBuffer(char* buffer, long length, bool atSelection, bool create);
    /// ShtSheetCopy(), then ShtSheetClear(true, false) if that succeeded.
    virtual void ShtSheetCut();
    /// Puts the selection into the clipboard as text. Beeps when nothing is selected, or it cannot be done.
    virtual void ShtSheetCopy();
    /// ShtSheetFromBuffer() with the clipboard's text, at the selection, creating in virtual mode alone. Beeps when
    /// nothing is selected.
    virtual void ShtSheetPaste();

    /// Inserts a blank row of the default height in front of row @p r, or makes the rows up to @p r. -1 is the first
    /// selected row, or the end when nothing is selected. The sheet is dirty then.
    virtual bool ShtRowAdd(short r);
    /// Removes row @p r; -1 removes the selected rows. The sheet is dirty then.
    /// @return false when there is no such row; true for -1 with nothing selected
    virtual bool ShtRowDel(short r);
    /// Bulk, but without busy cursor and without ShtProgCellChangeDone(): clears the row's cells.
    virtual void ShtRowClear(short r);
    /// Moves row @p from so that it becomes row @p to; beyond the last row is the last. The sheet is dirty then.
    /// @return false only for a number below 0
    virtual bool ShtRowMove(short from, short to);
    /// The row's heading.
    /// @return false, with null, 0 and null, when there is no such row
    virtual bool ShtRowHeadingGet(short r, char*& text, long& length, void*& data);
    /// Sets the row's heading, its text always as a copy. The heading is invalidated if text or data changed.
    virtual bool ShtRowHeadingSet(short r, char* text, long length, void* data);
    /// 16 bits that belong to the owner; 0 when there is no such row.
    virtual unsigned short ShtRowFlagsGet(short r);
    virtual bool ShtRowFlagsSet(short r, unsigned short flags);  ///< false when there is no such row
    /// As for rows. The cells of a column are inserted, removed and moved with its heading.
    virtual bool ShtColAdd(short c);
    virtual bool ShtColDel(short c);    ///< see ShtRowDel()
    virtual void ShtColClear(short c);  ///< see ShtRowClear()
    /// As ShtRowMove(). A row that ends between the two columns is filled up with blank cells first.
    virtual bool ShtColMove(short from, short to);
    virtual bool ShtColHeadingGet(short c, char*& text, long& length, void*& data);  ///< see ShtRowHeadingGet()
    virtual bool ShtColHeadingSet(short c, char* text, long length, void* data);     ///< see ShtRowHeadingSet()
    virtual unsigned short ShtColFlagsGet(short c);                                  ///< see ShtRowFlagsGet()
    virtual bool ShtColFlagsSet(short c, unsigned short flags);                      ///< see ShtRowFlagsSet()

    /// A cell's text, whether the cell holds its own copy, and what the owner attached. A missing cell is a blank one:
    /// true, null, 0, null. The text stays where it is until the cell changes, or columns are inserted, deleted or
    /// moved; those of headings until the heading changes.
    /// @return true
    virtual bool ShtCellGet(short r, short c, bool& copied, char*& text, long& length, void*& data);
    /// Sets a cell's text and data and makes it dirty. An edit in place of that cell is ended first.
    ///
    /// With @p copy the cell holds @p text up to its first NUL within @p length characters (negative: up to its NUL);
    /// otherwise it refers to the caller's characters, which have to outlive that. An empty text is referred to in
    /// either case. @p text may lie in the cell's own text. When there is no memory for the copy the cell has no text.
    /// @p update acts when text or data changed; then ShtCellShow() is called.
    virtual bool ShtCellSet(short r, short c, bool copy, char* text, long length, void* data, eShtCellUpdate update,
                            eShtCellShow showRow, eShtCellShow showCol);
    /// Scrolls, in each direction as told, unless the row (column) is fully visible. The row and the column are made,
    /// if need be; nothing is when both say ShtCellShowNone.
    /// @return false when the sheet has no rows or no columns, or what is to be shown cannot be made
    virtual bool ShtCellShow(short r, short c, eShtCellShow showRow, eShtCellShow showCol);
    /// A cell's mark, a character that is shown with it, and the number that belongs to it. Of a missing cell the mark
    /// is 0, and @p value stays as it was.
    /// @return true
    virtual bool ShtCellMarkGet(short r, short c, char& mark, int& value);
    /// Sets both, with what ShtCellSet() says of the last three.
    virtual bool ShtCellMarkSet(short r, short c, char mark, int value, eShtCellUpdate update, eShtCellShow showRow,
                                eShtCellShow showCol);
    virtual bool ShtCellMarkClear(short r, short c, eShtCellUpdate update, eShtCellShow showRow,
                                  eShtCellShow showCol);  ///< mark 0 and value 0
    virtual bool ShtCellDirtyGet(short r, short c);  ///< whether the cell was changed since it was last said not to be
    virtual bool ShtCellDirtySet(short r, short c, bool dirty);  ///< see ShtSheetDirtyGet()
    virtual bool ShtCellMultiLineGet(short r, short c);          ///< what ShtCellMultiLineSet() kept
    /// Whether the cell is edited with several lines; kept.
    virtual bool ShtCellMultiLineSet(short r, short c, bool multiLine);
    virtual bool ShtCellProtectGet(short r, short c);           ///< whether the cell is protected
    virtual bool ShtCellProtectSet(short r, short c, bool on);  ///< bulk operations pass over a protected cell
    virtual eShtCellAlign ShtCellAlignGet(short r, short c);    ///< how the text sits in the cell
    virtual bool ShtCellAlignSet(short r, short c, eShtCellAlign align);   ///< see ShtCellAlignGet()
    virtual unsigned short ShtCellFlagsGet(short r, short c);              ///< what ShtCellFlagsSet() kept
    virtual bool ShtCellFlagsSet(short r, short c, unsigned short flags);  ///< 16 bits that belong to the owner

    /// Hooks for the owner; they do nothing, and those with a result answer true. The first eight are called by whoever
    /// gives the sheet a window, when the user has done that.
    virtual void ShtUserCellChange(short r, short c);
    virtual void ShtUserSelect();                          ///< the user has selected
    virtual void ShtUserRightMouseDown(short r, short c);  ///< the right button went down over a cell
    virtual void ShtUserRightMouseUp(short r, short c);    ///< it went up
    virtual void ShtUserColMove(short from, short to);     ///< the user moves a column
    virtual void ShtUserColMoveDone();                     ///< the user has done moving columns
    virtual void ShtUserRowMove(short from, short to);     ///< the user moves a row
    virtual void ShtUserRowMoveDone();                     ///< the user has done moving rows
    /// A bulk operation has changed this cell; false stops it. The hook may change the sheet in every way.
    virtual bool ShtProgCellChange(short r, short c);
    virtual void ShtProgCellChangeDone(bool completed);  ///< the bulk operation has ended

    /// The height of a row, the width of a column, in the drawing surface's units; -1 is the band of the column
    /// headings (row headings). 0 when there is none.
    virtual short ShtRowSizeGet(short r);
    virtual bool ShtRowSizeSet(short r, short size);  ///< sizes below 0 are refused
    virtual short ShtColSizeGet(short c);             ///< see ShtRowSizeGet()
    virtual bool ShtColSizeSet(short c, short size);  ///< see ShtRowSizeSet()
    /// The first visible row and column; either pointer may be null.
    virtual void ShtScrollGet(short* r, short* c);
    /// Scrolls so that row @p r and column @p c are the first visible ones, as far as the sheet has them.
    virtual void ShtScrollSet(short r, short c);
    /// Where a cell lies in the client rectangle; -1 is the band of headings.
    /// @return false, with @p rect untouched, when none of it is within the client rectangle
    virtual bool ShtCellRectGet(short r, short c, LRCT* rect);
    /// The colour of protected cells and of the grid lines.
    virtual int ShtSheetProtectColourGet();
    virtual int ShtSheetGridLinesColourGet();  ///< see ShtSheetProtectColourGet()
    /// Editing a cell in place. Here it is only remembered which one: whoever gives the sheet a window overrides both
    /// to show the editor, and to take its text into the cell, and calls these.
    /// @return false when there is no such row or column, or the cell is protected
    virtual bool ShtEditBegin(short r, short c);
    /// Called by whoever ends the edit, the sheet's operations included. Those end it before they call, so that writing
    /// the cell from an override does not end it once more.
    virtual void ShtEditEnd();
    /// Whether a cell is being edited, and which; which one it was last when none is. Either pointer may be null.
    virtual bool ShtEditGet(short* r, short* c);

    /// Reads the settings and applies the font.
    void WinCreateDone() override;
    /// The sheet's place on the screen: in virtual mode it grows to fill it.
    void WinClientRectSet(LRCT* r) override;

private:
    // The cell to write, made if need be; null is told to the scroll bars already.
    kora::TShtCell* cellToWrite(short r, short c, const kora::SheetExtent& before);
    // What ShtCellSet() does where there is more to it than to store a short text.
    bool setAnyCell(short r, short c, bool copy, char* text, long length, void* data, eShtCellUpdate update,
                    eShtCellShow showRow, eShtCellShow showCol);
    template <class Change>
    bool changeCell(short r, short c, kora::SheetRedraw redrawBehind, Change change);
    bool setHeading(kora::SheetLine line, int n, char* text, long length, void* data);
    bool setFlags(kora::SheetLine line, int n, unsigned short flags);
    // What a writer does behind its change: invalidate the cell, and what is new; then tell the scroll bars.
    void redrawWritten(short r, short c, const kora::SheetExtent& before);
    void redrawGrown(const kora::SheetExtent& before);
    void updateGrown(const kora::SheetExtent& before);
    // In front of an operation on several cells.
    void endEdit();
    LRCT client();
    // Invalidates a range; -1 to -1 is the band of headings, otherwise -1 and kToEnd reach to that end.
    void redraw(const kora::SheetRange& range);
    void redrawLines(kora::SheetLine line, int first, int last);
    void redrawSheet();
    void updateScrollBar(kora::SheetLine line);
    void updateScrollBars();
    void scrollTo(int row, int col);
    // In virtual mode, to two screens from the first visible row (column) on.
    void grow(kora::SheetLine line);
    short sizeOf(kora::SheetLine line, int n);
    bool setSize(kora::SheetLine line, int n, short size);
    bool addLine(kora::SheetLine line, int n);
    bool deleteLines(kora::SheetLine line, int n);
    bool moveLine(kora::SheetLine line, int from, int to);
    void clearLine(kora::SheetLine line, int n);
    void fill(kora::SheetLine along, bool headingsToo);
    // One cell of a bulk operation; the answer is whether to go on.
    bool bulkSet(int r, int c, const std::optional<std::string>& text);
    bool bulkClear(int r, int c);
    bool askHook(int r, int c);
    // The selected rows and columns, where it is open those that exist; false without a selection.
    bool selectedRange(kora::SheetRange& range);

    kora::SheetState* state_;
};

/// Releases a buffer that ShtSheetToBuffer() made; null is allowed.
KORA_API void ShtBufferFree(char* buffer);
