#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <kora/Err.h>
#include <kora/Test.h>
#include <kora/Trace.h>
#include <kora/Tsk.h>

#include <string>

#include "core/TraceRing.h"

using testing::ElementsAre;

namespace {

eTskKoraModule ignoredStatus;

class Module : public TskKoraModule {
public:
    explicit Module(const char* name) : TskKoraModule(ignoredStatus, name, false, false) {}
    const char* TskKoraName() override {
        ++asked;
        return TskKoraModule::TskKoraName();
    }
    bool TskErrHandler() override { return handles; }
    int asked = 0;
    bool handles = false;
};

struct Error : testing::Test {
    TestPresenter user;
    Module module{"Sim"};
    void* reference = reinterpret_cast<void*>(std::intptr_t{18});
    ~Error() override { ErrReport(); }
    std::string reported() {
        EXPECT_TRUE(ErrReport());
        return user.alerts.empty() ? "" : user.alerts.back().text;
    }
};

TEST_F(Error, TheFirstOneWins) {
    EXPECT_FALSE(ErrSet(&module, 5, 0x12, reference));
    EXPECT_TRUE(ErrSet(nullptr, 6, 7, nullptr));
    EXPECT_EQ(module.asked, 1);
    EXPECT_EQ(reported(), "Unknown error occurred. Kora Module 'Sim'  Location 0x12 (18)  Reference 0x12 (18)");
    EXPECT_EQ(user.alerts.back().style, 0x30u);
    EXPECT_FALSE(ErrReport());
    EXPECT_EQ(user.alerts.size(), 1u);

    TskKoraModule* who = nullptr;
    long number = 0, location = 0;
    void* what = nullptr;
    EXPECT_FALSE(ErrGet(who, number, location, what));  // the reported error stays readable
    EXPECT_EQ(who, &module);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(location, 0x12);
    EXPECT_EQ(what, reference);
}

TEST_F(Error, NumbersChooseTheTextUnlessTheModuleDealsWithIt) {
    ErrSet(nullptr, -2, -1, reinterpret_cast<void*>(std::intptr_t{-1}));
    EXPECT_EQ(reported(),
              "Unable to complete operation as system memory has been exhausted. Kora Module ''  Location 0xffffffff "
              "(-1)  Reference 0xffffffff (-1)");
    EXPECT_EQ(user.alerts.back().style, 0u);
    ErrSet(&module, -1, 3, reference);
    EXPECT_EQ(reported(), "Available memory is getting low.");
    EXPECT_EQ(user.alerts.back().style, 0x30u);
    module.handles = true;
    ErrSet(&module, 5, 1, nullptr);
    EXPECT_TRUE(ErrReport());
    EXPECT_EQ(user.alerts.size(), 2u);
    EXPECT_FALSE(ErrReport());
}

TEST_F(Error, ReportsDoNotNest) {
    struct Nested : TestPresenter {
        int Alert(const char* text, unsigned style) override {
            EXPECT_TRUE(ErrReport());
            if (throws) throw 1;
            return TestPresenter::Alert(text, style);
        }
        bool throws = true;
    } nested;
    ErrSet(&module, 5, 1, nullptr);
    EXPECT_THROW(ErrReport(), int);
    EXPECT_FALSE(ErrReport());  // cleared on the way out
    nested.throws = false;
    ErrSet(&module, 6, 1, nullptr);
    EXPECT_TRUE(ErrReport());
    EXPECT_EQ(nested.alerts.size(), 1u);
    EXPECT_EQ(MsgPresenterSet(&nested), &nested);
}

TEST_F(Error, LongNamesAreCutAt1023Characters) {
    Module loud(std::string(5000, 'n').c_str());
    ErrSet(&loud, 5, 1, nullptr);
    EXPECT_EQ(reported().size(), 1023u);
    TskError("%s", std::string(3000, 'x').c_str());
    EXPECT_EQ(user.alerts.back().text, std::string(1023, 'x'));
    TskFatal("%s", std::string(3000, 'x').c_str());
    EXPECT_EQ(user.alerts.size(), 2u);  // silent
}

TEST_F(Error, BoxesMapIconsButtonsAndAnswers) {
    struct Row {
        int icon, buttons;
        unsigned style;
        int control, answer;
    };
    static constexpr Row rows[] = {{0, 10, 0x42, 3, 1}, {1, 11, 0x30, 1, 5},  {2, 12, 1, 2, 2},
                                   {3, 13, 0x25, 4, 6}, {9, 14, 4, 7, 4},     {0, 15, 0x43, 6, 7},
                                   {0, 99, 0x40, 5, 3}, {0, 11, 0x40, 77, 0}, {-1, -1, 0, 0, 0}};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "icon " << row.icon << " buttons " << row.buttons);
        user.answer = row.control;
        EXPECT_EQ(MsgAlert(eMsgIcon(row.icon), eMsgButton(row.buttons), 0, "never shown", "%d%%", 5), row.answer);
        EXPECT_EQ(user.alerts.back().text, "5%");
        EXPECT_EQ(user.alerts.back().style, row.style);
    }
    user.continueAnswer = 1219;
    EXPECT_EQ(MsgAlert(MsgIconNone, MsgButtonContinueAlert, 0, "", "go on?"), MsgReturnContinueFirst);
    user.continueAnswer = 1220;
    EXPECT_EQ(MsgAlert(MsgIconNone, MsgButtonContinueAlert, 0, "", "go on?"), MsgReturnContinueSecond);
    EXPECT_THAT(user.continueAlerts, ElementsAre("go on?", "go on?"));
}

TEST(Fault, IsTracedAndTheWorstIsKept) {
    TraceInit();
    int thing = 0;
    unsigned long code = 0;
    void* data = nullptr;
    int textId = 0;
    ERR(eErrorLevel(3), 1, 0x25, 520, &thing, 0);
    EXPECT_EQ(kora::traceRing.count, 3u);
    EXPECT_EQ(kora::traceRing.words[0], 3u << 28 | 1u << 24 | 1u << 18 | 0x25u << 12 | 520u);
    EXPECT_EQ(kora::traceRing.words[1], static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&thing)));
    EXPECT_EQ(kora::traceRing.words[2], 0u);
    EXPECT_EQ(LastTrace(), kora::traceRing.words[0]);

    EXPECT_TRUE(ErrSevereGet(code, data, textId));
    EXPECT_EQ(code, 3ul << 28 | 1ul << 18 | 0x25ul << 12 | 520ul);
    EXPECT_EQ(data, &thing);
    const auto severest = [&] {
        EXPECT_TRUE(ErrSevereGet(code, data, textId));
        return code;
    };
    ERR(eErrorLevel(2), 1, 1, 1, nullptr, 1279);  // milder
    EXPECT_EQ(severest() & 0xFFF, 520u);
    ERR(eErrorLevel(3), 1, 2, 7, nullptr, 1279);  // equally bad, newer; the text is there
    EXPECT_EQ(severest() & 0xFFF, 7u);
    EXPECT_EQ(textId, 1279);
    ERR(eErrorLevel(15), 0x1FF, 0x7F, 0x1FFF, nullptr, 4711);  // fields spill; the text is not there
    EXPECT_EQ(severest(), static_cast<std::uint32_t>(((15ul << 10 | 0x1FF) << 6 | 0x7F) << 12 | 0x1FFF));
    EXPECT_EQ(textId, 0);
}

}  // namespace
