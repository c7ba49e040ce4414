#include <gtest/gtest.h>
#include <kora/DoubleList.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/support/VirtualSlot.h"

namespace {

struct Item : DoubleListElement {
    explicit Item(int number_ = 0) : number(number_) { ++alive; }
    ~Item() override { --alive; }
    int number;
    static inline int alive = 0;
};

TEST(DoubleList, SlotsStandInTheOrderThatModulesAreCompiledAgainst) {
    using L = DoubleList;
    DoubleListElement* (L::*nextOf)(DoubleListElement*&) = &L::Next;
    DoubleListElement* (L::*next)() = &L::Next;
    EXPECT_EQ(kora::test::firstOutOfSlot(&L::NumberOfElements, &L::Reset, &L::GoTo, &L::GoToIndex, &L::Current,
                                         &L::First, &L::Last, nextOf, next, &L::Prev, &L::PeekNext, &L::PeekPrev,
                                         &L::IsFirst, &L::IsLast, &L::AtFirst, &L::AtLast, &L::DetachNext,
                                         &L::DetachPrev, &L::Detach, &L::DestroyAll, &L::AttachAtHead, &L::AttachAtTail,
                                         &L::AttachBeforeCurrent, &L::AttachAfterCurrent, &L::AttachListAtTail),
              0);
}

// Writes down every slot that is called, in order.
struct LoggedList : DoubleList {
    std::string log;
    void Reset() override { log += "Reset ", DoubleList::Reset(); }
    using DoubleList::Next;
    DoubleListElement* Next() override { return log += "Next ", DoubleList::Next(); }
    DoubleListElement* Prev() override { return log += "Prev ", DoubleList::Prev(); }
    bool Detach(DoubleListElement* e) override { return log += "Detach ", DoubleList::Detach(e); }
    void AttachAtHead(DoubleListElement* e) override { log += "Head ", DoubleList::AttachAtHead(e); }
    void AttachAtTail(DoubleListElement* e) override { log += "Tail ", DoubleList::AttachAtTail(e); }
};

TEST(DoubleList, CompositesCallTheOthersThroughTheirSlots) {
    LoggedList list;
    auto logged = [&list](auto&& operation) {
        list.log.clear();
        operation();
        return list.log;
    };
    Item items[6];
    EXPECT_EQ(logged([&] { list.AttachAtTail(&items[0]); }), "Tail Head ");
    EXPECT_EQ(logged([&] { list.AttachBeforeCurrent(&items[1]); }), "Head ");
    EXPECT_EQ(logged([&] { list.AttachAfterCurrent(&items[2]); }), "Tail Head ");
    list.GoTo(list.last);
    EXPECT_EQ(logged([&] { list.AttachAfterCurrent(&items[3]); }), "Tail Head ");
    EXPECT_EQ(logged([&] { list.AttachBeforeCurrent(&items[4]); }), "");
    EXPECT_EQ(logged([&] { list.AttachAfterCurrent(&items[5]); }), "");
    EXPECT_EQ(logged([&] { list.PeekNext(); }), "Next Prev ");
    EXPECT_EQ(logged([&] { list.PeekPrev(); }), "Prev Next ");
    EXPECT_EQ(logged([&] { list.GoToIndex(1); }), "Reset Next Next ");
    EXPECT_EQ(logged([&] { list.DetachNext(); }), "Detach ");
    list.GoToIndex(1);
    EXPECT_EQ(logged([&] { list.DetachPrev(); }), "Detach ");
    EXPECT_EQ(list.count, 4);

    DoubleList plain;
    EXPECT_EQ(logged([&] { plain.AttachListAtTail(list); }),
              "Reset Next Detach Next Detach Next Detach Next Detach Next ");
    EXPECT_EQ(plain.count, 4);
    EXPECT_EQ(logged([&] { list.AttachListAtTail(plain); }), "Tail Head Tail Head Tail Head Tail Head Reset ");
    while (list.DetachNext() != nullptr) continue;
}

// The list as a row of numbers and a place in it, -1 for none.
struct Model {
    std::vector<int> row;
    int cursor = -1;

