#include <kora/SortTree.h>

SortTree::SortTree() : root(nullptr) {}

SortTree::~SortTree() {
    // Left, right, itself is the reverse of itself, right, left, which needs no way back up: the left subtree is hung
    // where the walk through the right one ends. What was walked over is chained in front of what was walked before.
    DoubleListElement* chain = nullptr;
    while (DoubleListElement* e = root) {
        if (e->next != nullptr) {
            root = e->next;
            DoubleListElement* end = root;
            while (end->prev != nullptr) end = end->prev;
            end->prev = e->prev;
        } else {
            root = e->prev;
        }
        e->next = chain;
        chain = e;
    }
    while (DoubleListElement* e = chain) {
        chain = e->next;
        delete e;
    }
}

void SortTree::Insert(DoubleListElement* e) {
    if (root == nullptr) {
        root = e;
        return;
    }
    DoubleListElement* node = root;
    DoubleListElement* parent;
    bool isAfter;
    do {
        parent = node;
        // Equal elements go left, so they come out newest first. Callers rely on that order.
        isAfter = Compare(e, node) == 1;
        // Both are read before one is taken: a branch would be guessed wrong every other time.
        DoubleListElement* const left = node->prev;
        DoubleListElement* const right = node->next;
        node = isAfter ? right : left;
    } while (node != nullptr);
    (isAfter ? parent->next : parent->prev) = e;
    e->next = e->prev = nullptr;
}

void SortTree::Flatten(DoubleList& list) {
    // Whatever is left of the root is turned above it, until the root is the least element.
    while (DoubleListElement* e = root) {
        if (DoubleListElement* left = e->prev) {
            e->prev = left->next;
            left->next = e;
            root = left;
        } else {
            root = e->next;
            e->next = nullptr;
            list.AttachAtTail(e);
        }
    }
}
