#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>

#include "platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace {

using namespace kora::platform;
using kora::test::TestFolder;

/// Stands in for the desktop's opener: a script that keeps what it was asked to open.
class Opening : public testing::Test {
protected:
    Opening() {
        folder.write("bin/xdg-open", "#!/bin/sh\nprintf '%s' \"$*\" > '" + folder.nativeText("opened") + "'\n");
        chmod(folder.nativeText("bin/xdg-open").c_str(), 0755);
        setenv("PATH", folder.nativeText("bin").c_str(), 1);
    }
    ~Opening() override { before ? setenv("PATH", before->c_str(), 1) : unsetenv("PATH"); }

    const std::optional<std::string> before = environment().variable("PATH");
    struct Folder : TestFolder {
        Folder() { makeFolder("bin"); }
    } folder;
};

TEST_F(Opening, HandsFilesToTheOpener) {
    folder.write("paper.txt", "text");
    folder.write("marked.txt", "executable by its mark alone");
    chmod(folder.nativeText("marked.txt").c_str(), 0755);
    for (const char* name : {"paper.txt", "marked.txt", "bin"}) {
        Failure failure;
        ASSERT_TRUE(runProgram(folder.path(name), "not for openers", 1, /*wait=*/true, failure)) << name;
        EXPECT_EQ(folder.read("opened"), folder.nativeText(name));
    }
}

TEST_F(Opening, FailsWhereNothingOpensFiles) {
    folder.write("paper.txt", "text");
    std::filesystem::remove(folder.native() / "bin" / "xdg-open");
    for (const bool wait : {false, true}) {
        Failure failure;
        EXPECT_FALSE(runProgram(folder.path("paper.txt"), "", 1, wait, failure));
        EXPECT_EQ(failure.cause, Cause::unsupported);
    }
}

TEST_F(Opening, SaysWhyAProgramDoesNotStart) {
    folder.write("script", "#!/no/such/interpreter\n");
    chmod(folder.nativeText("script").c_str(), 0755);
    for (const bool wait : {false, true}) {
        Failure failure;
        EXPECT_FALSE(runProgram(folder.path("script"), "", 1, wait, failure));
        EXPECT_EQ(failure.cause, Cause::notFound);
    }
}

TEST_F(Opening, LeavesNoChildBehind) {
    folder.write("paper.txt", "text");
    Failure failure;
    ASSERT_EQ(mkfifo(folder.nativeText("done").c_str(), 0600), 0);
    folder.write("bin/xdg-open", "#!/bin/sh\necho done > '" + folder.nativeText("done") + "'\n");
    ASSERT_TRUE(runProgram(folder.path("paper.txt"), "", 1, /*wait=*/false, failure));
    EXPECT_EQ(folder.read("done"), "done\n");  // a pipe: reading waits until it ran
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

}  // namespace
