#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <random>
#include <set>

#include "platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace {

using namespace kora::platform;
using kora::test::TestFolder;

constexpr uid_t kNobody = 65534;

/// Gives the rights of the superuser up while it lives, where the tests run with them.
class Unprivileged {
public:
    Unprivileged() : before_(geteuid()) { EXPECT_EQ(seteuid(before_ == 0 ? kNobody : before_), 0); }
    ~Unprivileged() { EXPECT_EQ(seteuid(before_), 0); }

private:
    uid_t before_;
};

TEST(FileNames, ExactOnesWinOverOtherLetterCases) {
    const TestFolder folder;
    for (const char* name : {"read.me", "READ.ME", "Read.Me"}) folder.write(name, name);
    std::string bytes;
    Failure failure;
    for (const auto& [asked, found] :
         {std::pair{"Read.Me", "Read.Me"}, {"read.me", "read.me"}, {"rEAD.ME", "READ.ME"}}) {
        ASSERT_TRUE(fileSystem().read(folder.path(asked), bytes, failure));
        EXPECT_EQ(bytes, found);
    }
    // a directory that fits exactly is gone into, even where another one has the file
    folder.makeFolder("dir");
    folder.makeFolder("Dir");
    folder.write("Dir/x", "x");
    EXPECT_FALSE(fileSystem().read(folder.path("dir\\x"), bytes, failure));
    EXPECT_TRUE(fileSystem().read(folder.path("DIR\\X"), bytes, failure));
    // links that lead nowhere are there too
    std::filesystem::create_symlink("nowhere", folder.native() / "link");
    folder.write("LINK", "not meant");
    EXPECT_FALSE(fileSystem().read(folder.path("link"), bytes, failure));
    EXPECT_TRUE(fileSystem().remove(folder.path("link"), failure));
    EXPECT_TRUE(folder.has("LINK"));
}

// Files come and go under a directory that has been read, in whatever letter case; what is found is what is there.
TEST(FileNames, AreFoundInADirectoryThatChanges) {
    const TestFolder folder;
    std::mt19937 random(7);
    std::set<std::string> there;
    const auto anyCase = [&] {
        std::string name = "abcd";
        for (char& c : name)
            if (random() % 2) c = static_cast<char>(c - 'a' + 'A');
        return name;
    };
    for (int step = 0; step < 600; ++step) {
        // The listing is kept once the directory has been still for a while.
        if (step % 200 == 199) pause(150);
        const std::string name = anyCase(), asked = anyCase();
        const unsigned what = static_cast<unsigned>(random() % 8);
        if (what == 0) {
            folder.write(name, name);
            there.insert(name);
        } else if (what < 3) {
            std::filesystem::remove(folder.native() / name);
            there.erase(name);
        } else if (what == 3) {
            for (const std::string& each : there) std::filesystem::remove(folder.native() / each);
            there.clear();
        }
        std::string bytes;
        Failure failure;
        for (int again = 0; again < 2; ++again) {
            FileStatus status;
            ASSERT_EQ(fileSystem().status(folder.path(asked), status, failure), !there.empty()) << step;
            ASSERT_EQ(fileSystem().kind(folder.path(asked), status.kind, failure), !there.empty()) << step;
            ASSERT_EQ(fileSystem().read(folder.path(asked), bytes, failure), !there.empty()) << step;
            if (there.empty()) continue;
            ASSERT_EQ(bytes, there.contains(asked) ? asked : *there.begin()) << step;
        }
    }
}

TEST(FileSystem, RefusesWhatIsNoOrdinaryFileWithoutWaiting) {
    const TestFolder folder;
    ASSERT_EQ(mkfifo(folder.nativeText("pipe").c_str(), 0600), 0);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    folder.nativeText("socket").copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    for (const std::string& path : {folder.path("pipe"), folder.path("socket"), std::string("Z:\\dev\\null")}) {
        SCOPED_TRACE(path);
        std::string bytes;
        Failure failure;
        EXPECT_FALSE(fileSystem().read(path, bytes, failure));
        EXPECT_EQ(failure.cause, Cause::wrongKind);
        failure = {};
        EXPECT_FALSE(fileSystem().write(path, "x", WriteMode::append, false, failure));
        EXPECT_EQ(failure.cause, Cause::wrongKind);
    }
    close(server);
}

TEST(FileSystem, ReadsFilesThatTheSystemMakesUp) {
    std::string bytes;
    Failure failure;
    ASSERT_TRUE(fileSystem().read("Z:\\proc\\self\\status", bytes, failure));
    EXPECT_NE(bytes.find("Pid:\t" + std::to_string(processId()) + '\n'), std::string::npos);
    EXPECT_TRUE(bytes.ends_with('\n'));
}

