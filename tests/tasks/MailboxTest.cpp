#include <gmock/gmock.h>

#include <kora/Tsk.h>

#include <thread>
#include <vector>

#include "tasks/Mailbox.h"
#include "tests/support/RecordedPresenter.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Box {
    Box() : id(kora::mailboxOpen(receive, this)) {}
    ~Box() { kora::mailboxClose(id); }
    static void receive(void* context, std::uintptr_t value) {
        auto& box = *static_cast<Box*>(context);
        box.values.push_back(value);
        if (value == kThrow) throw 1;
        if (value == kClose) kora::mailboxClose(box.id);
    }
    static constexpr std::uintptr_t kThrow = 100, kClose = 101;
    std::vector<std::uintptr_t> values;
    std::uint32_t id;
};

class Mailboxes : public testing::Test {
protected:
    void TearDown() override { kora::mailboxesStop(); }
};

TEST_F(Mailboxes, DeliverInOrderToWhomeverIsThere) {
    Box a;
    std::uint32_t gone = 0;
    {
        Box b;
        gone = b.id;
        EXPECT_NE(a.id, b.id);
        EXPECT_NE(a.id, kora::kQuitMailbox);
        kora::mailboxPost(b.id, 1);
    }
    kora::mailboxPost(a.id, 2);
    std::thread([&] { kora::mailboxPost(a.id, 3); }).join();
    EXPECT_THAT(a.values, IsEmpty()) << "nothing before the pump";
    EXPECT_EQ(TskMessagePump(), 3);
    EXPECT_THAT(a.values, ElementsAre(2, 3));
    EXPECT_EQ(TskMessagePump(), 0);
    Box c;
    EXPECT_NE(c.id, gone) << "an old message must not reach a new box";
}

TEST_F(Mailboxes, SurviveTheirHandlers) {
    kora::test::RecordedPresenter presenter;
    Box a;
    for (const std::uintptr_t value : {Box::kThrow, Box::kClose, std::uintptr_t{1}}) kora::mailboxPost(a.id, value);
    EXPECT_EQ(TskMessagePump(), 3);
    EXPECT_THAT(a.values, ElementsAre(Box::kThrow, Box::kClose));
    EXPECT_EQ(presenter.errors.size(), 1U);
}

}  // namespace
