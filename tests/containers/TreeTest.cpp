#include <gtest/gtest.h>
#include <kora/Tree.h>

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/support/VirtualSlot.h"

namespace {

struct Node : TreeElement {
    explicit Node(int number_ = 0) : number(number_) {}
    int number;
};

int numberOf(TreeElement* e) { return e != nullptr ? static_cast<Node*>(e)->number : 0; }

TEST(Tree, SlotsStandInTheOrderThatModulesAreCompiledAgainst) {
    using E = TreeElement;
    EXPECT_EQ(kora::test::firstOutOfSlot(&E::Parent, &E::ChildCount, &E::ChildReset, &E::ChildNext, &E::ChildDetach,
                                         &E::ChildAttach),
              0);
    EXPECT_EQ(kora::test::firstOutOfSlot(&Tree::AttachChildAtTail, &Tree::DetachChild, &Tree::SetCurrentNode,
                                         &Tree::DepthFirst, &Tree::AttachBeforeCurrent, &Tree::AttachAfterCurrent,
                                         &Tree::RootCount, &Tree::RootReset, &Tree::RootNext, &Tree::RootPrev),
              0);
}

// The forest as rows of numbers, each with a place in it (-1 for none). Row 0 holds the roots.
struct Model {
    struct Row {
        std::vector<int> members;
        int cursor = -1;
    };
    std::map<int, Row> rows{{0, {}}};
    std::map<int, int> parents;
    int current = 0;

    int step(int row, int by) {
        Row& r = rows[row];
        const int size = static_cast<int>(r.members.size());
        r.cursor = (r.cursor + size + 2 + by) % (size + 1) - 1;
        return r.cursor == -1 ? 0 : r.members[static_cast<std::size_t>(r.cursor)];
    }
    int depthFirst() {
        if (current == 0) rows[0].cursor = -1;
        const int row = current == 0 ? 0 : parents[current];
        const int e = step(row, 1);
        if (e == 0) return current = row;
        if (rows[e].members.empty()) return current = e;
        rows[e].cursor = -1;
        current = rows[e].members.front();
        return current = depthFirst();
    }
    void insert(int row, int e, int place) {
        Row& r = rows[row];
        r.members.insert(r.members.begin() + place, e);
        if (r.cursor >= place) ++r.cursor;
        parents[e] = row;
    }
    void erase(int e) {
        Row& r = rows[parents[e]];
        const int place = static_cast<int>(std::find(r.members.begin(), r.members.end(), e) - r.members.begin());
        r.members.erase(r.members.begin() + place);
        r.cursor = r.cursor == place ? -1 : r.cursor - (r.cursor > place);
        forget(e);
    }
    void forget(int e) {
        for (const int child : rows[e].members) forget(child);
        rows.erase(e), parents.erase(e);
    }
};

TEST(Tree, ActsAsTheModel) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        auto below = [&random](std::size_t end) { return static_cast<int>(random() % end); };
        Tree tree;
        Model model;
        std::map<int, Node*> nodes{{0, nullptr}};
        for (int step = 1; step < 1500; ++step) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step);
            const int picked = std::next(model.rows.begin(), below(model.rows.size()))->first;
            Node* node = nodes[picked];
            const int operation = below(model.rows.size() > 30 ? 14 : 18);  // the last four make the forest larger
            if (operation <= 6) {
                ASSERT_EQ(numberOf(tree.DepthFirst()), model.depthFirst());
            } else if (operation <= 8) {
                ASSERT_EQ(numberOf(node != nullptr ? node->ChildNext() : tree.RootNext()), model.step(picked, 1));
            } else if (operation == 9) {
                ASSERT_EQ(numberOf(tree.RootPrev()), model.step(0, -1));
            } else if (operation == 10) {
                node != nullptr ? node->ChildReset() : tree.RootReset();
                model.rows[picked].cursor = -1;
            } else if (operation == 11 || node == nullptr) {
                tree.SetCurrentNode(node), model.current = 0;
                tree.DetachChild(nullptr);
            } else if (operation <= 13) {
                TreeElement* const parent = node->Parent();
                tree.DetachChild(node);
                ASSERT_EQ(node->Parent(), parent);
                delete node;
                model.erase(picked);
                tree.SetCurrentNode(nullptr), model.current = 0;
            } else if (operation <= 15) {
                ASSERT_TRUE(tree.AttachChildAtTail(node, nodes[step] = new Node(step)));
                model.insert(picked, step, static_cast<int>(model.rows[picked].members.size()));
            } else {
                auto made = std::make_unique<Node>(step);
                const bool before = operation == 16;
                ASSERT_EQ(before ? tree.AttachBeforeCurrent(made.get()) : tree.AttachAfterCurrent(made.get()),
                          model.current != 0);
                if (model.current != 0) {
                    const Model::Row& row = model.rows[model.parents[model.current]];
                    const int size = static_cast<int>(row.members.size());
                    const int behind = row.cursor == -1 ? size : row.cursor + 1;
                    model.insert(model.parents[model.current], step, before ? std::max(row.cursor, 0) : behind);
                    nodes[step] = made.release();
                }
            }
            ASSERT_EQ(tree.RootCount(), static_cast<long>(model.rows[0].members.size()));
            for (const auto& [e, parent] : model.parents) {
                ASSERT_EQ(nodes[e]->Parent(), nodes[parent]);
                ASSERT_EQ(nodes[e]->ChildCount(), static_cast<long>(model.rows[e].members.size()));
            }
        }
    }
}

