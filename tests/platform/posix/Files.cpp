#include <gtest/gtest.h>
#include <kora/Test.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <random>
#include <set>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

class PosixFiles : public testing::Test {
protected:
    std::string at(const char* name) const { return folder.Path(name); }
    bool reads(const char* name) { return files.read(at(name), bytes, failure); }
    void mark(const char* name, mode_t mode) { ASSERT_EQ(chmod(folder.NativeText(name).c_str(), mode), 0); }

    const TestFolder folder;
    FileSystem& files = fileSystem();
    Failure failure;
    std::string bytes;
};

// Files come and go under a directory that has been read, in whatever letter case; what is found is what is there.
TEST_F(PosixFiles, AreFoundInADirectoryThatChanges) {
    std::mt19937 random(7);
    std::set<std::string> there;
    const auto anyCase = [&] {
        std::string name = "abcd";
        for (char& c : name)
            if (random() % 2) c = static_cast<char>(c - 'a' + 'A');
        return name;
    };
    for (int step = 0; step < 600; ++step) {
        if (step % 200 == 199) pause(150);  // the listing is kept once the directory has been still for a while
        const std::string name = anyCase(), asked = anyCase();
        const auto what = random() % 8;
        if (what == 0) {
            folder.Write(name, name);
            there.insert(name);
        } else if (what < 3) {
            std::filesystem::remove(folder.Native() / name);
            there.erase(name);
        } else if (what == 3) {
            for (const std::string& each : there) std::filesystem::remove(folder.Native() / each);
            there.clear();
        }
        for (int again = 0; again < 2; ++again) {
            FileStatus status;
            ASSERT_EQ(files.status(at(asked.c_str()), status, failure), !there.empty()) << step;
            ASSERT_EQ(files.kind(at(asked.c_str()), status.kind, failure), !there.empty()) << step;
            ASSERT_EQ(reads(asked.c_str()), !there.empty()) << step;
            const std::string found = there.empty() || there.contains(asked) ? asked : *there.begin();
            ASSERT_EQ(there.empty() ? asked : bytes, found) << step;
        }
    }
}

TEST_F(PosixFiles, ThatAreNotOrdinaryAreRefusedWithoutWaiting) {
    ASSERT_EQ(mkfifo(folder.NativeText("pipe").c_str(), 0600), 0);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    folder.NativeText("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    for (const std::string& path : {at("pipe"), at("socket"), std::string("Z:\\dev\\null")}) {
        EXPECT_FALSE(files.read(path, bytes, failure));
        EXPECT_EQ(failure.cause, Cause::wrongKind) << path;
        failure = {};
        EXPECT_FALSE(files.write(path, "x", WriteMode::append, false, failure));
        EXPECT_EQ(failure.cause, Cause::wrongKind) << path;
        LoadFailure refused;
        EXPECT_EQ(loadModule(path, refused), 0u);
        EXPECT_EQ(refused.code, 193u) << path;
    }
    close(server);
    // what the system makes up as it is read is one, of any length
    ASSERT_TRUE(files.read("Z:\\proc\\self\\status", bytes, failure));
    EXPECT_NE(bytes.find("Pid:\t" + std::to_string(processId()) + '\n'), std::string::npos);
    EXPECT_TRUE(bytes.ends_with('\n'));
}

TEST_F(PosixFiles, KeepToPermissions) {
    folder.Write("secret.qzx", "x");
    folder.MakeFolder("shut");
    mark("secret.qzx", 0);
    mark("shut", 0555);
    mark("", 0755);
    const uid_t user = geteuid();
    ASSERT_EQ(seteuid(user == 0 ? 65534 : user), 0);  // the superuser may do everything
    EXPECT_FALSE(reads("secret.qzx"));
    EXPECT_EQ(failure.cause, Cause::denied);
    LoadFailure refused;
    EXPECT_EQ(loadModule(at("secret.qzx"), refused), 0u);
    EXPECT_EQ(refused.code, 5u);
    failure = {};
    EXPECT_FALSE(files.write(at("shut\\new"), "x", WriteMode::replace, false, failure));
    EXPECT_EQ(failure.cause, Cause::denied);
    FileStatus status;
    EXPECT_TRUE(files.status(at("shut"), status, failure) && status.readOnly);
    ASSERT_EQ(seteuid(user), 0);
}

TEST_F(PosixFiles, SayThatThereIsNoRoom) {
    rlimit before;
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    const rlimit small = {10'000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const bool written = files.write(at("f"), std::string(100'000, 'x'), WriteMode::replace, false, failure);
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, handler);
    EXPECT_FALSE(written);
    EXPECT_EQ(failure.cause, Cause::full);
    EXPECT_EQ(folder.Read("f"), std::string(10'000, 'x'));
}

// One file is one file, whichever way leads to it: renaming it onto itself must not lose it.
TEST_F(PosixFiles, RenamedOntoThemselvesByAnotherWayAreKept) {
    folder.MakeFolder("d");
    folder.Write("d/f", "text");
    std::filesystem::create_directory_symlink("d", folder.Native() / "way");
    EXPECT_TRUE(files.rename(at("d\\f"), at("way\\f"), failure));
    EXPECT_EQ(folder.Read("d/f"), "text");
    ASSERT_TRUE(files.link(at("d\\f"), at("d\\g"), failure));
    EXPECT_TRUE(files.rename(at("d\\f"), at("way\\g"), failure));
    EXPECT_FALSE(folder.Has("d/f"));
    ASSERT_TRUE(files.rename(at("d\\g"), at("D\\G"), failure));
    EXPECT_EQ(folder.Read("d/G"), "text");  // a new letter case is a new name
    EXPECT_FALSE(folder.Has("d/g"));
}

}  // namespace
