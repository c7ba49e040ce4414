#include <gtest/gtest.h>

#include <clocale>

#include "platform/Platform.h"
#include "tests/support/TestFolder.h"

namespace {

using namespace kora::platform;

std::string beside(const char* name) { return environment().programDirectory() + '\\' + name; }

TEST(LoadModule, TellsMoreOfTheReasonsApart) {
    const kora::test::TestFolder folder;
    folder.makeFolder("directory.qzx");
    folder.write("file", "");
    struct Row {
        std::string path;
        std::uint32_t code;
        const char* detail;
    };
    const Row rows[] = {
        {folder.path("none\\none.qzx"), 3, ""},
        {folder.path("file\\none.qzx"), 3, ""},
        {"Q:\\none.qzx", 3, ""},
        {folder.path("directory.qzx"), 5, ""},
        {beside("platform-fixtures\\platform-unresolved.qzx"), 127, "undefined symbol"},
        {beside("platform-fixtures\\platform-needs.qzx"), 126, "platform-needed"},
        {beside("kora-test-platform"), 193, ""},  // a program
    };
    std::setlocale(LC_ALL, "");  // the loader's sentences are read, in whatever language
    for (const Row& row : rows) {
        LoadFailure failure;
        EXPECT_EQ(loadModule(row.path, failure), 0u) << row.path;
        EXPECT_EQ(failure.code, row.code) << row.path << ' ' << failure.detail;
        EXPECT_NE(failure.detail.find(row.detail), std::string::npos) << failure.detail;
    }
    std::setlocale(LC_ALL, "C");
}

// However a library is cut, it loads or is refused; the process goes on.
TEST(LoadModule, SurvivesBrokenLibraries) {
    std::string good;
    Failure ignored;
    ASSERT_TRUE(fileSystem().read(beside("platform-fixtures\\platform-good.qzx"), good, ignored));
    const kora::test::TestFolder folder;
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