struct LoggingTree : Tree {
    TreeElement* DepthFirst() override {
        ++calls;
        return Tree::DepthFirst();
    }
    int calls = 0;
};

TEST(Tree, AnOverriddenStepSeesEveryLevelOfTheDescent) {
    LoggingTree tree;
    Node* e = nullptr;
    for (int i = 1; i <= 5; ++i) {
        Node* made = new Node(i);
        tree.AttachChildAtTail(e, made);
        e = made;
    }
    EXPECT_EQ(tree.DepthFirst(), e);
    EXPECT_EQ(tree.calls, 5);
    EXPECT_EQ(numberOf(tree.DepthFirst()), 4);
    EXPECT_EQ(tree.calls, 6);
}

// Not a plain tree, but the walk is the library's own.
struct LargeTree : Tree {
    long RootCount() override { return Tree::RootCount(); }
};

TEST(Tree, AMillionLevelsAreWalkedAndDeleted) {
    LargeTree tree;
    constexpr int kLevels = 1000000;
    Node* e = nullptr;
    for (int i = 1; i <= kLevels; ++i) {
        Node* made = new Node(i);
        tree.AttachChildAtTail(e, made);
        e = made;
    }
    for (int i = kLevels; i > 0; --i) ASSERT_EQ(numberOf(tree.DepthFirst()), i);
    EXPECT_EQ(tree.DepthFirst(), nullptr);
}

std::string deleted;
bool leaving = false;

// Writes itself down when it is deleted, with what it still sees, and may take itself out of its parent's list.
struct Leaver : TreeElement {
    explicit Leaver(int number_) : number(number_) {}
    ~Leaver() override {
        deleted += std::to_string(number) + "(" + std::to_string(ChildCount()) + ") ";
        if (leaving && Parent() != nullptr) Parent()->ChildDetach(this);
    }
    int number;
};

TEST(Tree, ElementsAreDeletedBeforeWhatIsBelowThemAtAnyDepth) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        std::mt19937 random(seed);
        std::vector<Leaver*> made;
        std::vector<std::vector<std::size_t>> children;
        auto tree = std::make_unique<Tree>();
        for (std::size_t i = 0; i < 1500; ++i) {
            // Mostly one below the other, so that the forest gets some five hundred levels deep.
            const std::size_t back = random() % 3 == 0 ? random() % (i + 1) : std::min<std::size_t>(random() % 2, i);
            made.push_back(new Leaver(static_cast<int>(i)));
            children.emplace_back();
            if (back < i) children[i - 1 - back].push_back(i);
            tree->AttachChildAtTail(back < i ? made[i - 1 - back] : nullptr, made[i]);
        }
        std::string expected;
        auto walk = [&](auto&& self, std::size_t i) -> void {
            expected += std::to_string(i) + "(" + std::to_string(children[i].size()) + ") ";
            for (const std::size_t child : children[i]) self(self, child);
        };
        for (std::size_t i = 0; i < made.size(); ++i)
            if (made[i]->Parent() == nullptr) walk(walk, i);
        deleted.clear();
        leaving = seed % 2 == 0;
        tree.reset();
        ASSERT_EQ(deleted, expected) << "seed " << seed;
    }
}

}  // namespace