    int size() const { return static_cast<int>(row.size()); }
    int at(int place) const { return place < 0 ? 0 : row[static_cast<std::size_t>(place)]; }
    // Behind the last place and in front of the first stands none.
    int stepped(int by) const { return (cursor + size() + 2 + by) % (size() + 1) - 1; }
    int step(int by) { return at(cursor = stepped(by)); }
    int goToIndex(int n) { return at(cursor = n >= size() ? -1 : std::min(std::max(n, 0), size() - 1)); }
    void insert(int place, int number) {
        row.insert(row.begin() + place, number);
        if (cursor >= place) ++cursor;
    }
    int take(int place) {
        const int number = at(place);
        if (place >= 0) row.erase(row.begin() + place);
        cursor = place < 0 || cursor == place ? -1 : cursor - (cursor > place);
        return number;
    }
};

int numberOf(DoubleListElement* e) { return e != nullptr ? static_cast<Item*>(e)->number : 0; }

int released(DoubleListElement* e) {
    const std::unique_ptr<DoubleListElement> owned(e);
    EXPECT_TRUE(e == nullptr || (e->next == nullptr && e->prev == nullptr));
    return numberOf(e);
}

void expectSame(DoubleList& list, const Model& model) {
    ASSERT_EQ(list.NumberOfElements(), model.size());
    ASSERT_EQ(numberOf(list.Current()), model.at(model.cursor));
    ASSERT_EQ(numberOf(list.First()), model.row.empty() ? 0 : model.row.front());
    ASSERT_EQ(numberOf(list.Last()), model.row.empty() ? 0 : model.row.back());
    ASSERT_EQ(list.AtFirst(), model.cursor == std::min(0, model.size() - 1));
    ASSERT_EQ(list.AtLast(), model.cursor == model.size() - 1);
    DoubleListElement* e = list.last;
    ASSERT_EQ(e == nullptr, model.row.empty());
    for (const int number : model.row) {
        ASSERT_EQ(e->next->prev, e);
        e = e->next;
        ASSERT_EQ(numberOf(e), number);
        ASSERT_EQ(list.IsFirst(e), e == list.First());
        ASSERT_EQ(list.IsLast(e), e == list.Last());
    }
    ASSERT_EQ(e, list.last);
}

void actAsTheModel(unsigned seed) {
    std::mt19937 random(seed);
    auto below = [&random](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    int made = 0;
    DoubleList lists[2];
    Model models[2];
    for (int step = 0; step < 4000; ++step) {
        const int which = below(2);
        const int operation = below(models[which].size() > 12 ? 13 : 17);  // the last four make the list longer
        SCOPED_TRACE(testing::Message() << "seed " << seed << " step " << step << " operation " << operation);
        DoubleList& list = lists[which];
        Model& model = models[which];
        Model& other = models[1 - which];
        Model peek = model;
        const int n = below(20) - 4;
        DoubleListElement *e = list.last, *cursor = nullptr;
        if (operation == 0) {
            ASSERT_EQ(numberOf(list.Next()), model.step(1));
        } else if (operation == 1) {
            ASSERT_EQ(numberOf(list.Prev()), model.step(-1));
        } else if (operation <= 3) {
            ASSERT_EQ(numberOf(list.GoToIndex(static_cast<short>(n))), model.goToIndex(n));
        } else if (operation == 4) {
            ASSERT_EQ(numberOf(list.PeekNext()), peek.step(1));
        } else if (operation == 5) {
            ASSERT_EQ(numberOf(list.PeekPrev()), peek.step(-1));
        } else if (operation == 6) {
            list.Reset(), model.cursor = -1;
        } else if (operation == 7) {
            ASSERT_EQ(released(list.DetachNext()), model.take(model.stepped(1)));
        } else if (operation == 8) {
            ASSERT_EQ(released(list.DetachPrev()), model.take(model.stepped(-1)));
        } else if (operation == 9) {
            Item loose;
            const int place = e != nullptr ? below(model.size()) : -1;
            for (int i = 0; i <= place; ++i) e = e->next;
            ASSERT_EQ(list.Detach(e != nullptr ? e : &loose), e == nullptr);
            ASSERT_EQ(released(e), model.take(place));
        } else if (operation == 10) {
            peek.cursor = -1;
            do ASSERT_EQ(numberOf(list.Next(cursor)), peek.step(1));
            while (cursor != nullptr);
        } else if (operation == 11) {
            list.AttachListAtTail(list);
            list.AttachListAtTail(lists[1 - which]);
            model.row.insert(model.row.end(), other.row.begin(), other.row.end());
            other.row.clear();
            model.cursor = other.cursor = -1;
        } else if (operation == 12) {
            if (n < 0) list.DestroyAll(), model = Model();
        } else if (operation == 13) {
            list.AttachAtHead(new Item(++made)), model.insert(0, made);
        } else if (operation == 14) {
            list.AttachAtTail(new Item(++made)), model.insert(model.size(), made);
        } else if (operation == 15) {
            list.AttachBeforeCurrent(new Item(++made)), model.insert(std::max(model.cursor, 0), made);
        } else {
            list.AttachAfterCurrent(new Item(++made));
            model.insert(model.cursor == -1 ? model.size() : model.cursor + 1, made);
        }
        expectSame(lists[0], models[0]);
        expectSame(lists[1], models[1]);
        if (testing::Test::HasFatalFailure()) return;
        ASSERT_EQ(Item::alive, models[0].size() + models[1].size());
    }
}

TEST(DoubleList, ActsAsTheModel) {
    for (unsigned seed = 1; seed <= 10; ++seed) actAsTheModel(seed);
    EXPECT_EQ(Item::alive, 0);
}

// An item that takes itself, or its neighbour too, out of the list while it is deleted.
struct Leaver : Item {
    Leaver(DoubleList& list_, bool takesNext_) : list(list_), takesNext(takesNext_) {}
    ~Leaver() override {
        if (takesNext) list.Detach(neighbour = next), delete neighbour;
        list.Detach(this);
    }
    DoubleList& list;
    DoubleListElement* neighbour = nullptr;
    bool takesNext;
};

TEST(DoubleList, ElementsMayLeaveWhileTheyAreDestroyed) {
    for (int length = 1; length <= 4; ++length) {
        DoubleList list;
        for (int i = 0; i < length; ++i) list.AttachAtTail(new Leaver(list, length == 3 && i == 0));
        list.DestroyAll();
        EXPECT_EQ(Item::alive, 0);
        EXPECT_EQ(list.First(), nullptr);
        EXPECT_EQ(list.NumberOfElements(), 0);
    }
}

}  // namespace
