#include <gtest/gtest.h>
#include <kora/SortTree.h>

#include <functional>
#include <random>
#include <utility>
#include <vector>

#include "tests/support/VirtualSlot.h"

namespace {

using Numbers = std::vector<int>;
using Order = std::function<short(int, int)>;

Numbers deleted;

struct Item : DoubleListElement {
    explicit Item(int number_) : number(number_) {}
    ~Item() override { deleted.push_back(number); }
    int number;
};

int numberOf(DoubleListElement* e) { return static_cast<Item*>(e)->number; }

struct OrderedTree : SortTree {
    explicit OrderedTree(Order order_) : order(std::move(order_)) {}
    short Compare(DoubleListElement* a, DoubleListElement* b) override {
        compared.emplace_back(numberOf(a), numberOf(b));
        return order(numberOf(a), numberOf(b));
    }
    using SortTree::root;
    Order order;
    std::vector<std::pair<int, int>> compared;
};

// The same tree with its nodes in rows, walked by recursion.
struct Model {
    Order order;
    Numbers left, right;
    std::vector<std::pair<int, int>> compared;

    void insert() {
        const int made = static_cast<int>(left.size());
        left.push_back(-1), right.push_back(-1);
        for (int node = 0; node != made;) {
            compared.emplace_back(made, node);
            int& child = (order(made, node) == 1 ? right : left)[static_cast<std::size_t>(node)];
            node = child = child == -1 ? made : child;
        }
    }
    void walk(int node, bool nodeLast, Numbers& out) const {
        if (node == -1) return;
        walk(left[static_cast<std::size_t>(node)], nodeLast, out);
        if (!nodeLast) out.push_back(node);
        walk(right[static_cast<std::size_t>(node)], nodeLast, out);
        if (nodeLast) out.push_back(node);
    }
    Numbers walked(bool nodeLast) const {
        Numbers out;
        walk(left.empty() ? -1 : 0, nodeLast, out);
        return out;
    }
};

// Sees, and keeps from the list, what passes.
struct CountingList : DoubleList {
    void AttachAtTail(DoubleListElement* e) override {
        EXPECT_TRUE(e->next == nullptr && e->prev == nullptr);
        DoubleList::AttachAtTail(e);
        passed.push_back(numberOf(e));
    }
    Numbers passed;
};

TEST(SortTree, SlotsStandInTheOrderThatModulesAreCompiledAgainst) {
    EXPECT_EQ(kora::test::firstOutOfSlot(&SortTree::Insert, &SortTree::Flatten, &SortTree::Compare), 0);
}

TEST(SortTree, ComparesHangsAndDeletesAsTheModelWhateverTheComparisonAnswers) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE(seed);
        // Odd seeds: no order at all, each pair has an answer of its own. Even ones: one with many equals.
        const Order order = [seed](int a, int b) -> short {
            if (seed % 2 == 0) return a * 7 % 10 > b * 7 % 10 ? 1 : -1;
            static constexpr short kAnswers[] = {1, 0, -1, 2, 257, 1, -32768, 1};
            return kAnswers[std::minstd_rand(seed + static_cast<unsigned>(a * 131 + b * 7919))() % 8];
        };
        const int count = static_cast<int>(seed % 7 == 0 ? seed / 7 - 1 : seed * 3);
        Model model{order, {}, {}, {}};
        for (const bool flatten : {true, false}) {
            deleted.clear();
            CountingList list;
            list.AttachAtHead(new Item(-1));
            {
                OrderedTree tree(order);
                for (int i = 0; i < count; ++i) {
                    if (flatten) model.insert();
                    tree.Insert(new Item(i));
                }
                EXPECT_EQ(tree.compared, model.compared);
                if (flatten) tree.Flatten(list), tree.Flatten(list);
            }
            EXPECT_EQ(deleted, flatten ? Numbers() : model.walked(true));
            EXPECT_EQ(list.passed, flatten ? model.walked(false) : Numbers());
            EXPECT_EQ(numberOf(list.First()), -1);
        }
    }
}

TEST(SortTree, NoShapeIsTooDeep) {
    // Where element i hangs below element i - 1: always left, always right, in turn, and in long runs.
    bool (*const hangsLeft[])(int) = {[](int) { return true; }, [](int) { return false; },
                                      [](int i) { return i % 2 == 0; }, [](int i) { return i / 1000 % 2 == 0; }};
    for (const auto& left : hangsLeft) {
        for (const bool flatten : {true, false}) {
            constexpr int kDeep = 300000;
            deleted.clear();
            OrderedTree tree([](int, int) -> short { return 0; });
            DoubleListElement* below = tree.root = new Item(0);
            for (int i = 1; i < kDeep; ++i) {
                DoubleListElement*& place = left(i) ? below->prev : below->next;
                below = place = new Item(i);
            }
            if (flatten) {
                DoubleList list;
                tree.Flatten(list);
                EXPECT_EQ(list.NumberOfElements(), kDeep);
            }
        }
        EXPECT_EQ(deleted.size(), 300000U);
        EXPECT_EQ(deleted.front(), 299999);
    }
}

}  // namespace