TEST(FileSystem, KeepsToPermissions) {
    const TestFolder folder;
    folder.write("secret", "x");
    folder.makeFolder("shut");
    chmod(folder.nativeText("secret").c_str(), 0);
    chmod(folder.nativeText("shut").c_str(), 0555);
    chmod(folder.nativeText().c_str(), 0755);
    const Unprivileged rights;
    std::string bytes;
    Failure failure;
    FileStatus status;
    EXPECT_FALSE(fileSystem().read(folder.path("secret"), bytes, failure));
    EXPECT_EQ(failure.cause, Cause::denied);
    failure = {};
    EXPECT_FALSE(fileSystem().write(folder.path("shut\\new"), "x", WriteMode::replace, false, failure));
    EXPECT_EQ(failure.cause, Cause::denied);
    ASSERT_TRUE(fileSystem().status(folder.path("shut"), status, failure));
    EXPECT_TRUE(status.readOnly);
}

TEST(FileSystem, SaysThatThereIsNoRoom) {
    const TestFolder folder;
    rlimit before;
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    const rlimit small = {10'000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    Failure failure;
    const bool written =
        fileSystem().write(folder.path("f"), std::string(100'000, 'x'), WriteMode::replace, false, failure);
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, handler);
    EXPECT_FALSE(written);
    EXPECT_EQ(failure.cause, Cause::full);
    EXPECT_EQ(folder.read("f"), std::string(10'000, 'x'));
}

// One file is one file, whichever way leads to it: renaming it onto itself must not lose it.
TEST(FileSystem, KeepsAFileThatIsRenamedOntoItselfByAnotherWay) {
    const TestFolder folder;
    folder.makeFolder("d");
    folder.write("d/f", "text");
    std::filesystem::create_directory_symlink("d", folder.native() / "way");
    Failure failure;
    EXPECT_TRUE(fileSystem().rename(folder.path("d\\f"), folder.path("way\\f"), failure));
    EXPECT_EQ(folder.read("d/f"), "text");
    ASSERT_TRUE(fileSystem().link(folder.path("d\\f"), folder.path("d\\g"), failure));
    EXPECT_TRUE(fileSystem().rename(folder.path("d\\f"), folder.path("way\\g"), failure));
    EXPECT_FALSE(folder.has("d/f"));
    EXPECT_EQ(folder.read("d/g"), "text");
    ASSERT_TRUE(fileSystem().rename(folder.path("d\\g"), folder.path("D\\G"), failure));
    EXPECT_EQ(folder.read("d/G"), "text");  // a new letter case is a new name
    EXPECT_FALSE(folder.has("d/g"));
}

TEST(FileSystem, ListsWhatCanBeNamed) {
    const TestFolder folder;
    folder.makeFolder("d");
    folder.write("f", "");
    folder.write("back\\slash", "");
    std::filesystem::create_symlink("nowhere", folder.native() / "dangling");
    std::filesystem::create_directory_symlink("d", folder.native() / "way");
    std::vector<DirectoryEntry> entries;
    Failure failure;
    ASSERT_TRUE(fileSystem().list(folder.path(), entries, failure));
    std::set<std::pair<std::string, FileKind>> found;
    for (const DirectoryEntry& entry : entries) found.emplace(entry.name, entry.kind);
    EXPECT_EQ(found, (std::set<std::pair<std::string, FileKind>>{{"d", FileKind::directory},
                                                                 {"f", FileKind::file},
                                                                 {"dangling", FileKind::none},
                                                                 {"way", FileKind::directory}}));
}

TEST(FileSystem, GivesAFileTheAccessOfAnother) {
    const TestFolder folder;
    folder.write("model", "x");
    const std::string model = folder.nativeText("model"), made = folder.nativeText("new");
    const bool maySetOwner = chown(model.c_str(), kNobody, kNobody) == 0;
    for (const mode_t mode : {0600u, 0444u, 0666u}) {
        ASSERT_EQ(chmod(model.c_str(), mode), 0);
        Failure failure;
        ASSERT_TRUE(fileSystem().writeLike(folder.path("new"), folder.path("MODEL"), "text", failure));
        struct stat status;
        ASSERT_EQ(stat(made.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, mode);
        EXPECT_EQ(status.st_uid, maySetOwner ? kNobody : geteuid());
    }
}

TEST(FileSystem, FollowsLinksToTheirEnd) {
    const TestFolder folder;
    folder.makeFolder("a/b");
    folder.write("a/file", "x");
    const auto link = [&](const std::string& target, const char* name) {
        std::filesystem::create_symlink(target, folder.native() / name);
    };
    link("a/b/second", "first");
    link("../FILE", "a/b/second");
    link(folder.nativeText("first"), "whole");
    link("a/none", "nowhere");
    link("circle", "circle");
    link("a\\file", "separator");
    const auto end = [&](const char* name) {
        std::string target = "(none)";
        Failure failure;
        fileSystem().resolveLinks(folder.path(name), target, failure);
        return target;
    };
    for (const char* name : {"first", "FIRST", "whole"}) EXPECT_EQ(end(name), folder.path("a\\b\\..\\FILE"));
    EXPECT_EQ(end("nowhere"), folder.path("a\\none"));
    for (const char* name : {"circle", "separator"}) EXPECT_EQ(end(name), "(none)");
}

}  // namespace
