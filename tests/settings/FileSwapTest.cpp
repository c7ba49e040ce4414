#include <kora/Ini.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <random>
#include <stdexcept>
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
using kora::platform::Failure;
using kora::platform::FileSystem;
using kora::platform::WriteMode;
using kora::test::FileFault;
using testing::AnyOf;

constexpr char kOld[] = "; kept\r\n[Frame]\r\nZoomed = False\r\nlast = 1";
constexpr char kNew[] = "; kept\r\n[Frame]\r\nZoomed = True\r\nlast = 1";

class FileSwap : public kora::test::StoreFixture {
protected:
    static bool set() { return IniSetString(eIniState, "Frame", "Zoomed", "True"); }
    bool leftovers() const { return files.has(kStateScratch) || files.has(kStateBackup); }
};

/// Calls @p before ahead of every operation on a file; stays in force while it lives.
class Watched : public FileSystem {
public:
    using Hook = std::function<void(const char* operation, const std::string& path)>;
    explicit Watched(Hook before) : hook_(std::move(before)), before_(kora::platform::fileSystemSet(this)) {}
    ~Watched() override { kora::platform::fileSystemSet(before_); }

    bool read(const std::string& path, std::string& bytes, Failure& failure) override {
        hook_("read", path);
        return FileSystem::read(path, bytes, failure);
    }
    bool write(const std::string& path, std::string_view bytes, WriteMode mode, bool flush, Failure& failure) override {
        flushed = flush;
        hook_("write", path);
        // In two steps, so that a process that ends between them leaves half a file.
        if (mode == WriteMode::replace) {
            if (!FileSystem::write(path, bytes.substr(0, bytes.size() / 2), mode, flush, failure)) return false;
            hook_("write the rest of", path);
        }
        return FileSystem::write(path, bytes, mode, flush, failure);
    }
    bool remove(const std::string& path, Failure& failure) override {
        hook_("remove", path);
        return FileSystem::remove(path, failure);
    }
    bool link(const std::string& from, const std::string& to, Failure& failure) override {
        hook_("link", from);
        return FileSystem::link(from, to, failure);
    }
    bool rename(const std::string& from, const std::string& to, Failure& failure) override {
        hook_("rename", from);
        return FileSystem::rename(from, to, failure);
    }

    bool flushed = false;

private:
    Hook hook_;
    FileSystem* before_;
};

TEST_F(FileSwap, WritesToTheDiskAndLeavesNothingBehind) {
    state(kOld);
    files.write(kStateBackup, "of a swap that was broken off");
    files.write(kStateScratch, "of a swap that was broken off, and longer than what comes now, as may well be");
    bool flushedAtSwap = false;
    Watched watched([&](const char* operation, const std::string&) {
        if (operation == std::string("rename")) flushedAtSwap = watched.flushed;
    });
    EXPECT_TRUE(set());
    EXPECT_EQ(state(), kNew);
    EXPECT_TRUE(flushedAtSwap);
    EXPECT_FALSE(leftovers());
}

// Whichever file operation fails, once or from then on, the file is whole: its old text or its new one.
TEST_F(FileSwap, EveryFaultLeavesAWholeFile) {
    for (const Cause cause : {Cause::full, Cause::denied, Cause::busy, Cause::notFound, Cause::exists})
        for (const bool persistent : {false, true})
            for (int nth = 1; !(persistent && cause == Cause::busy); ++nth) {  // that would wait at every one
                SCOPED_TRACE(testing::Message() << "operation " << nth << ", cause " << static_cast<int>(cause));
                state(kOld);
                kora::settingsStop();
                kora::settingsStart();
                bool answer = false, hit = false;
                {
                    FileFault fault(nth, cause, persistent);
                    answer = set();
                    hit = fault.wasHit();
                }
                EXPECT_THAT(state(), AnyOf(kOld, kNew));
                EXPECT_TRUE(answer || state() == kOld);
                // What is left is no more than what could not be removed, and the next setting clears it.
                EXPECT_TRUE(set());
                EXPECT_EQ(state(), kNew);
                EXPECT_FALSE(leftovers());
                if (!hit) {
                    EXPECT_TRUE(answer);
                    break;
                }
            }
}

TEST_F(FileSwap, AFileThatIsHeldForAMomentIsWaitedFor) {
    for (int nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        state(kOld);
        kora::settingsStop();
        kora::settingsStart();
        FileFault fault(nth, Cause::busy);
        EXPECT_TRUE(set());
        if (!fault.wasHit()) break;
        EXPECT_EQ(state(), kNew);
    }
}

TEST_F(FileSwap, AFileThatCannotBeOpenedIsNeverEmptied) {
    state(kOld);
    kora::settingsStart();
    FileFault fault(1, Cause::busy, /*persistent=*/true);
    EXPECT_FALSE(set());
    struct Unreadable : Watched {
        using Watched::Watched;
        bool read(const std::string&, std::string&, Failure& failure) override {
            failure = {Cause::denied, 5};
            return false;
        }
    } unreadable([](const char*, const std::string&) {});
    EXPECT_FALSE(set());
    EXPECT_EQ(state(), kOld);
    EXPECT_FALSE(leftovers());
}

TEST_F(FileSwap, ADirectoryThatTakesThePlaceStaysAndTheTraceHasIt) {
    state(kOld);
    kora::settingsStart();
    TraceToFileSet(true);
    Watched watched([&](const char* operation, const std::string&) {
        if (operation != std::string("write the rest of")) return;
        std::filesystem::remove(files.native() / kState);
        std::filesystem::create_directory(files.native() / kState);
    });
    EXPECT_TRUE(set());  // the text was written; that it could not take its place is another matter
    EXPECT_TRUE(std::filesystem::is_directory(files.native() / kState));
    EXPECT_FALSE(leftovers());
    const std::string log = files.read(kLog);
    EXPECT_NE(log.find("IniSetString: '" + files.path("userdata\\Veltrane\\Tessera5\\tsstate.ini") +
                       "' keeps its old text: "),
              log.npos)
        << log;
    EXPECT_FALSE(set());
}

