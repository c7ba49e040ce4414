#include <kora/Ini.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "platform/Platform.h"
#include "tests/settings/StoreFixture.h"
#include "tests/support/FileFault.h"

#if !defined(_WIN32)
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

using kora::platform::Cause;
using kora::test::FileFault;
using testing::AnyOf;

constexpr char kOld[] = "; kept\r\n[Frame]\r\nZoomed = False\r\nlast = 1";
constexpr char kNew[] = "; kept\r\n[Frame]\r\nZoomed = True\r\nlast = 1";

class FileSwap : public kora::test::StoreFixture {
protected:
    void startWith(const char* text) {
        kora::settingsStop();
        state(text);
        kora::settingsStart();
    }
    static bool set() { return IniSetString(eIniState, "Frame", "Zoomed", "True"); }
    bool leftovers() const { return files.has(kStateScratch) || files.has(kStateBackup); }
};

// Whichever file operation fails, once or, as when the process ends there, with all that follow, the file is whole: its
// old text or its new one.
TEST_F(FileSwap, EveryFaultLeavesAWholeFile) {
    for (const Cause cause : {Cause::full, Cause::denied, Cause::busy, Cause::notFound, Cause::exists})
        for (const bool persistent : {false, true})
            for (int nth = 1; !(persistent && cause == Cause::busy); ++nth) {  // that would wait at every one
                SCOPED_TRACE(testing::Message() << "operation " << nth << ", cause " << static_cast<int>(cause));
                startWith(kOld);
                files.write(kStateBackup, "of a swap that was broken off");
                files.write(kStateScratch, "of a swap that was broken off, and longer than what comes now, as may be");
                bool answer = false, hit = false;
                {
                    FileFault fault(nth, cause, persistent);
                    answer = set();
                    hit = fault.wasHit();
                }
                EXPECT_THAT(state(), AnyOf(kOld, kNew));
                EXPECT_TRUE(answer || state() == kOld);
                // One that is held for a moment is waited for.
                EXPECT_TRUE((hit && cause != Cause::busy) || (answer && state() == kNew && !leftovers()));
                // What is left is no more than what could not be removed, and the next process clears it.
                kora::settingsStop();
                EXPECT_THAT(get(eIniState, "frame", "zoomed"), AnyOf("False", "True"));
                EXPECT_TRUE(set());
                EXPECT_EQ(state(), kNew);
                EXPECT_FALSE(leftovers());
                if (!hit) break;
            }
}

TEST_F(FileSwap, ADirectoryInItsPlaceStays) {
    files.makeFolder(std::string(kState) + "/sub");
    EXPECT_FALSE(set());
    EXPECT_TRUE(files.has(std::string(kState) + "/sub") && !leftovers());
}

TEST_F(FileSwap, AMissingFileTakesItsBackupBack) {
    files.makeFolder(kStateFolder);
    files.write(kStateBackup, kOld);
    EXPECT_EQ(get(eIniState, "Frame", "Zoomed"), "False");
    EXPECT_EQ(state(), kOld);
    EXPECT_FALSE(leftovers());
}

#if !defined(_WIN32)

// A reader that never stops looking sees the file at every moment, and whole; so it is found after the writer was
// killed.
TEST_F(FileSwap, AWriterThatIsKilledAnywhereLeavesAWholeFile) {
    std::mt19937 random(96);
    const auto textOf = [](char c) { return "[S]\nk = " + std::string(3000, c) + "\nlast = 1\n"; };
    const auto isWhole = [&](const std::string& text) { return text.size() > 8 && text == textOf(text[8]); };
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE(round);
        startWith(textOf('a').c_str());
        const pid_t writer = fork();
        ASSERT_NE(writer, -1);
        if (writer == 0)
            for (char c = 'a';; c = c == 'z' ? 'a' : static_cast<char>(c + 1))
                IniSetString(eIniState, "S", "k", std::string(3000, c).c_str());
        int torn = 0;
        for (auto looks = 50 + random() % 400; looks > 0; --looks) torn += !isWhole(state());
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        EXPECT_EQ(torn, 0);
        EXPECT_TRUE(isWhole(state())) << state();
        EXPECT_TRUE(IniSetString(eIniState, "S", "k", "1"));
        EXPECT_EQ(state(), "[S]\nk = 1\nlast = 1\n");
        EXPECT_FALSE(leftovers());
    }
}

#endif

}  // namespace
