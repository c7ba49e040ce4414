#pragma once

#include <kora/Kora.h>

/// @file
/// Points and rectangles, anchors, rotation, hits, lengths and free areas, what kind of system this is, and the beep.
/// docs/geometry.md shows them in drawings.
///
/// Coordinates are Qz units, 1008 to an inch and 397 to a centimetre; v grows downwards and h to the right. Every
/// 32-bit value is a coordinate: what a result cannot hold wraps to 32 bits, and comparisons never wrap.
///
/// Outputs may be written over inputs. No pointer may be null.

/// A point: vertical first, then horizontal.
struct LPNT {
    std::int32_t v;  ///< downwards, in Qz units as a rule
    std::int32_t h;  ///< to the right
};

/// A rectangle. Empty when top >= bottom or left >= right.
struct LRCT {
    std::int32_t top;     ///< the upper edge, in Qz units as a rule
    std::int32_t left;    ///< the left edge
    std::int32_t bottom;  ///< the lower edge
    std::int32_t right;   ///< the right edge
};

// Modules hold and store both as they lie in memory.
static_assert(sizeof(LPNT) == 8);
static_assert(sizeof(LRCT) == 16);

/// The reference points of a rectangle. Halves are rounded towards zero.
enum eUtlAnchor : std::int32_t {
    UtlAnchorCenter,       ///< 0, (top + bottom) / 2 and (left + right) / 2; any other value counts as this one
    UtlAnchorLeft,         ///< 1, middle of the left side
    UtlAnchorTop,          ///< 2, middle of the top side
    UtlAnchorRight,        ///< 3, middle of the right side
    UtlAnchorBottom,       ///< 4, middle of the bottom side
    UtlAnchorTopLeft,      ///< 5
    UtlAnchorTopRight,     ///< 6
    UtlAnchorBottomRight,  ///< 7
    UtlAnchorBottomLeft    ///< 8
};

/// How a picture is turned or mirrored when it is duplicated.
///
///     0   a quarter turn against the clock, UtlPntRotate()'s 90     left side to the bottom
///     1   a quarter turn with the clock, UtlPntRotate()'s 270       left side to the top
///     2   a half turn                                               left side to the right
///     3   as it is
///     4-7 not used: every anchor becomes the centre
///     8   mirrored across the diagonal from bottom-left to top-right: left and bottom change places
///     9   mirrored across the diagonal from top-left to bottom-right: left and top change places
///     10  left and right change places
///     11  top and bottom change places
enum eUtlOrientation : std::int32_t {
    UtlOrientation0 = 0,
    UtlOrientationRotate90 = 0,
    UtlOrientationRotate270 = 1,
    UtlOrientationRotate180 = 2,
    UtlOrientationUnchanged = 3,
    UtlOrientationUnused4 = 4,
    UtlOrientationUnused5 = 5,
    UtlOrientationUnused6 = 6,
    UtlOrientationUnused7 = 7,
    UtlOrientationMirrorRising = 8,
    UtlOrientationMirrorFalling = 9,
    UtlOrientationMirrorLeftRight = 10,
    UtlOrientationMirrorTopBottom = 11
};

/// The length unit of a text. Any other value means centimetres.
enum eUtlUnit : std::int32_t {
    UtlUnitPreferred,  ///< the one of UtlGetPreferredUnit()
    UtlUnitInch,       ///< 1008 Qz units, " in"
    UtlUnitCm          ///< 397 Qz units, " cm"
};

/// A rectangle that is known or not yet known, for bounds that are gathered piece by piece.
class KORA_API UtlRect : public LRCT {
public:
    bool valid;  ///< whether the rectangle is known

    /// All zero and not valid.
    UtlRect();
    UtlRect(const UtlRect&);
    UtlRect& operator=(const UtlRect&);  ///< copies the rectangle and whether it is known
    /// Takes the rectangle over, empty or not, and is valid.
    UtlRect& operator=(LRCT& rect);

