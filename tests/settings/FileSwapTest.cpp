#include <kora/Ini.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
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
using kora::platform::Failure;
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
    bool leftovers() const { return files.Has(kStateScratch) || files.Has(kStateBackup); }
    std::filesystem::path file() const { return files.Native() / kState; }
};

/// Asks ahead of every operation on a file whether it may be; anything but Cause::none is its failure.
class Watched : public kora::platform::FileSystem {
public:
    using Hook = std::function<Cause(std::string_view operation, const std::string& path)>;
    explicit Watched(Hook before) : hook_(std::move(before)), before_(kora::platform::fileSystemSet(this)) {}
    ~Watched() override { kora::platform::fileSystemSet(before_); }

    bool read(const std::string& path, std::string& bytes, Failure& failure) override {
        return may("read", path, failure) && FileSystem::read(path, bytes, failure);
    }
    bool link(const std::string& from, const std::string& to, Failure& failure) override {
        return may("link", from, failure) && FileSystem::link(from, to, failure);
    }
    bool rename(const std::string& from, const std::string& to, Failure& failure) override {
        return may("rename", from, failure) && FileSystem::rename(from, to, failure);
    }

private:
    bool may(std::string_view operation, const std::string& path, Failure& failure) {
        failure = {hook_(operation, path), 5};
        return failure.cause == Cause::none;
    }
    Hook hook_;
    FileSystem* before_;
};

// Whichever file operation fails, once or, as when the process ends there, with all that follow, the file is whole: its
// old text or its new one.
TEST_F(FileSwap, EveryFaultLeavesAWholeFile) {
    for (const Cause cause : {Cause::full, Cause::denied, Cause::busy, Cause::notFound, Cause::exists})
        for (const bool persistent : {false, true})
            for (int nth = 1; !(persistent && cause == Cause::busy); ++nth) {  // that would wait at every one
                SCOPED_TRACE(testing::Message() << "operation " << nth << ", cause " << static_cast<int>(cause));
                startWith(kOld);
                files.Write(kStateBackup, "of a swap that was broken off");
                files.Write(kStateScratch, "of a swap that was broken off, and longer than what comes now, as may be");
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

TEST_F(FileSwap, OthersAtWorkOnTheFileAreTakenAsTheyCome) {
    struct Row {
        const char* what;
        Watched::Hook meanwhile;
        bool answer;
        const char* after;
    };
    const auto isScratch = [](const std::string& path) { return path.ends_with("qznew96.ert"); };
    const Row rows[] = {
        {"one that cannot be opened is never emptied",
         [](auto operation, auto&) { return operation == "read" ? Cause::denied : Cause::none; }, false, kOld},
        {"one that is held longer is not waited for without end",
         [](auto operation, auto&) { return operation == "read" ? Cause::busy : Cause::none; }, false, kOld},
        {"one that is taken away comes back new",
         [&](auto operation, auto&) {
             if (operation == "link") std::filesystem::remove(file());
             return Cause::none;
         },
         true, kNew},
        {"one that is taken away at the last step gets its old text back",
         [&](auto operation, auto& path) {
             if (operation != "rename" || !isScratch(path)) return Cause::none;
             std::filesystem::remove(file());
             return Cause::denied;
         },
         true, kOld},
        {"a directory in its place stays, and the trace has it",
         [&](auto operation, auto&) {
             if (operation == "link" && std::filesystem::remove(file())) std::filesystem::create_directory(file());
             return Cause::none;
         },
         true, "(directory)"},
    };
    TraceToFileSet(true);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        startWith(kOld);
        Watched watched(row.meanwhile);
        EXPECT_EQ(set(), row.answer);
        EXPECT_EQ(std::filesystem::is_directory(file()) ? "(directory)" : state(), row.after);
        EXPECT_FALSE(leftovers());
    }
    EXPECT_FALSE(set());
    EXPECT_THAT(files.Read(kLog),
                testing::HasSubstr("IniSetString: '" + files.Path("userdata\\Veltrane\\Tessera5\\tsstate.ini") +
                                   "' keeps its old text: "));
}

TEST_F(FileSwap, AMissingFileTakesItsBackupBack) {
    files.MakeFolder(kStateFolder);
    files.Write(kStateBackup, kOld);
    {
        Watched watched([](auto operation, auto&) { return operation == "rename" ? Cause::denied : Cause::none; });
        EXPECT_EQ(get(eIniState, "Frame", "Zoomed"), "(not found)");
        EXPECT_FALSE(set()) << "the backup would be lost";
        EXPECT_FALSE(files.Has(kState));
    }
    kora::settingsStop();
    EXPECT_EQ(get(eIniState, "Frame", "Zoomed"), "False");
    EXPECT_EQ(state(), kOld);
    EXPECT_FALSE(leftovers());

    // A backup beside a file that is there is none of its business, and a directory is nobody's backup.
    startWith(kOld);
    files.Write(kStateBackup, "[Frame]\nZoomed = older\n");
    EXPECT_EQ(get(eIniState, "Frame", "Zoomed"), "False");
    kora::settingsStop();
    files.Write("documents/qzold96.ert", "[S]\nk = 1\n");
    EXPECT_EQ(get(eIniMain, "S", "k"), "1");
    EXPECT_TRUE(files.Has(kMain));
    files.MakeFolder("work/qzold96.ert");
    EXPECT_TRUE(IniMainFileSet(files.Path("work\\own.ini").c_str()));
    EXPECT_FALSE(files.Has("work/own.ini"));
}

#if !defined(_WIN32)

TEST_F(FileSwap, AFileKeepsItsPermissionsAndALinkItsTarget) {
    namespace fs = std::filesystem;
    startWith(kOld);
    files.MakeFolder("elsewhere");
    fs::rename(file(), files.Native() / "elsewhere/real");
    fs::permissions(files.Native() / "elsewhere/real", fs::perms(0640));
    fs::create_symlink("../../../elsewhere/real", file());
    EXPECT_TRUE(set());
    EXPECT_TRUE(fs::is_symlink(file()));
    EXPECT_EQ(files.Read("elsewhere/real"), kNew);
    EXPECT_EQ(fs::status(file()).permissions(), fs::perms(0640));
    EXPECT_EQ(std::distance(fs::directory_iterator(files.Native() / "elsewhere"), {}), 1) << "nothing is left";
    // What the link leads to is made, or taken back from the backup that stands there.
    fs::remove(files.Native() / "elsewhere/real");
    EXPECT_TRUE(set());
    EXPECT_EQ(files.Read("elsewhere/real"), "[Frame]\nZoomed = True\n");
    fs::rename(files.Native() / "elsewhere/real", files.Native() / "elsewhere/qzold96.ert");
    kora::settingsStop();
    EXPECT_EQ(get(eIniState, "Frame", "Zoomed"), "True");
}

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
