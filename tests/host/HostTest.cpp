#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/TestFolder.h"

// The host as a process, with real options.

namespace {

using kora::test::TestFolder;
using testing::HasSubstr;
using testing::IsEmpty;

class Host : public testing::Test {
protected:
    void SetUp() override {
#if !defined(_WIN32)
        setenv("HOME", folder_.nativeText().c_str(), 1);
        unsetenv("XDG_CONFIG_HOME");
#endif
        folder_.write("ts.ini", "[System]\ntoolfolder = " + folder_.nativeText("tools") + "\n");
        folder_.makeFolder("tools");
        std::filesystem::copy_file(std::filesystem::path(KORA_FIXTURES) / "worker.qzx",
                                   folder_.native() / "tools" / "worker.qzx");
    }

    // Runs the host and answers its exit code.
    int run(const std::string& options, bool withIni = true) {
        std::string command = quoted(KORA_HOST);
        if (withIni) command += " --ini " + quoted(folder_.nativeText("ts.ini"));
        command +=
            " " + options + " > " + quoted(folder_.nativeText("out")) + " 2> " + quoted(folder_.nativeText("err"));
#if defined(_WIN32)
        const int code = std::system(quoted(command).c_str());
#else
        const int status = std::system(command.c_str());
        const int code = status % 256 == 0 ? status / 256 : -1;
#endif
        out = folder_.read("out");
        std::erase(out, '\r');
        err = folder_.read("err");
        return code;
    }
    static std::string quoted(const std::string& text) { return '"' + text + '"'; }

    TestFolder folder_;
    std::string out, err;
};

TEST_F(Host, EndsWhenNothingIsLeftToDo) {
    EXPECT_EQ(run(""), 0) << err;
    EXPECT_EQ(out, "started\nagreed\nended\n");
    EXPECT_THAT(err, HasSubstr("Phase 4 initialization of worker"));
}

TEST_F(Host, GoesOnAsLongAsModulesNeedIt) {
    const std::string rounds = "started\nround\nround\nround\nagreed\nended\n";
    const struct {
        const char* options;
        std::string out;
    } rows[] = {
        {"-tick", rounds},
        {"/idle", rounds},
        {"-high", rounds},
        {"-ref", "started\nrefused\nround\nagreed\nended\n"},
        {"--stay -quit", "started\nagreed\nended\n"},
        {"-stay", "started\nagreed\nended\n"},
#if !defined(_WIN32)
        {"--stay -int", "started\nagreed\nended\n"},
        {"--stay -ref -int -quit", "started\nrefused\nagreed\nended\n"},
#endif
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.options);
        EXPECT_EQ(run(row.options), 0) << err;
        EXPECT_EQ(out, row.out);
    }
}

TEST_F(Host, TellsFailuresOfModules) {
    EXPECT_EQ(run("-err"), 1);
    EXPECT_THAT(err, HasSubstr("Unknown error occurred. Kora Module 'worker'  Location 0x10 (16)  Reference 0x0 (0)"));
    EXPECT_EQ(run("-fail -err"), 3);
    EXPECT_EQ(run("-thro"), 1);
    EXPECT_THAT(err, HasSubstr("Exception in TskCmdLine"));
    folder_.write("tools/text.qzx", "text");
    EXPECT_EQ(run(""), 1);
    EXPECT_THAT(err, HasSubstr("\" loading module "));
    EXPECT_EQ(out, "started\nagreed\nended\n") << "the other module takes part all the same";
}

TEST_F(Host, TakesToolsFolderFromItsOptions) {
    folder_.makeFolder("none");
    EXPECT_EQ(run("--tools " + quoted(folder_.nativeText("none"))), 0);
    EXPECT_THAT(err, HasSubstr("There are no code modules in the specified tools directory '"));
    EXPECT_THAT(out, IsEmpty());
    EXPECT_EQ(run("--tools " + quoted(folder_.nativeText("tools")) + " -quit", /*withIni=*/false), 0);
    EXPECT_EQ(out, "started\nagreed\nended\n");
}

TEST_F(Host, ExplainsItsOptions) {
    EXPECT_EQ(run("--help"), 0);
    EXPECT_THAT(out,
                testing::AllOf(HasSubstr("Usage:"), HasSubstr("--ini"), HasSubstr("--tools"), HasSubstr("--stay")));
    for (const char* options : {"--halp", "--tools", "-quit --ini", "--ini \"\""}) {
        SCOPED_TRACE(options);
        EXPECT_EQ(run(options, /*withIni=*/false), 2);
        EXPECT_THAT(err, HasSubstr("Usage:"));
        EXPECT_THAT(out, IsEmpty());
    }
}

}  // namespace
