#include <kora/Tree.h>

namespace {

// Levels that destructors may call each other through; below, one element destroys all others in a loop.
constexpr std::int32_t kMostNestedLevels = 200;

}  // namespace

TreeElement::TreeElement() : parent(nullptr), destroyedLevels_(0), destroyer_(nullptr) {}

TreeElement::~TreeElement() {
    parent = nullptr;
    if (destroyer_ != nullptr || destroyedLevels_ >= kMostNestedLevels) {
        destroyOneByOne(/*orphaned=*/false);
    } else {
        DoubleListElement* cursor = nullptr;
        while (auto* child = static_cast<TreeElement*>(children.Next(cursor)))
            child->destroyedLevels_ = destroyedLevels_ + 1;
    }
}

void TreeElement::ChildDestroyAll() { destroyOneByOne(/*orphaned=*/true); }

void TreeElement::destroyOneByOne(bool orphaned) {
    if (destroyer_ != nullptr) return moveChildrenUp();
    while (auto* child = static_cast<TreeElement*>(children.First())) {
        children.Detach(child);
        if (orphaned) child->parent = nullptr;
        child->destroyedLevels_ = destroyedLevels_ + 1;
        if (destroyedLevels_ >= kMostNestedLevels) child->destroyer_ = this;
        delete child;
    }
}

// To where the destroyer goes on next: the order stays the one in which each element destroys its own children.
void TreeElement::moveChildrenUp() {
    while (auto* child = static_cast<TreeElement*>(children.Last())) {
        children.Detach(child);
        child->parent = destroyer_;
        destroyer_->children.AttachAtHead(child);
    }
}

TreeElement* TreeElement::Parent() { return parent; }

long TreeElement::ChildCount() { return children.NumberOfElements(); }

void TreeElement::ChildReset() { children.Reset(); }

TreeElement* TreeElement::ChildNext() { return static_cast<TreeElement*>(children.Next()); }

bool TreeElement::ChildDetach(TreeElement* e) { return children.Detach(e); }

void TreeElement::ChildAttach(TreeElement* e) { children.AttachAtTail(e); }
