#pragma once

#include <kora/Utl.h>

#include <string>
#include <vector>

namespace kora::drawings {

/// A drawing, in whole units and in the library's own points and rectangles. Styles are classes of the style sheet in
/// Svg.cpp, one or more with blanks between.
class Svg {
public:
    Svg(int width, int height);

    /// Has what follows stand this far from the drawing's top left corner, at 10 to 100 percent of its size.
    void moveTo(LPNT origin, int percent = 100);
    void line(LPNT a, LPNT b, const char* style);
    void arrow(LPNT from, LPNT to);
    /// Against the clock about the drawing's origin, a quarter turn at the most.
    void turnArrow(LPNT from, LPNT to, std::int32_t radius);
    void rect(const LRCT& r, const char* style);
    void polygon(const std::vector<LPNT>& corners, const char* style);
    /// The ellipse in a rectangle of even sizes.
    void ellipse(const LRCT& r, const char* style);
    /// The part of the ellipse that lies in a polygon.
    void ellipseWithin(const LRCT& r, const std::vector<LPNT>& corners, const char* style);
    void dot(LPNT p, const char* style);
    void cross(LPNT p, const char* style);
    /// @p p is on the base line: at its beginning, or where the style has "mid" or "end".
    void text(LPNT p, const std::string& text, const char* style);

    /// The file's text; nothing is drawn after it was asked for.
    std::string file();

private:
    void element(const std::string& text, const char* style);

    std::string text_;
    int clips_ = 0;
    bool moved_ = false;
};

}  // namespace kora::drawings