TEST_F(FileSwap, AFileThatIsTakenAwayMeanwhileComesBackNew) {
    state(kOld);
    kora::settingsStart();
    Watched watched([&](const char* operation, const std::string&) {
        if (operation == std::string("link")) std::filesystem::remove(files.native() / kState);
    });
    EXPECT_TRUE(set());
    EXPECT_EQ(state(), kNew);
}

TEST_F(FileSwap, AFileThatIsTakenAwayAtTheLastStepGetsItsOldTextBack) {
    state(kOld);
    kora::settingsStart();
    struct Taken : Watched {
        Taken(const std::filesystem::path& path) : Watched([](const char*, const std::string&) {}), file(path) {}
        bool rename(const std::string& from, const std::string& to, Failure& failure) override {
            if (!from.ends_with("qznew96.ert")) return Watched::rename(from, to, failure);
            std::filesystem::remove(file);
            failure = {Cause::denied, 5};
            return false;
        }
        const std::filesystem::path file;
    } taken(files.native() / kState);
    EXPECT_TRUE(set());
    EXPECT_EQ(state(), kOld);
    EXPECT_FALSE(leftovers());
}

// Ends the work ahead of its nth operation, as a process that is killed does: nothing is tidied up.
TEST_F(FileSwap, AProcessThatEndsAtAnyStepLeavesAWholeFile) {
    for (int nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        state(kOld);
        kora::settingsStop();
        kora::settingsStart();
        int count = 0;
        {
            Watched watched([&](const char*, const std::string&) {
                if (++count == nth) throw std::runtime_error("killed");
            });
            set();
        }
        EXPECT_THAT(state(), AnyOf(kOld, kNew));
        // The next process reads it, and its first setting clears what the last one left.
        kora::settingsStop();
        EXPECT_THAT(get(eIniState, "frame", "zoomed"), AnyOf("False", "True"));
        EXPECT_TRUE(set());
        EXPECT_EQ(state(), kNew);
        EXPECT_FALSE(leftovers());
        if (count < nth) break;
    }
}

TEST_F(FileSwap, AMissingFileTakesItsBackupBack) {
    files.makeFolder(kStateFolder);
    files.write(kStateBackup, kOld);
    EXPECT_EQ(get(eIniState, "Frame", "Zoomed"), "False");
    EXPECT_EQ(state(), kOld);
    EXPECT_FALSE(leftovers());

    // A backup beside a file that is there is none of its business.
    kora::settingsStop();
    files.write(kStateBackup, "[Frame]\nZoomed = older\n");
    EXPECT_EQ(get(eIniState, "Frame", "Zoomed"), "False");

    files.write("documents/qzold96.ert", "[S]\nk = 1\n");
    kora::settingsStop();
    EXPECT_EQ(get(eIniMain, "S", "k"), "1");
    EXPECT_TRUE(files.has(kMain));
}

TEST_F(FileSwap, ABackupThatCouldNotBeTakenBackIsNotWrittenOver) {
    files.makeFolder(kStateFolder);
    files.write(kStateBackup, kOld);
    {
        struct NoRename : FileFault {
            NoRename() : FileFault(1000) {}
            bool rename(const std::string&, const std::string&, Failure& failure) override {
                failure = {Cause::denied, 5};
                return false;
            }
        } fault;
        EXPECT_EQ(get(eIniState, "Frame", "Zoomed"), "(not found)");
        EXPECT_FALSE(set());
    }
    EXPECT_FALSE(files.has(kState));
    EXPECT_TRUE(set());
    EXPECT_EQ(state(), kNew);
}

#if !defined(_WIN32)

// A reader that never stops looking sees the file at every moment, and whole; so it is found after the writer was
// killed.
TEST_F(FileSwap, AWriterThatIsKilledAnywhereLeavesAWholeFile) {
    constexpr unsigned seed = 96;
    std::mt19937 random(seed);
    const auto textOf = [](char c) { return "[S]\nk = " + std::string(3000, c) + "\nlast = 1\n"; };
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE(round);
        state(textOf('a'));
        kora::settingsStop();
        kora::settingsStart();
        const pid_t writer = fork();
        ASSERT_NE(writer, -1);
        if (writer == 0) {
            for (char c = 'a';; c = c == 'z' ? 'a' : static_cast<char>(c + 1))
                IniSetString(eIniState, "S", "k", std::string(3000, c).c_str());
        }
        std::string seen;
        unsigned torn = 0;
        for (auto looks = 50 + random() % 400; looks > 0; --looks) {
            seen = state();
            torn += seen.size() != textOf('a').size() || seen != textOf(seen[8]);
        }
        kill(writer, SIGKILL);
        waitpid(writer, nullptr, 0);
        EXPECT_EQ(torn, 0u);
        EXPECT_TRUE(files.has(kState));
        seen = state();
        EXPECT_TRUE(seen.size() == textOf('a').size() && seen == textOf(seen[8])) << seen;
        EXPECT_TRUE(IniSetString(eIniState, "S", "k", "1"));
        EXPECT_EQ(state(), "[S]\nk = 1\nlast = 1\n");
        EXPECT_FALSE(leftovers());
    }
}

#endif

}  // namespace
