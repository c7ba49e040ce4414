#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <kora/Err.h>
#include <kora/Test.h>
#include <kora/Trace.h>

#include <algorithm>
#include <cstdio>
#include <regex>
#include <string>

#include "tests/support/ScopedPlaces.h"

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
    std::string log() const { return places.folder.Read("documents/ts_error_log.txt"); }
    bool hasLog() const { return places.folder.Has("documents/ts_error_log.txt"); }

    // What a dump must look like after the words 1, 2, ... @p count.
    static std::string dumpOf(int count, const std::string& header) {
        std::string text = header + '\n';
        char word[16];
        for (int i = 1; i <= 1024; ++i) {
            const int value = std::max(count - 1024 + i, 0);
            std::snprintf(word, sizeof word, i % 8 == 0 ? "%08x\n" : "%08x ", static_cast<unsigned>(value));
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

TEST_F(Trace, DatesNotesAndFindsAPlaceForThem) {
    places.instead["documents"] = "";
    TraceNoteDate("Hello!", true);
    const std::string note = places.folder.Read("program/ts_error_log.txt");
    EXPECT_TRUE(
        std::regex_match(note, std::regex("[A-Z][a-z]{2} [0-3]\\d, \\d{4} - [0-2]\\d:[0-5]\\d:[0-6]\\d - Hello!\n")))
        << note;
    places.instead.clear();
    places.folder.MakeFolder("documents/ts_error_log.txt");  // no log can be written there
    TraceNote("x", "", true);
    TraceDump("x", true);
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
    TraceRecordSet(false);
    TraceCode(5);
    TraceData(6);
    EXPECT_EQ(LastTrace(), 5u);
    EXPECT_EQ(log(), dumpOf(5, "$STARTDUMP(5)"));
}

TEST_F(Trace, ExceptionsAreShownOnceWhenSuppressed) {
    struct Chatty : TestPresenter {
        void ErrorDialog(const char* text, bool& suppress) override {
            recording = TraceRecordGet();
            TestPresenter::ErrorDialog(text, suppress);
            if (throws) throw 1;
        }
        bool recording = true, throws = false;
    } user;
    TraceCode(0xABC);
    TraceException("Exception in a test");
    EXPECT_FALSE(user.recording);
    EXPECT_TRUE(TraceRecordGet());
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
    user.throws = true;
    EXPECT_THROW(TraceException(std::string(4000, 'x').c_str()), int);
    EXPECT_EQ(user.errors.back().size(), 1023u);
    EXPECT_TRUE(TraceRecordGet());
}

}  // namespace
