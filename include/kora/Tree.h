#pragma once

#include <kora/DoubleList.h>

/// @file
/// A forest of elements with ordered children, and a walk over it.

/// What a Tree holds: a list element that has a parent and an ordered list of children, which it owns.
///
/// The order of the virtual operations is the interface; new ones go at the end.
class KORA_API TreeElement : public DoubleListElement {
public:
    /// A detached element without parent and children.
    TreeElement();
    /// Deletes the children, first to last, and so the whole subtree; an element's own destructor runs before those of
    /// what is below it. However deep the subtree is, the stack that this takes is bounded: more than two hundred
    /// levels down an element is detached before it is deleted, and Parent() answers one further up, since its own
    /// parent is gone by then. The children of that one are everything that still waits to be deleted.
    ~TreeElement() override;

    virtual TreeElement* Parent();     ///< null for a root
    virtual long ChildCount();         ///< how many children, not counting theirs
    virtual void ChildReset();         ///< the child list's Reset()
    virtual TreeElement* ChildNext();  ///< the child list's Next()
    /// The child list's Detach(), its result included: false when @p e was detached. What Parent() of @p e answers
    /// stays.
    virtual bool ChildDetach(TreeElement* e);
    /// The child list's AttachAtTail(). What Parent() of @p e answers stays; Tree::AttachChildAtTail() sets it too.
    virtual void ChildAttach(TreeElement* e);

protected:
    /// Deletes the children now, first to last, for a derived class whose elements look for their parent when they are
    /// destroyed: each is detached before, and its Parent() answers null. The stack is bounded as in the destructor.
    void ChildDestroyAll();

    TreeElement* parent;  ///< null for a root
    DoubleList children;  ///< of TreeElement only

private:
    friend class Tree;
    void destroyOneByOne(bool orphaned);
    void moveChildrenUp();

    std::int32_t destroyedLevels_;  // how many elements above this one are being destroyed, as far as they said
    TreeElement* destroyer_;        // who destroys this element and takes its children to do the same
};

/// An ordered list of roots, each with its subtree, with a current node and a walk over all of them.
///
/// The tree owns its elements. Siblings are the neighbours in one list, their parent's or that of the roots, and the
/// walk uses the cursors of those lists: whoever moves one between two steps changes the walk.
///
/// Operations call those of the elements, and each other, through the virtual table. The order of the virtual
/// operations is the interface; new ones go at the end.
class KORA_API Tree {
public:
    Tree();
    /// Deletes every element, as ~TreeElement() does.
    virtual ~Tree();
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    /// Makes @p e the last child of @p parent, the last root when that is null, through the parent's ChildAttach().
    /// @return true
    virtual bool AttachChildAtTail(TreeElement* parent, TreeElement* e);
    /// Takes @p e, with its subtree, out of its parent's children or the roots and hands it over. What its Parent()
    /// answers stays, and so does the current node: whoever deletes it, or what it is below, calls SetCurrentNode().
    /// Nothing happens when @p e is null or the tree has no roots.
    virtual void DetachChild(TreeElement* e);
    /// Sets the current node to null, whatever @p e is: this is how callers restart DepthFirst().
    virtual void SetCurrentNode(TreeElement* e);
    /// Steps to the next element, children before their parent, and answers it: null behind the last one; then it
    /// starts over. The element becomes the current node.
    ///
    ///     R1 (A, B), R2    A, B, R1, R2, null, A ...
    ///
    /// The way down to a leaf is a loop. A derived tree that overrides this operation is called at every level instead,
    /// each call within the one before, so there the stack bounds how deep a tree may be.
    virtual TreeElement* DepthFirst();
    /// Makes @p e a sibling of the current node. Its place is in front of the cursor of the list in which the current
    /// node lies (at the head when there is none); behind a step of DepthFirst() that cursor is on the current node.
    /// @return false, with nothing done, when there is no current node
    virtual bool AttachBeforeCurrent(TreeElement* e);
    /// The same, behind the cursor of that list (at the tail when there is none).
    virtual bool AttachAfterCurrent(TreeElement* e);
    virtual long RootCount();         ///< the roots' NumberOfElements()
    virtual void RootReset();         ///< the roots' Reset()
    virtual TreeElement* RootNext();  ///< the roots' Next()
    virtual TreeElement* RootPrev();  ///< the roots' Prev()

protected:
    DoubleList roots;      ///< of TreeElement only
    TreeElement* current;  ///< the current node

private:
    DoubleList& siblingsOfCurrent();
};
