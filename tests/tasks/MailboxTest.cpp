#include <gmock/gmock.h>

#include <kora/Tsk.h>

#include <thread>
#include <vector>

#include "tasks/Mailbox.h"
#include "tests/support/RecordedPresenter.h"

namespace {

using testing::ElementsAre;

constexpr std::uintptr_t kThrow = 100, kClose = 101;

struct Box {
    Box() : id(kora::mailboxOpen(receive, this)) {}
    ~Box() { kora::mailboxClose(id); }
    static void receive(void* context, std::uintptr_t value) {
        auto& box = *static_cast<Box*>(context);
        box.values.push_back(value);
        if (value == kThrow) throw 1;
        if (value == kClose) kora::mailboxClose(box.id);
    }
    std::vector<std::uintptr_t> values;
    std::uint32_t id;
};

TEST(Mailboxes, DeliverInOrderToWhomeverIsThere) {
    kora::test::RecordedPresenter presenter;
    Box a;
    auto* b = new Box;
    const std::uint32_t gone = b->id;
    kora::mailboxPost(gone, 1);
    delete b;
    kora::mailboxPost(a.id, 2);
    std::thread([&] { kora::mailboxPost(a.id, 3); }).join();
    for (const std::uintptr_t value : {kThrow, kClose, std::uintptr_t{4}}) kora::mailboxPost(a.id, value);
    EXPECT_THAT(a.values, ElementsAre()) << "nothing before the pump";
    EXPECT_EQ(TskMessagePump(), 6);
    EXPECT_EQ(TskMessagePump(), 0);
    EXPECT_THAT(a.values, ElementsAre(2, 3, kThrow, kClose));
    EXPECT_EQ(presenter.errors.size(), 1U);
    const Box c;
    EXPECT_NE(c.id, gone) << "an old message must not reach a new box";
    EXPECT_NE(c.id, kora::kQuitMailbox);
    kora::mailboxesStop();
}

}  // namespace
