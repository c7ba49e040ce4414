#pragma once

#include <kora/Kora.h>
#include <kora/Tmr.h>
#include <kora/Tree.h>
#include <kora/Utl.h>

class TskKoraModule;

/// @file
/// Colours, fonts by description, windows as far as they are there without a window system, and the clipboard.
///
/// A colour value is one signed 32-bit number. Bit 24 (0x01000000) belongs to whoever holds the value; every operation
/// here ignores it. With it cleared:
///
///     0x80bbggrr    that red, green and blue
///     1 to 21       an entry of the palette
///     0xAA000000    foreground: the window's own foreground colour setting
///     0xAA000001    background: the window's own background colour setting
///     0xAA000002    none: nothing is painted
///     0             unset; no valid colour
///
/// An RGB value is what the platform uses: red in the low byte, green in the next, blue in the third.
///
/// The palette, with the names by which texts call its entries:
///
///      1 red    4 cyan      7 black    10 ltgray   13 ltblue         16 dkblue    19 violet
///      2 green  5 magenta   8 dkgray   11 white    14 ltgreen        17 dkgreen   20 orange
///      3 blue   6 yellow    9 gray     12 vltgray  15 ltred or pink  18 dkred     21 xltgray

/// The style bits of a font.
enum eWinFontStyle : int { WinFontBold = 1, WinFontItalic = 2, WinFontFrame = 8, WinFontShadow = 16, WinFontRule = 32 };

/// A font by description: a value that is copied and compared freely.
class KORA_API WinFont {
public:
    /// No face (whoever draws takes its usual one), no style, 12 points.
    WinFont();

    const CString& WinFontFaceGet() const;  ///< empty for no face
    void WinFontFaceSet(const char* face);  ///< null is no face
    int WinFontStyleGet() const;            ///< bits of eWinFontStyle
    void WinFontStyleSet(int style);        ///< bits of eWinFontStyle; others are kept and mean nothing here
    int WinFontSizeGet() const;             ///< in points
    void WinFontSizeSet(int points);        ///< in points

    /// True when face (letter case included), style and size are the same.
    bool operator==(const WinFont& other) const;

private:
    CString face_;
    int style_ = 0;
    int points_ = 12;
};

/// The two scroll bars of a window.
enum eWinScrollBar : int { WinScrollBarVertical = 0, WinScrollBarHorizontal = 1 };

/// What is drawn upon: colours, font, measuring, redrawing and the cursor. Complete without a window: a host that has
/// windows overrides the operations, in every other program they keep what was set and there is nothing to redraw.
///
/// A pointer may be null unless it says otherwise; the operation then does nothing.
///
/// Slot order is the interface: new operations go at the end.
class KORA_API WinSurface {
public:
    /// Foreground black (7), background white (11), an empty client rectangle, a WinFont() as its font.
    WinSurface();
    virtual ~WinSurface();
    WinSurface(const WinSurface&) = delete;
    WinSurface& operator=(const WinSurface&) = delete;