    /// Moves the left and right sides inwards by @p dh, top and bottom by @p dv, each taken with 32 bits. A rectangle
    /// that is not valid stays as it is.
    void Inset(long dh, long dv);
    /// Becomes the rectangle between two opposite corners, in whatever order, and valid.
    void PntToRect(LPNT a, LPNT b);
    /// All zero, and valid: the empty rectangle is the known one.
    void SetEmpty();
    /// With false, clears rectangle and flag; with true, sets the flag alone.
    void SetValid(bool valid);
    /// Grows to the box around both, or takes @p rect over when this one is not valid. An empty @p rect is ignored;
    /// whether this one is empty does not matter.
    void Union(LRCT& rect);
    /// The same, but what is ignored is a @p rect that is not valid: an empty one takes part.
    void Union(UtlRect& rect);
};

static_assert(sizeof(UtlRect) == 20);

/// @name Rectangles
/// @{

/// True when all fields are equal, or both rectangles are empty, wherever they are.
KORA_API bool UtlRectIsEqual(LRCT* a, LRCT* b);
/// Writes the common part and answers whether it is not empty. Of rectangles that are apart the part comes out inside
/// out, and is written all the same.
KORA_API bool UtlRectIntersect(LRCT* out, LRCT* a, LRCT* b);
/// What changes when @p b takes the place of @p a: the pieces of @p a outside @p b, then those of @p b outside @p a.
/// Rectangles without a common part are written as they are, @p a first.
///
/// The pieces of one rectangle are those to the left, to the right, above and below the other, in this order, as far as
/// that side of the other lies strictly inside. Each spans the rectangle's full height or width, so pieces overlap at
/// the corners; callers that invert them count on the order.
///
/// @param out  room for 8 rectangles
/// @return how many were written: 0 for equal rectangles, 2 for those that are apart, at most 8
KORA_API short UtlRectIntersectInvert(LRCT out[8], LRCT* a, LRCT* b);
/// The box around both. An empty one takes no part; all zero when both are empty.
KORA_API void UtlRectUnion(LRCT* out, LRCT* a, LRCT* b);
KORA_API void UtlRectUnion(LRCT& out, LRCT a, LRCT b);
/// The box around both, empty or not.
KORA_API void UtlRectUnionEmpties(LRCT* out, LRCT* a, LRCT* b);

/// How many cells of the size of @p cell lie side by side and below each other in @p outer, one that is partly covered
/// included. 0 and 0 when either is empty. Only the low 16 bits of a count are kept.
KORA_API void UtlRectSubRectCount(LRCT* outer, LRCT* cell, short* across, short* down);
/// Moves @p cell to place @p index of the grid in @p outer: down the first column, then down the next. Its size stays.
///
///     0 2 4
///     1 3 5
///
/// An index below 0 counts back from the first cell by the same division, truncated, to places outside @p outer.
///
/// @return false, with the first cell written, for an index at or beyond the product of the counts, and where a count
///         is 0, be it that a rectangle is empty or that nothing is left of it in 16 bits
KORA_API bool UtlRectSubRectGet(LRCT* outer, LRCT* cell, short index);

/// @}

/// @name Anchors
/// @{

/// The point of @p r that the anchor names.
KORA_API void UtlRectAnchorToPnt(LPNT* out, LRCT* r, eUtlAnchor anchor);
/// Moves @p r so that its anchor @p to comes to lie where @p from was. Answers @p out.
KORA_API LRCT* UtlRectAnchorChange(LRCT* out, LRCT* r, eUtlAnchor from, eUtlAnchor to);
/// The anchor after a turn by 90, 180 or 270 degrees in the sense of UtlPntRotate(): 90 takes left to bottom, bottom to
/// right, right to top and top to left, and the corners likewise. Any other angle leaves the anchor and is not
/// reported; a value that is no anchor stays too.
KORA_API eUtlAnchor UtlAnchorRotate(eUtlAnchor anchor, short angle);
KORA_API void UtlAnchorRotate(eUtlAnchor* out, eUtlAnchor anchor, short angle);
/// The anchor of a picture that is duplicated in an orientation.
///
/// @param opposite  With false, the anchor goes where the orientation takes it. With true it stays or becomes the
///                  opposite one: 0 and 3 keep it, 1 and 2 take the opposite side or corner, 8 and 11 exchange top and
///                  bottom, 9 and 10 exchange left and right.
/// @return the centre for the centre, for the orientations 4 to 7, for a value that is no anchor, and for an
///         orientation outside 0 to 11, which is filed with ERR() (level 0, module 1, file 38, location 1856)
KORA_API eUtlAnchor UtlAnchorRotate(eUtlAnchor anchor, eUtlOrientation orientation, bool opposite);

