#include <kora/Win.h>

#include "geometry/Coordinates.h"

WinWindow::WinWindow() : WinWindow(nullptr, nullptr) {}

WinWindow::WinWindow(TskKoraModule* module, WinWindow* above)
    : TmrTimer(TmrTypeIdle, OwnedElsewhere()), module_(module) {
    if (!above) return;
    above->ChildAttach(this);
    parent = above;  // an override may attach it in its own way
}

WinWindow::~WinWindow() {
    // Whoever was taken out of its parent's children still names it.
    if (parent && TreeElement::next) parent->ChildDetach(this);
    ChildDestroyAll();
}

bool WinWindow::ChildDetach(TreeElement* e) {
    const bool wasEmpty = TreeElement::ChildDetach(e);
    if (auto* child = dynamic_cast<WinWindow*>(e); child && !wasEmpty) child->parent = nullptr;
    return wasEmpty;
}

void WinWindow::ChildAttach(TreeElement* e) {
    TreeElement::ChildAttach(e);
    if (auto* child = dynamic_cast<WinWindow*>(e)) child->parent = this;
}

TskKoraModule* WinWindow::WinModuleGet() { return module_; }

WinWindow* WinWindow::WinParentGet() { return TreeElement::next ? dynamic_cast<WinWindow*>(Parent()) : nullptr; }

bool WinWindow::WinCreate(short) {
    WinCreateDone();
    return true;
}

void WinWindow::WinCreateDone() {}

bool WinWindow::WinVisibleGet() { return visible_; }
void WinWindow::WinShow() { visible_ = true; }
void WinWindow::WinHide() { visible_ = false; }

void WinWindow::WinMove(LRCT* r) {
    if (!r) return;
    LRCT client = {0, 0, kora::wrapped(kora::height(*r)), kora::wrapped(kora::width(*r))};
    WinClientRectSet(&client);
}

WinWindow::ScrollBar* WinWindow::scrollBar(eWinScrollBar bar) {
    return bar == WinScrollBarVertical || bar == WinScrollBarHorizontal ? &scrollBars_[bar] : nullptr;
}

void WinWindow::WinScrollRangeSet(eWinScrollBar bar, long count, long page) {
    if (ScrollBar* kept = scrollBar(bar)) {
        kept->count = count;
        kept->page = page;
    }
}

void WinWindow::WinScrollRangeGet(eWinScrollBar bar, long* count, long* page) {
    const ScrollBar* kept = scrollBar(bar);
    if (count) *count = kept ? kept->count : 0;
    if (page) *page = kept ? kept->page : 0;
}

void WinWindow::WinScrollPosSet(eWinScrollBar bar, long position) {
    if (ScrollBar* kept = scrollBar(bar)) kept->position = position;
}

long WinWindow::WinScrollPosGet(eWinScrollBar bar) {
    const ScrollBar* kept = scrollBar(bar);
    return kept ? kept->position : 0;
}
