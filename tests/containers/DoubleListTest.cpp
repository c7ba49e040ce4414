#include <gmock/gmock.h>
#include <kora/DoubleList.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "core/TraceRing.h"
#include "tests/support/VirtualSlot.h"

namespace {

using kora::test::virtualSlot;
using testing::ElementsAre;

struct Item : DoubleListElement {
    explicit Item(int number_ = 0) : number(number_) { ++alive; }
    ~Item() override { --alive; }
    int number;
    static inline int alive = 0;
};

std::vector<int> numbers(const DoubleList& list) {
    std::vector<int> result;
    for (DoubleListElement* e = list.last != nullptr ? list.last->next : nullptr; e != nullptr;
         e = e == list.last ? nullptr : e->next)
        result.push_back(static_cast<Item*>(e)->number);
    return result;
}

TEST(DoubleList, SlotsStandInTheOrderThatModulesAreCompiledAgainst) {
    using L = DoubleList;
    using E = DoubleListElement;
    EXPECT_EQ(virtualSlot(&L::NumberOfElements), 1);
    EXPECT_EQ(virtualSlot(&L::Reset), 2);
    EXPECT_EQ(virtualSlot(&L::GoTo), 3);
    EXPECT_EQ(virtualSlot(&L::GoToIndex), 4);
    EXPECT_EQ(virtualSlot(&L::Current), 5);
    EXPECT_EQ(virtualSlot(&L::First), 6);
    EXPECT_EQ(virtualSlot(&L::Last), 7);
    EXPECT_EQ(virtualSlot(static_cast<E* (L::*)(E*&)>(&L::Next)), 8);
    EXPECT_EQ(virtualSlot(static_cast<E* (L::*)()>(&L::Next)), 9);
    EXPECT_EQ(virtualSlot(&L::Prev), 10);
    EXPECT_EQ(virtualSlot(&L::PeekNext), 11);
    EXPECT_EQ(virtualSlot(&L::PeekPrev), 12);
    EXPECT_EQ(virtualSlot(&L::IsFirst), 13);
    EXPECT_EQ(virtualSlot(&L::IsLast), 14);
    EXPECT_EQ(virtualSlot(&L::AtFirst), 15);
    EXPECT_EQ(virtualSlot(&L::AtLast), 16);
    EXPECT_EQ(virtualSlot(&L::DetachNext), 17);
    EXPECT_EQ(virtualSlot(&L::DetachPrev), 18);
    EXPECT_EQ(virtualSlot(&L::Detach), 19);
    EXPECT_EQ(virtualSlot(&L::DestroyAll), 20);
    EXPECT_EQ(virtualSlot(&L::AttachAtHead), 21);
    EXPECT_EQ(virtualSlot(&L::AttachAtTail), 22);
    EXPECT_EQ(virtualSlot(&L::AttachBeforeCurrent), 23);
    EXPECT_EQ(virtualSlot(&L::AttachAfterCurrent), 24);
    EXPECT_EQ(virtualSlot(&L::AttachListAtTail), 25);
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

// The list as a row of numbers and a place in it.
struct Model {
    std::vector<int> row;
    int cursor = -1;

    int size() const { return static_cast<int>(row.size()); }
    int at(int index) const { return index < 0 ? 0 : row[static_cast<std::size_t>(index)]; }
    int next() { return at(cursor = size() == 0 ? cursor : cursor + 1 == size() ? -1 : cursor + 1); }
    int prev() { return at(cursor = size() == 0 ? cursor : cursor == -1 ? size() - 1 : cursor - 1); }
    int goToIndex(int n) { return at(cursor = n < 0 && size() > 0 ? 0 : n >= 0 && n < size() ? n : -1); }
    void insert(int index, int number) {
        row.insert(row.begin() + index, number);
        if (cursor >= index) ++cursor;
    }
    int take(int index) {
        const int number = at(index);
        row.erase(row.begin() + index);
        cursor = cursor == index ? -1 : cursor > index ? cursor - 1 : cursor;
        return number;
    }
    int takeNext() {
        if (size() == 0) return 0;
        if (cursor + 1 < size()) return take(cursor + 1);
        cursor = -1;
        return 0;
    }
    int takePrev() {
        if (size() == 0) return 0;
        if (cursor != 0) return take(cursor == -1 ? size() - 1 : cursor - 1);
        cursor = -1;
        return 0;
    }
};

int numberOf(DoubleListElement* e) { return e != nullptr ? static_cast<Item*>(e)->number : 0; }

int releasedNumber(DoubleListElement* e) {
    const int number = numberOf(e);
    if (e != nullptr) {
        EXPECT_EQ(e->next, nullptr);
        EXPECT_EQ(e->prev, nullptr);
    }
    delete e;
    return number;
}

void expectSame(DoubleList& list, const Model& model) {
    ASSERT_EQ(numbers(list), model.row);
    ASSERT_EQ(list.NumberOfElements(), model.size());
    ASSERT_EQ(numberOf(list.Current()), model.at(model.cursor));
    ASSERT_EQ(numberOf(list.First()), model.row.empty() ? 0 : model.row.front());
    ASSERT_EQ(numberOf(list.Last()), model.row.empty() ? 0 : model.row.back());
    if (model.size() == 0) return;
    ASSERT_EQ(list.AtFirst(), model.cursor == 0);
    ASSERT_EQ(list.AtLast(), model.cursor == model.size() - 1);
    DoubleListElement* e = list.last;
    do {
        ASSERT_EQ(e->next->prev, e);
        ASSERT_EQ(e->prev->next, e);
        ASSERT_EQ(list.IsFirst(e), numberOf(e) == model.row.front());
        ASSERT_EQ(list.IsLast(e), numberOf(e) == model.row.back());
        e = e->next;
    } while (e != list.last);
}

template <class List>
void actAsTheModel(unsigned seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    auto below = [&random](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    int made = 0;
    {
        List lists[2];
        Model models[2];
        for (int step = 0; step < 4000; ++step) {
            const int which = below(2);
            const int operation = below(models[which].size() > 12 ? 16 : 20);  // the last four make the list longer
            SCOPED_TRACE(testing::Message() << "step " << step << ", operation " << operation);
            DoubleList& list = lists[which];
            Model& model = models[which];
            switch (operation) {
                case 0:
                case 1:
                    ASSERT_EQ(numberOf(list.Next()), model.next());
                    break;
                case 2:
                case 3:
                    ASSERT_EQ(numberOf(list.Prev()), model.prev());
                    break;
                case 4: {
                    const int n = below(20) - 4;
                    ASSERT_EQ(numberOf(list.GoToIndex(static_cast<short>(n))), model.goToIndex(n));
                    break;
                }
                case 5: {
                    Model copy = model;
                    ASSERT_EQ(numberOf(list.PeekNext()), copy.next());
                    break;
                }
                case 6: {
                    Model copy = model;
                    ASSERT_EQ(numberOf(list.PeekPrev()), copy.prev());
                    break;
                }
                case 7:
                    list.Reset(), model.cursor = -1;
                    break;
                case 8:
                    ASSERT_EQ(releasedNumber(list.DetachNext()), model.takeNext());
                    break;
                case 9:
                    ASSERT_EQ(releasedNumber(list.DetachPrev()), model.takePrev());
                    break;
                case 10:
                    if (model.size() > 0) {
                        const int index = below(model.size());
                        DoubleListElement* e = list.last;
                        for (int i = 0; i <= index; ++i) e = e->next;
                        ASSERT_FALSE(list.Detach(e));
                        ASSERT_EQ(releasedNumber(e), model.take(index));
                    } else {
                        Item loose;
                        ASSERT_TRUE(list.Detach(&loose));
                    }
                    break;
                case 11: {
                    DoubleListElement* cursor = nullptr;
                    Model copy{model.row};
                    do ASSERT_EQ(numberOf(list.Next(cursor)), copy.next());
                    while (cursor != nullptr);
                    break;
                }
                case 12:
                case 13: {
                    Model& other = models[1 - which];
                    list.AttachListAtTail(lists[1 - which]);
                    model.row.insert(model.row.end(), other.row.begin(), other.row.end());
                    other.row.clear();
                    model.cursor = other.cursor = -1;
                    break;
                }
                case 14:
                    list.AttachListAtTail(list);
                    break;
                case 15:
                    if (below(5) == 0) {
                        list.DestroyAll();
                        model = Model();
                    }
                    break;
                case 16:
                    list.AttachAtHead(new Item(++made)), model.insert(0, made);
                    break;
                case 17:
                    list.AttachAtTail(new Item(++made)), model.insert(model.size(), made);
                    break;
                case 18:
                    list.AttachBeforeCurrent(new Item(++made)), model.insert(std::max(model.cursor, 0), made);
                    break;
                default:
                    list.AttachAfterCurrent(new Item(++made));
                    model.insert(model.cursor == -1 ? model.size() : model.cursor + 1, made);
            }
            expectSame(lists[0], models[0]);
            expectSame(lists[1], models[1]);
            if (testing::Test::HasFatalFailure()) return;
            ASSERT_EQ(Item::alive, models[0].size() + models[1].size());
        }
    }
    ASSERT_EQ(Item::alive, 0);
}

TEST(DoubleList, ActsAsTheModel) {
    for (unsigned seed = 1; seed <= 10; ++seed) actAsTheModel<DoubleList>(seed);
}

TEST(DoubleList, WithOverridesActsAsTheModel) {
    for (unsigned seed = 11; seed <= 15; ++seed) actAsTheModel<LoggedList>(seed);
}

TEST(DoubleList, OfOneElement) {
    DoubleList list(new Item(7));
    EXPECT_EQ(list.NumberOfElements(), 1);
    EXPECT_EQ(list.Current(), nullptr);
    EXPECT_EQ(list.Next(), list.First());
    EXPECT_EQ(list.Next(), nullptr);
    EXPECT_THAT(numbers(list), ElementsAre(7));
}

TEST(DoubleList, EmptyHasNothingAtItsEnds) {
    DoubleList list;
    EXPECT_TRUE(list.AtFirst());
    EXPECT_TRUE(list.AtLast());
    Item loose;
    EXPECT_FALSE(list.IsFirst(&loose));
    EXPECT_FALSE(list.IsLast(&loose));
}

// The element leaves its own ring; the count that changes is that of the list which was asked.
TEST(DoubleList, DetachOfAForeignElement) {
    DoubleList list(new Item(1)), foreign;
    foreign.AttachAtTail(new Item(2));
    foreign.AttachAtTail(new Item(3));
    std::unique_ptr<DoubleListElement> taken(foreign.First());
    EXPECT_FALSE(list.Detach(taken.get()));
    EXPECT_EQ(list.count, 0);
    EXPECT_EQ(foreign.count, 2);
    EXPECT_THAT(numbers(list), ElementsAre(1));
    EXPECT_THAT(numbers(foreign), ElementsAre(3));
}

std::vector<std::uint32_t> stepsOf(auto&& operation) {
    const std::uint32_t before = kora::traceRing.count;
    operation();
    std::vector<std::uint32_t> steps;
    for (std::uint32_t i = before; i != kora::traceRing.count; ++i)
        steps.push_back(kora::traceRing.words[i % kora::TraceRing::kWords]);
    return steps;
}

TEST(DoubleList, MarksTheStepsOfItsDestruction) {
    DoubleList list;
    EXPECT_THAT(stepsOf([&] { list.DestroyAll(); }), ElementsAre());
    list.AttachAtTail(new Item);
    EXPECT_THAT(stepsOf([&] { list.DestroyAll(); }), ElementsAre(0x4F010, 0x4F01F));
    for (int i = 0; i < 3; ++i) list.AttachAtTail(new Item);
    EXPECT_THAT(stepsOf([&] { list.DestroyAll(); }), ElementsAre(0x4F010, 0x4F011, 0x4F012, 0x4F011, 0x4F012, 0x4F01F));
    auto* owned = new DoubleList(new Item);
    EXPECT_THAT(stepsOf([&] { delete owned; }), ElementsAre(0x4F300, 0x4F010, 0x4F01F, 0x4F30F));
}

// An item that takes itself, or its neighbour too, out of the list while it is deleted.
struct Leaver : Item {
    Leaver(DoubleList& list_, bool takesNext_) : list(list_), takesNext(takesNext_) {}
    ~Leaver() override {
        if (takesNext && next != this) {
            DoubleListElement* neighbour = next;
            list.Detach(neighbour);
            delete neighbour;
        }
        list.Detach(this);
    }
    DoubleList& list;
    bool takesNext;
};

TEST(DoubleList, ElementsMayLeaveWhileTheyAreDestroyed) {
    for (int length = 1; length <= 4; ++length) {
        DoubleList list;
        for (int i = 0; i < length; ++i) list.AttachAtTail(new Leaver(list, false));
        list.DestroyAll();
        EXPECT_EQ(Item::alive, 0);
        EXPECT_EQ(list.First(), nullptr);
        EXPECT_EQ(list.NumberOfElements(), 0);
    }
    DoubleList list;
    list.AttachAtTail(new Leaver(list, true));
    list.AttachAtTail(new Item);
    list.AttachAtTail(new Item);
    list.DestroyAll();
    EXPECT_EQ(Item::alive, 0);
}

}  // namespace