/// @}

/// @name Rotation and arcs
/// @{

/// The point @p p turned about @p centre by 0, 90, 180 or 270 degrees, against the clock as one sees it: 90 takes a
/// point on the right to the top. Any other angle is filed with ERR() (level 0, module 1, file 38, location 1920), and
/// the point stays.
KORA_API void UtlPntRotate(LPNT* out, LPNT p, LPNT centre, short angle);
/// The rectangle between two opposite corners of @p r, each turned with UtlPntRotate(), so a wrong angle is filed
/// twice. What comes out is never inside out, whatever the angle.
KORA_API void UtlRectRotate(LRCT* out, LRCT* r, LPNT centre, short angle);
/// Where an arc of the ellipse in @p r is cut, as points on the border of @p r. Angles are whole degrees, with the
/// clock from the middle of the top side: 45 is the top right corner whatever the shape of @p r, 90 the middle of the
/// right side.
///
/// @param extent      360 or more, and less than -359, count as 360
/// @param endPoint    the point at start + extent
/// @param startPoint  the point at start
///
/// Angles are reckoned in 16 bits. Sides are divided by a table of ten-thousandths, which is not quite symmetric:
/// drawings are kept with the points that it gives.
KORA_API void UtlArcAnglesToPoints(LRCT& r, short start, short extent, LPNT& endPoint, LPNT& startPoint);

/// @}

/// @name Lines and roots
/// @{

/// Whether @p p is on the line from @p a to @p b, drawn with a pen of some width.
///
/// The pen reaches @p tolerance to both sides, or, when not @p centred, twice as far to the side of growing
/// coordinates. It is measured along v, and along h where the line is steeper than 45 degrees; borders count.
///
///     one point            a square of the tolerance to all sides, whose lower and right borders do not count
///     horizontal, vertical between the ends, which count
///     oblique              as if the line went on for ever: no end is looked at. Callers that want the ends test the
///                          box around the line first.
///
/// @param tolerance  taken with 32 bits; below 0 nothing is hit
KORA_API bool UtlLineHitTest(LPNT a, LPNT b, LPNT p, long tolerance, bool centred);
/// The square root rounded down; 0 for what is below 1.
KORA_API short UtlSqrtFloor(short n);

/// @}

/// @name Lengths
/// All reckoning is in single precision, the same on both platforms.
/// @{

/// The user's unit: entry LengthUnit of section "System" of the main profile, UtlUnitInch for "inch" without regard to
/// case and where there is no entry, UtlUnitCm for everything else. It is read at the first call and stays for the life
/// of the process.
KORA_API eUtlUnit UtlGetPreferredUnit();
/// The preferred unit's name, string 1279 ("Inch") or 1280 ("cm") of the library. One text, written anew at every call;
/// empty when there is no such string.
KORA_API const char* UtlGetPreferredUnitText();
/// Writes a length with up to three decimals, none of them a zero at the end, and the unit. @p out stays as it was when
/// memory ran out.
///
///     1008, inches    1 in          -1260, inches    -1.25 in
///     0, inches       0 in            397, cm         1 cm
KORA_API void UtlQzUnitsToString(int value, CString& out, eUtlUnit unit);
/// Reads a length: blanks, a number of digits and points, blanks, a unit, blanks. The unit is a double quote, in, in.
/// or inch, or cm or cm., without regard to case; where there is none @p unit is meant. @p text stays as it is.
///
///     2.5 cm    993           1.2.3 in    1210, the number ends at the second point
///     1"        1008          1 ft, -1, . and an empty text: false
///
/// A half is added and the fraction cut off, which rounds to the nearest as far as single precision reaches: results
/// from 2^23 on may be off by what it does not hold. They wrap at 32 bits; from 2^63 on they are 0. A number too small
/// for single precision is 0.
///
/// @return false, with @p value as it was, when there is no number or no such unit, and for a length too large for
///         single precision
KORA_API bool UtlStringToQzUnits(CString& text, int& value, eUtlUnit unit);

