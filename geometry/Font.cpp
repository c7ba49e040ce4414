#include <kora/Win.h>

WinFont::WinFont() = default;

const CString& WinFont::WinFontFaceGet() const { return face_; }
void WinFont::WinFontFaceSet(const char* face) {
    try {
        face_ = face ? face : "";
    } catch (...) {
        face_.clear();
    }
}

int WinFont::WinFontStyleGet() const { return style_; }
void WinFont::WinFontStyleSet(int style) { style_ = style; }

int WinFont::WinFontSizeGet() const { return points_; }
void WinFont::WinFontSizeSet(int points) { points_ = points; }

bool WinFont::operator==(const WinFont& other) const {
    return face_ == other.face_ && style_ == other.style_ && points_ == other.points_;
}
