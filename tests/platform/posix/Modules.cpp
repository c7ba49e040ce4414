#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <clocale>

#include "platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace {

using namespace kora::platform;
using kora::test::TestFolder;

std::string fixture(const char* name) { return environment().programDirectory() + "\\platform-fixtures\\" + name; }

TEST(LoadModule, TellsMoreOfTheReasonsApart) {
    const TestFolder folder;
    folder.makeFolder("directory.qzx");
    folder.write("shut.qzx", "x");
    chmod(folder.nativeText("shut.qzx").c_str(), 0);
    chmod(folder.nativeText().c_str(), 0755);
    struct Row {
        std::string path;
        std::uint32_t code;
        const char* detail;
    };
    const Row rows[] = {
        {folder.path("none\\none.qzx"), 3, ""},
        {"Q:\\none.qzx", 3, ""},
        {folder.path("directory.qzx"), 5, ""},
        {folder.path("shut.qzx"), geteuid() == 0 ? 193u : 5u, ""},
        {fixture("platform-unresolved.qzx"), 127, "undefined symbol"},
        {fixture("platform-needs.qzx"), 126, "platform-needed"},
        {environment().programDirectory() + "\\kora-test-platform", 193, ""},  // a program
        {"Z:\\dev\\null", 193, ""},
    };
    std::setlocale(LC_ALL, "");  // the loader's sentences are read, in whatever language
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path);
        LoadFailure failure;
        EXPECT_EQ(loadModule(row.path, failure), 0u);
        EXPECT_EQ(failure.code, row.code) << failure.detail;
        EXPECT_NE(failure.detail.find(row.detail), std::string::npos) << failure.detail;
    }
    std::setlocale(LC_ALL, "C");
}

// However a library is cut or its head is broken, it loads or is refused; the process goes on.
TEST(LoadModule, SurvivesBrokenLibraries) {
    std::string good;
    Failure ignored;
    ASSERT_TRUE(fileSystem().read(fixture("platform-good.qzx"), good, ignored));
    const TestFolder folder;
    for (std::size_t length = 0; length < good.size(); length += 1 + good.size() / 60) {
        SCOPED_TRACE(length);
        const std::string name = std::to_string(length) + ".qzx";  // the loader knows files again
        folder.write(name, good.substr(0, length));
        LoadFailure failure;
        // What is cut off may be for debuggers alone.
        unloadModule(loadModule(folder.path(name), failure));
    }
}

}  // namespace
