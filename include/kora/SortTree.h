#pragma once

#include <kora/DoubleList.h>

/// @file
/// Sorting of list elements without any memory but the tree object itself.

/// Sorts detached list elements by an order that a derived class supplies.
///
///     struct BySize : SortTree {
///         short Compare(DoubleListElement* a, DoubleListElement* b) override { return sizeOf(a) > sizeOf(b); }
///     } tree;
///     while (DoubleListElement* e = list.DetachNext()) tree.Insert(e);
///     tree.Flatten(list);
///
/// Elements of which neither comes after the other leave in the reverse order of their insertion.
///
/// A plain binary tree that is never rebalanced, so which pairs it compares, and the order it makes of a comparison
/// that contradicts itself, follow from the insertions alone: on average about n log n comparisons, n * n / 2 for
/// elements that come in order or in reverse. Flattening and destruction need no stack, however deep the tree is.
///
/// The tree owns the elements that it holds, and uses their links: an element is in a list or in a tree. The order of
/// the virtual operations is the interface; new ones go at the end.
class KORA_API SortTree {
public:
    SortTree();
    /// Deletes what was not flattened: an element's left subtree, its right subtree, then itself.
    virtual ~SortTree();
    SortTree(const SortTree&) = delete;
    SortTree& operator=(const SortTree&) = delete;

    /// Takes over @p e, which must be detached. It is compared with the elements on its way down from the root.
    virtual void Insert(DoubleListElement* e);
    /// Moves all elements to the tail of @p list, ascending, through its AttachAtTail(). The tree is empty then.
    virtual void Flatten(DoubleList& list);
    /// Whether @p a comes after @p b: 1 for yes; 0, -1 and everything else for no. Insert() asks with the new element
    /// as @p a and one of the tree as @p b.
    virtual short Compare(DoubleListElement* a, DoubleListElement* b) = 0;

protected:
    DoubleListElement* root;  ///< null when the tree is empty; below it, next is the right child and prev the left
};
