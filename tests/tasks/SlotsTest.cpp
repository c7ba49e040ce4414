#include <gtest/gtest.h>
#include <kora/Not.h>
#include <kora/Tmr.h>
#include <kora/Tsk.h>

#include "tests/support/VirtualSlot.h"

namespace {

using kora::test::firstOutOfSlot;

TEST(TaskSlots, StandInTheOrderThatModulesAreCompiledAgainst) {
    using A = TskApplication;
    EXPECT_EQ(firstOutOfSlot(&A::TskAppPrepareOnce, &A::TskAppPrepare, &A::TskAppInit, &A::TskAppStart, &A::TskAppIdle,
                             &A::TskAppPreTranslate, &A::TskAppWait, &A::TskAppBusy, &A::TskAppStay, &A::TskAppQuit,
                             &A::TskAppEnding, &A::TskAppExit, &A::TskAppRecentAdd, &A::TskAppRecentGet,
                             &A::TskAppSettingsSave),
              0);
    using M = TskKoraModule;
    constexpr bool (M::*wakeWith)(const char*) = &M::TskWakeUp;
    constexpr void (M::*wake)() = &M::TskWakeUp;
    EXPECT_EQ(firstOutOfSlot(&M::TskHandleGet, &M::TskHandleSet, &M::TskInit1, &M::TskInit2, &M::TskInit3, &M::TskInit4,
                             &M::TskInitFinal, &M::TskInitFile, &M::TskSuspend, &M::TskResume, &M::TskKoraSuspend,
                             &M::TskKoraResume, &M::TskExitRequest, &M::TskExit1, &M::TskExit2, &M::TskErrHandler,
                             &M::TskKoraName, &M::TskFileName, &M::TskInitSuccessful, &M::TskAwaken, wakeWith, wake,
                             &M::TskVisible, &M::TskHide),
              0);
    using T = TmrTimer;
    EXPECT_EQ(firstOutOfSlot(&T::TmrStart, &T::TmrStop, &T::TmrIntervalSet, &T::TmrIntervalGet, &T::TmrExpiry), 0);
    EXPECT_EQ(kora::test::virtualSlot(&T::TmrSetHighPriorityIdle), -1);
    using N = NotNotify;
    EXPECT_EQ(firstOutOfSlot(&N::Attach, &N::Detach, &N::Exists, &N::Notify), 0);
}

}  // namespace
