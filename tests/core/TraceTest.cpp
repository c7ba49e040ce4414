#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <kora/Err.h>
#include <kora/Trace.h>

#include <cstdio>
#include <regex>
#include <string>

#include "tests/support/FileFault.h"
#include "tests/support/RecordedPresenter.h"
#include "tests/support/ScopedPlaces.h"

using kora::test::FileFault;
using kora::test::RecordedPresenter;
using kora::test::ScopedPlaces;
using testing::ElementsAre;

namespace {

struct Trace : testing::Test {
    Trace() {
        TraceInit();
        TraceRecordSet(true);
        TraceToFileSet(false);
        TraceTriggerSet(0xFFFFFFFF);
    }
    ~Trace() override {
        TraceToFileSet(false);
        TraceTriggerSet(0);
    }
    std::string log() const { return places.folder.read("documents/ts_error_log.txt"); }
    bool hasLog() const { return places.folder.has("documents/ts_error_log.txt"); }

    // What a dump must look like after the words 1, 2, ... @p count.
    static std::string dumpOf(unsigned count, const std::string& header) {
        std::string text = header + '\n';
        char word[16];
        for (unsigned i = 0; i < 1024; ++i) {
            const unsigned value =
                count <= 1024 ? (i < 1024 - count ? 0 : i - (1024 - count) + 1) : count - 1024 + i + 1;
            std::snprintf(word, sizeof word, i % 8 == 7 ? "%08x\n" : "%08x ", value);
            text += word;
        }
        return text + "$ENDDUMP\n";
    }

    ScopedPlaces places;
};

TEST_F(Trace, DumpsByteForByte) {
    TraceDump(nullptr, true);
    EXPECT_EQ(log(), dumpOf(0, "$STARTDUMP(0)"));
    for (unsigned long i = 1; i <= 1030; ++i) i % 2 ? TraceData(i) : TraceCode(i);
    TraceDump("", true);
    TraceDump("why", true);
    EXPECT_EQ(log(),
              dumpOf(0, "$STARTDUMP(0)") + dumpOf(1030, "$STARTDUMP(406)") + dumpOf(1030, "$STARTDUMP(406) why"));
    EXPECT_EQ(LastTrace(), 1030u);
}

TEST_F(Trace, WritesOnlyWhenSwitchedOnOrForced) {
    TraceNote("a");
    TraceNote("a", "b", false);
    TraceNoteDate("a", false);
    TraceDump("a", false);
    EXPECT_FALSE(hasLog());
    TraceNote("a", "b", true);
    TraceToFileSet(true);
    TraceNote("c");
    TraceNote(nullptr, nullptr, false);
    EXPECT_EQ(log(), "ab\nc\n\n");
}

TEST_F(Trace, DatesNotes) {
    TraceNoteDate("Hello!", true);
    EXPECT_TRUE(std::regex_match(log(), std::regex("[A-Z][a-z]{2} [0-3][0-9], [0-9]{4} - [0-2][0-9]:[0-5][0-9]:"
                                                   "[0-6][0-9] - Hello!\n")))
        << log();
}

TEST_F(Trace, RecordsOnlyWhileSwitchedOn) {
    TraceRecordSet(false);
    TraceCode(1);
    TraceData(2);
    TraceDump(nullptr, true);
    EXPECT_EQ(log(), dumpOf(0, "$STARTDUMP(0)"));
    EXPECT_EQ(LastTrace(), 0u);
}

TEST_F(Trace, TheTriggerDumpsWhileTracingToFile) {
    TraceTriggerSet(2);
    TraceCode(1);
    TraceCode(2);
    EXPECT_FALSE(hasLog());
    TraceToFileSet(true);
    TraceData(3);  // data is no code
    TraceCode(4);
    EXPECT_FALSE(hasLog());
    TraceTriggerSet(5);
    TraceCode(5);
    EXPECT_EQ(log(), dumpOf(5, "$STARTDUMP(5)"));
}

TEST_F(Trace, StandsInTheProgramFolderWithoutDocuments) {
    places.instead["documents"] = "";
    TraceNote("x", "", true);
    EXPECT_EQ(places.folder.read("program/ts_error_log.txt"), "x\n");
}

TEST_F(Trace, ALogThatCannotBeWrittenIsPassedOver) {
    places.folder.makeFolder("documents/ts_error_log.txt");
    TraceNote("x", "", true);
    TraceDump("x", true);
    FileFault fault(1);
    TraceNoteDate("x", true);
    EXPECT_TRUE(fault.wasHit());
}

TEST_F(Trace, ExceptionsAreShownOnceWhenSuppressed) {
    RecordedPresenter user;
    TraceCode(0xABC);
    TraceException("Exception in a test");
    user.suppressNext = true;
    TraceException("Exception in a test");
    TraceException("Exception in a test");
    TraceException(nullptr);
    const std::string rest =
        ", location abc)  -  Save your work under a different name and exit and restart the program as soon as "
        "possible.";
    EXPECT_THAT(user.errors,
                ElementsAre("Internal Error (Exception in a test" + rest, "Internal Error (Exception in a test" + rest,
                            "Internal Error (Undefined exception" + rest));
    EXPECT_FALSE(hasLog());
    TraceException(std::string(4000, 'x').c_str());
    EXPECT_EQ(user.errors.back().size(), 1023u);
}

TEST_F(Trace, NothingIsRecordedWhileTheErrorDialogStands) {
    struct Chatty : MsgPresenter {
        void ErrorDialog(const char*, bool&) override {
            recording = TraceRecordGet();
            throw 1;
        }
        bool recording = true;
    } chatty;
    MsgPresenter* before = MsgPresenterSet(&chatty);
    EXPECT_THROW(TraceException("another"), int);
    MsgPresenterSet(before);
    EXPECT_FALSE(chatty.recording);
    EXPECT_TRUE(TraceRecordGet());
}

}  // namespace
