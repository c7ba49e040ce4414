#include <kora/Win.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "geometry/ColourValue.h"
#include "platform/Platform.h"
#include "platform/Ticks.h"
#include "strings/Guarded.h"

namespace {

constexpr short kArrowCursor = 32512;
constexpr std::uint32_t kTurnMilliseconds = 40;

// The grid that stands for a font, at its usual size.
constexpr std::uint64_t kCharacterWidth = 100, kLineHeight = 200;
constexpr std::uint64_t kUsualPoints = 12;

// `count` characters or lines of the grid at a size; what does not fit is the largest coordinate.
std::int32_t gridLength(std::size_t count, std::uint64_t unit, int points) {
    constexpr std::uint64_t kMost = std::numeric_limits<std::int32_t>::max();
    if (points <= 0) return 0;
    // Beyond kMost of either the result is too large in any case.
    const std::uint64_t scaled = std::min<std::uint64_t>(count, kMost) * static_cast<std::uint64_t>(points);
    return static_cast<std::int32_t>(std::min(std::min(scaled, kMost) * unit / kUsualPoints, kMost));
}

}  // namespace

WinSurface::WinSurface() = default;
WinSurface::~WinSurface() = default;

unsigned long WinSurface::WinMapColour(int colour, bool monochrome) {
    using namespace kora;
    const std::uint32_t symbol = static_cast<std::uint32_t>(colour) & ~kColourFlag;
    if (symbol == kForeground) colour = WinForeColourGet();
    if (symbol == kBackground) colour = WinBackColourGet();
    const unsigned long rgb = ::WinMapColour(colour);
    if (monochrome && rgb != kWhite) return kBlack;
    return rgb;
}

void WinSurface::WinForeColourSet(int colour) { foreColour_ = colour; }
void WinSurface::WinBackColourSet(int colour) { backColour_ = colour; }

void WinSurface::WinClientRectSet(LRCT* r) {
    if (r) clientRect_ = *r;
}
void WinSurface::WinClientRectGet(LRCT* r) {
    if (r) *r = clientRect_;
}

int WinSurface::WinForeColourGet() { return foreColour_; }
int WinSurface::WinBackColourGet() { return backColour_; }

void WinSurface::WinFontSet(WinFont* font) {
    if (font) kora::guarded([&] { font_ = *font; });
}

WinFont* WinSurface::WinFontGet(WinFont* font) {
    return font && kora::guarded([&] { *font = font_; }) ? font : nullptr;
}

void WinSurface::WinTextMeasure(const char* text, long length, LPNT* size) {
    if (!size) return;
    std::size_t widest = 0, lines = 0;
    const char* place = text ? text : "";
    const char* const end = place + (!text ? 0 : length < 0 ? std::strlen(text) : static_cast<std::size_t>(length));
    do {
        const char* const line = place;
        while (place != end && *place != '\r' && *place != '\n') ++place;
        widest = std::max(widest, static_cast<std::size_t>(place - line));
        ++lines;
        if (place != end && *place++ == '\r' && place != end && *place == '\n') ++place;
    } while (place != end);
    const int points = font_.WinFontSizeGet();
    size->h = gridLength(widest, kCharacterWidth, points);
    size->v = gridLength(lines, kLineHeight, points);
}

// Without a window there is nothing to redraw.
void WinSurface::WinInvalidate(LRCT*) {}
void WinSurface::WinUpdateNow() {}

void WinSurface::WinCursorSet(short cursor) {
    // Work turns an animated cursor once for each row or cell, which may take less time than the system takes to show
    // one turn.
    const bool turn = cursor < kArrowCursor;
    const std::uint32_t now = turn ? kora::platform::tickCount() : 0;
    if (turn && !busyCursors_.empty() && now - turnTick_ < kTurnMilliseconds) return;
    turnTick_ = now;
    kora::platform::showCursor(cursor);
}

void WinSurface::WinBusyCursorStart(const short* cursors, short count) {
    busyCursors_.clear();
    busyCursor_ = 0;
    if (!cursors || count <= 0) return;
    WinCursorSet(cursors[0]);
    // Without memory that one alone is shown.
    kora::guarded([&] { busyCursors_.assign(cursors, cursors + count); });
}

void WinSurface::WinBusyCursorNext() {
    if (busyCursors_.empty()) return;
    if (++busyCursor_ == busyCursors_.size()) busyCursor_ = 0;
    WinCursorSet(busyCursors_[busyCursor_]);
}

void WinSurface::WinBusyCursorStop() {
    busyCursors_.clear();
    WinCursorSet(kArrowCursor);
}