    /// The RGB value in which this window paints @p colour: foreground and background stand for the window's settings,
    /// each read through its slot; then as the free WinMapColour().
    ///
    /// With @p monochrome, for output of one bit, pure white stays white and everything else is black.
    virtual unsigned long WinMapColour(int colour, bool monochrome);
    /// Sets the foreground (pen) colour: any colour value. A symbolic one is not replaced a second time.
    virtual void WinForeColourSet(int colour);
    virtual void WinBackColourSet(int colour);  ///< the same for the background
    virtual void WinClientRectSet(LRCT* r);     ///< sets the client rectangle
    virtual void WinClientRectGet(LRCT* r);     ///< copies the client rectangle; empty at first
    virtual int WinForeColourGet();             ///< as it was set
    virtual int WinBackColourGet();             ///< as it was set
    /// Selects the font to draw and measure with, as a copy. The one before stays when memory runs out.
    virtual void WinFontSet(WinFont* font);
    /// Copies the selected font and answers @p font; null, with @p font as it was, when memory runs out.
    virtual WinFont* WinFontGet(WinFont* font);
    /// Measures a text in the selected font: the width of its widest line in size->h, the height of all of them in
    /// size->v. A line ends with CR, LF or CR LF; behind an end that ends the text there is no further line. There
    /// is at least one line; null is an empty text. A negative @p length is that of a text that ends with a NUL.
    ///
    /// Without a window each character is 100 wide and a line 200 high at 12 points, other sizes in proportion, the
    /// whole text rounded down; a size of 0 or less measures nothing.
    ///
    ///     12 points    ""         0 by 200        10 points    "ab"      166 by 166
    ///     12 points    "ab\nc"  200 by 400        12 points    "ab\n"    200 by 200
    virtual void WinTextMeasure(const char* text, long length, LPNT* size);
    /// Marks a part of the client area as to be redrawn; null is everything.
    virtual void WinInvalidate(LRCT* r);
    /// Redraws at once what is marked.
    virtual void WinUpdateNow();
    /// Shows the cursor of that resource number of the library; 32512 and above are the system's, 32512 the arrow. An
    /// unknown number changes nothing. While a busy cursor turns, the library's are shown 25 times a second at most.
    virtual void WinCursorSet(short cursor);
    /// Keeps the numbers of the cursors of which an animated one consists and shows the first, through WinCursorSet()
    /// as the next two operations do.
    virtual void WinBusyCursorStart(const short* cursors, short count);
    /// Shows the next of them, round and round; nothing when none were started.
    virtual void WinBusyCursorNext();
    /// Forgets them and shows the arrow.
    virtual void WinBusyCursorStop();

private:
    int foreColour_ = 7;
    int backColour_ = 11;
    LRCT clientRect_ = {0, 0, 0, 0};
    WinFont font_;
    std::vector<short> busyCursors_;
    std::size_t busyCursor_ = 0;
    std::uint32_t turnTick_ = 0;
};

/// A window: a surface with a place in its parent, scroll positions, an idle timer and a place in the tree of windows.
/// The surface is its first base, so that the slots of its operations come first and stay where they are.
///
/// A window owns its children: it deletes them when it is destroyed, first to last, each without a parent by then. One
/// that stands on the stack or is a member must therefore be destroyed before its parent, which it leaves then.
///
/// Its timer is a normal idle timer, stopped at first; the library's exit stops it and does not delete the window.
class KORA_API WinWindow : public WinSurface, public TmrTimer, public TreeElement {
public:
    /// A window without module and parent.
    WinWindow();
    /// Attaches itself to @p parent, when there is one, as its last child through ChildAttach(). Nothing is created
    /// yet, and the window is hidden.
    WinWindow(TskKoraModule* module, WinWindow* parent);
    ~WinWindow() override;

    virtual TskKoraModule* WinModuleGet();  ///< the module given to the constructor; null for none
    /// The window whose child this one is; null when it is nobody's, or not a window's.
    virtual WinWindow* WinParentGet();
    /// Makes the window of a resource's description and calls WinCreateDone(). Without a window there is nothing to
    /// make and the answer is true.
    virtual bool WinCreate(short resourceId);
    /// Called once the window is there; for derived classes.
    virtual void WinCreateDone();
    /// Whether the window is shown, as far as it depends on itself.
    virtual bool WinVisibleGet();
    virtual void WinShow();  ///< shows the window
    virtual void WinHide();  ///< hides the window
    /// Places the window within its parent: the client rectangle becomes one of that size at (0, 0), through
    /// WinClientRectSet().
    virtual void WinMove(LRCT* r);
    /// Sets over how many lines or columns a scroll bar goes, and how many of them are seen at once. Nothing is
    /// checked, the position included. A bar of another number keeps nothing and answers 0.
    virtual void WinScrollRangeSet(eWinScrollBar bar, long count, long page);
    /// See WinScrollRangeSet(); either pointer may be null.
    virtual void WinScrollRangeGet(eWinScrollBar bar, long* count, long* page);
    virtual void WinScrollPosSet(eWinScrollBar bar, long position);  ///< scrolls to a line (column)
    virtual long WinScrollPosGet(eWinScrollBar bar);                 ///< the first line (column) that is seen

