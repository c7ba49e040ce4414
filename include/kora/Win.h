#pragma once

#include <kora/Kora.h>
#include <kora/Utl.h>

/// @file
/// Colours, fonts by description, and what stands of the window class.
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

    const CString& WinFontFaceGet() const;
    void WinFontFaceSet(const char* face);  ///< null is no face
    int WinFontStyleGet() const;
    void WinFontStyleSet(int style);  ///< bits of eWinFontStyle; others are kept and mean nothing here
    int WinFontSizeGet() const;       ///< in points
    void WinFontSizeSet(int points);

    /// True when face (letter case included), style and size are the same.
    bool operator==(const WinFont& other) const;

private:
    CString face_;
    int style_ = 0;
    int points_ = 12;
};

/// What timers, trees, colours and sheets need of a window, complete without one: a host that has windows overrides
/// the operations, in every other program they keep what was set.
///
/// Slot order is the interface: new operations go at the end.
class KORA_API WinWindow {
public:
    /// Foreground black (7), background white (11), an empty client rectangle.
    WinWindow();
    virtual ~WinWindow();
    WinWindow(const WinWindow&) = delete;
    WinWindow& operator=(const WinWindow&) = delete;

    /// The RGB value in which this window paints @p colour: foreground and background stand for the window's settings,
    /// each read through its slot; then as the free WinMapColour().
    ///
    /// With @p monochrome, for output of one bit, pure white stays white and everything else is black.
    virtual unsigned long WinMapColour(int colour, bool monochrome);
    /// Sets the foreground (pen) colour: any colour value. A symbolic one is not replaced a second time.
    virtual void WinForeColourSet(int colour);
    virtual void WinBackColourSet(int colour);
    /// Sets the client rectangle. Null changes nothing, here and in WinClientRectGet().
    virtual void WinClientRectSet(LRCT* r);
    virtual void WinClientRectGet(LRCT* r);
    virtual int WinForeColourGet();
    virtual int WinBackColourGet();

private:
    int foreColour_ = 7;
    int backColour_ = 11;
    LRCT clientRect_ = {0, 0, 0, 0};
};

/// Whether @p colour is a direct, palette or symbolic colour. 0 (unset) is none.
KORA_API bool WinIsValidColour(int colour);

/// The RGB value of @p colour where no window gives the symbolic colours a meaning: background and none are white,
/// foreground, unset and every invalid value are black.
KORA_API unsigned long WinMapColour(int colour);

/// The colour value of a name, without regard to case: a name of the palette, "foreground", "background", "none", or
/// "netset" for 0. Otherwise the text is read as "0x" and at most 24 bits of hexadecimal digits, blue, green, red from
/// the left; what stands behind the digits is not looked at.
///
///     "PINK"        15
///     "0x0000ff"    0x800000FF, red
///     "0x1000000"   0, as every other text and null
KORA_API int WinGetColourByName(const char* name);

/// The palette index nearest to @p rgb by |red| + |green| + |blue| of the difference; of equally near ones the lowest.
KORA_API int WinGetClosestQzColor(unsigned long rgb);
