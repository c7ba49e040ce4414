#include <kora/Tree.h>

#include "core/VirtualSlots.h"

namespace {

constinit const void* ownDepthFirst = nullptr;

}  // namespace

Tree::Tree() : current(nullptr) { ownDepthFirst = kora::slotCode(*this, &Tree::DepthFirst); }

Tree::~Tree() = default;

bool Tree::AttachChildAtTail(TreeElement* parent, TreeElement* e) {
    e->parent = parent;
    if (parent != nullptr)
        parent->ChildAttach(e);
    else
        roots.AttachAtTail(e);
    return true;
}

void Tree::DetachChild(TreeElement* e) {
    if (e == nullptr || RootCount() == 0) return;
    if (TreeElement* parent = e->Parent())
        parent->ChildDetach(e);
    else
        roots.Detach(e);
}

// The argument is ignored: callers restart the walk with whatever element they have at hand.
void Tree::SetCurrentNode(TreeElement*) { current = nullptr; }

TreeElement* Tree::DepthFirst() {
    for (;;) {
        TreeElement* parent = current != nullptr ? current->Parent() : nullptr;
        if (current == nullptr) RootReset();
        TreeElement* e = parent != nullptr ? parent->ChildNext() : RootNext();
        if (e == nullptr) return current = parent;
        if (e->ChildCount() == 0) return current = e;
        e->ChildReset();
        current = e->ChildNext();
        e->ChildReset();
        // One level down in this loop, unless an override wants to see every level.
        if (!kora::runsCode(*this, &Tree::DepthFirst, ownDepthFirst)) return current = DepthFirst();
    }
}

DoubleList& Tree::siblingsOfCurrent() {
    TreeElement* parent = current->Parent();
    return parent != nullptr ? parent->children : roots;
}

bool Tree::AttachBeforeCurrent(TreeElement* e) {
    if (current == nullptr) return false;
    e->parent = current->Parent();
    siblingsOfCurrent().AttachBeforeCurrent(e);
    return true;
}

bool Tree::AttachAfterCurrent(TreeElement* e) {
    if (current == nullptr) return false;
    e->parent = current->Parent();
    siblingsOfCurrent().AttachAfterCurrent(e);
    return true;
}

long Tree::RootCount() { return roots.NumberOfElements(); }

void Tree::RootReset() { roots.Reset(); }

TreeElement* Tree::RootNext() { return static_cast<TreeElement*>(roots.Next()); }

TreeElement* Tree::RootPrev() { return static_cast<TreeElement*>(roots.Prev()); }
