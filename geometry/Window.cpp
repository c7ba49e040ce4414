#include <kora/Win.h>

#include "geometry/ColourValue.h"

WinWindow::WinWindow() = default;
WinWindow::~WinWindow() = default;

unsigned long WinWindow::WinMapColour(int colour, bool monochrome) {
    using namespace kora;
    const std::uint32_t symbol = static_cast<std::uint32_t>(colour) & ~kColourFlag;
    if (symbol == kForeground) colour = WinForeColourGet();
    if (symbol == kBackground) colour = WinBackColourGet();
    const unsigned long rgb = ::WinMapColour(colour);
    if (monochrome && rgb != kWhite) return kBlack;
    return rgb;
}

void WinWindow::WinForeColourSet(int colour) { foreColour_ = colour; }
void WinWindow::WinBackColourSet(int colour) { backColour_ = colour; }

void WinWindow::WinClientRectSet(LRCT* r) {
    if (r) clientRect_ = *r;
}
void WinWindow::WinClientRectGet(LRCT* r) {
    if (r) *r = clientRect_;
}

int WinWindow::WinForeColourGet() { return foreColour_; }
int WinWindow::WinBackColourGet() { return backColour_; }
