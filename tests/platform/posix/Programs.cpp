#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>

#include "platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace {

using namespace kora::platform;

/// Stands in for the desktop's opener: a script that keeps what it was asked to open.
class Opening : public testing::Test {
protected:
    Opening() {
        folder.makeFolder("bin");
        script("bin/xdg-open", "#!/bin/sh\nprintf '%s' \"$*\" > '" + folder.nativeText("opened") + "'\n");
        folder.write("paper.txt", "text");
        setenv("PATH", folder.nativeText("bin").c_str(), 1);
    }
    ~Opening() override { before ? setenv("PATH", before->c_str(), 1) : unsetenv("PATH"); }
    void script(const char* name, const std::string& text) {
        folder.write(name, text);
        chmod(folder.nativeText(name).c_str(), 0755);
    }
    bool runs(const char* name, bool wait) {
        return runProgram(folder.path(name), "not for openers", 1, wait, failure);
    }

    const std::optional<std::string> before = environment().variable("PATH");
    const kora::test::TestFolder folder;
    Failure failure;
};

TEST_F(Opening, HandsFilesToTheOpener) {
    script("marked.txt", "executable by its mark alone");
    for (const char* name : {"paper.txt", "marked.txt", "bin"}) {
        ASSERT_TRUE(runs(name, /*wait=*/true)) << name;
        EXPECT_EQ(folder.read("opened"), folder.nativeText(name));
    }
}

TEST_F(Opening, SaysWhatKeepsItFromStarting) {
    script("script", "#!/no/such/interpreter\n");
    std::filesystem::remove(folder.native() / "bin" / "xdg-open");
    for (const bool wait : {false, true}) {
        EXPECT_FALSE(runs("paper.txt", wait));
        EXPECT_EQ(failure.cause, Cause::unsupported);
        EXPECT_FALSE(runs("script", wait));
        EXPECT_EQ(failure.cause, Cause::notFound);
    }
}

TEST_F(Opening, LeavesNoChildBehind) {
    ASSERT_EQ(mkfifo(folder.nativeText("done").c_str(), 0600), 0);
    script("bin/xdg-open", "#!/bin/sh\necho done > '" + folder.nativeText("done") + "'\n");
    ASSERT_TRUE(runs("paper.txt", /*wait=*/false));
    EXPECT_EQ(folder.read("done"), "done\n");  // a pipe: reading waits until it ran
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

}  // namespace