/// @}

/// A rectangle as the platform has it: horizontal first.
struct UtlPlatformRect {
    std::int32_t left;    ///< in pixels as a rule
    std::int32_t top;     ///< in pixels as a rule
    std::int32_t right;   ///< in pixels as a rule
    std::int32_t bottom;  ///< in pixels as a rule
};
static_assert(sizeof(UtlPlatformRect) == 16);

namespace kora {
class FreeArea;
}

/// A free area: where there is still room, and where a box would go.
///
/// The area is a list of rectangles, its nodes, in Qz units or any other. They may overlap: what a piece taken out
/// leaves of a node are the largest rectangles that remain free, not a partition, so whatever fits beside the pieces
/// fits into one of the nodes.
///
/// Add() and Sub() put nodes in front of the others, and the first node wins wherever two are equally good. Equal and
/// contained nodes are kept, as are empty ones and those turned inside out. Sub() takes time for the nodes near its
/// area, GetClosest() and GetLargest() look at every node.
///
/// Arguments are taken as 32 bits whatever the width of a long. Sizes, areas and distances are exact for all of them;
/// only a box of negative size can have a place and a distance that wrap.
///
/// A copy is shallow: both then stand for the same nodes, and what is done through one is seen through the other. The
/// nodes go with the last of them. A region that has never held a node has nothing to share, and its copy goes its own
/// way. Regions that share are used by one thread at a time.
///
/// When memory runs out, free area that cannot be kept is lost without a word: room may then be missing, but nothing
/// that was taken out is ever reported free.
class KORA_API UtlRectRegion {
public:
    /// No free area; allocates nothing.
    UtlRectRegion();
    ~UtlRectRegion();
    UtlRectRegion(const UtlRectRegion& other);             ///< a shallow copy
    UtlRectRegion& operator=(const UtlRectRegion& other);  ///< becomes a shallow copy

    /// Puts a node in front, whatever the area holds already.
    void Add(LRCT& r);
    void Add(UtlPlatformRect& r);
    void Add(long left, long top, long right, long bottom);

    /// Takes an area out. Each node that overlaps it (a common edge is not enough), from the first to the last, is
    /// replaced by what is left of it: the parts above, left of, below and right of the area, each put in front in this
    /// order. Those above and below are as wide as the node, those at the sides as high.
    void Sub(LRCT& r);
    void Sub(UtlPlatformRect& r);
    void Sub(long left, long top, long right, long bottom);

    /// Finds the place for a box of @p width by @p height whose centre is nearest to the point (@p h, @p v), and writes
    /// the box there to @p r. Where the box fits nowhere, @p r becomes the node of GetLargest().
    /// @return false when it fits nowhere and every node is empty; @p r is left alone.
    bool GetClosest(LRCT& r, long width, long height, long h, long v);
    bool GetClosest(UtlPlatformRect& r, long width, long height, long h, long v);

    /// Writes the node of largest area to @p r.
    /// @return false when there is no node, or only empty ones; @p r is left alone.
    bool GetLargest(LRCT& r);
    bool GetLargest(UtlPlatformRect& r);

private:
    kora::FreeArea* area_;  // null until there is a node; counts who shares it
};

static_assert(sizeof(UtlRectRegion) == sizeof(void*));

/// The kind of system the library runs on: 3 on Windows, 0 on POSIX.
KORA_API int UtlOS();

/// The sound that tells the user that something cannot be done, by the presenter of Err.h: its Beep().
KORA_API void UtlBeep();