    /// A window that is attached here has this one for its parent, and one that is detached has none: unlike other
    /// elements, windows leave the parent that they name.
    bool ChildDetach(TreeElement* e) override;
    void ChildAttach(TreeElement* e) override;

private:
    struct ScrollBar {
        long count = 0, page = 0, position = 0;
    };
    ScrollBar* scrollBar(eWinScrollBar bar);

    TskKoraModule* module_ = nullptr;
    bool visible_ = false;
    ScrollBar scrollBars_[2];
};

/// @name The clipboard
/// The system's on Windows; on POSIX each process has one of its own.
/// @{

/// Empties the clipboard, for which it must not be open: opens and closes it by itself. False when it could not be had.
KORA_API bool ClpClear();
/// Opens the clipboard, for writing or to read it; false when it is open already or another program has it. What it
/// holds stays there. Must be closed soon: until then no other program gets at it.
KORA_API bool ClpOpen(bool forWriting);
/// Puts a text on the clipboard, which must be open for writing; whoever does not want what others left there beside it
/// calls ClpClear() first. A clipboard text ends with a NUL, so nothing is kept from the first NUL of @p text on. Null
/// is an empty text; a negative @p length is that of a text that ends with a NUL.
/// @return false, with nothing changed, when the clipboard is not open for writing or memory ran out
KORA_API bool ClpTextPut(const char* text, long length);
/// Whether a text is on the clipboard, which need not be open.
KORA_API bool ClpTextAvailable();
/// Copies the text on the clipboard, which must be open, in whichever way. The caller releases it with ClpTextFree(); a
/// NUL stands behind it.
/// @return false, with null and 0, when the clipboard is not open, holds no text, or memory ran out
KORA_API bool ClpTextGet(char*& text, long& length);
KORA_API void ClpTextFree(char* text);  ///< null is no text
/// Closes the clipboard; one that is not open stays as it is.
KORA_API void ClpClose();
/// @}

/// Whether @p colour is a direct, palette or symbolic colour. 0 (unset) is none.
KORA_API bool WinIsValidColour(int colour);

/// The RGB value of @p colour where no window gives the symbolic colours a meaning: background and none are white,
/// foreground, unset and every invalid value are black.
KORA_API unsigned long WinMapColour(int colour);

/// The colour value of a name, without regard to case: a name of the palette, "foreground", "background", "none", or
/// "netset" for 0. Otherwise the text is read as "0x", in small letters, and at most 24 bits of hexadecimal digits,
/// blue, green, red from the left; what stands behind the digits is not looked at.
///
///     "PINK"        15
///     "0x0000ff"    0x800000FF, red
///     "0x1000000"   0, as every other text and null
KORA_API int WinGetColourByName(const char* name);

/// The palette index nearest to @p rgb by |red| + |green| + |blue| of the difference; of equally near ones the lowest.
KORA_API int WinGetClosestQzColor(unsigned long rgb);

/// The text of a colour value, from which IniGetColor() reads exactly that value back: the name of a palette entry, of
/// a symbolic colour or of 0, where there is one; otherwise "0x" and the value in eight hexadecimal digits, tag
/// included. Every int has a text, whether it is a valid colour or not. Names read back through WinGetColourByName()
/// too; hexadecimal values do not, since that one takes the 24 bits below the tag and adds it.
///
///     15            ltred, the first of its two names      0x800000FF    0x800000FF, red without a name
///     0xAA000002    none                                   0x0100000F    0x0100000F, since names have no bit 24
///     0             netset                                 22            0x00000016, no valid colour
///
/// Empty when memory ran out.
KORA_API CString WinColourToText(int colour);
