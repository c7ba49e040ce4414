#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/TestFolder.h"

// The host as a process, with real options.

namespace {

using kora::test::TestFolder;
using testing::HasSubstr;

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

    // Runs the host in the test's folder and answers its exit code.
    int run(const std::string& options) {
        // Files of its own: what the first run of a session starts may keep those open.
        const std::string number = std::to_string(++runs_);
        const auto before = std::filesystem::current_path();
        std::filesystem::current_path(folder_.native());
        const std::string command =
            quoted(KORA_HOST) + " --ini ts.ini " + options + " > out" + number + " 2> err" + number;
#if defined(_WIN32)
        const int code = std::system(quoted(command).c_str());
#else
        const int status = std::system(command.c_str());
        const int code = status % 256 == 0 ? status / 256 : -1;
#endif
        std::filesystem::current_path(before);
        out = folder_.read("out" + number);
        std::erase(out, '\r');
        err = folder_.read("err" + number);
        return code;
    }
    static std::string quoted(const std::string& text) { return '"' + text + '"'; }

    TestFolder folder_;
    std::string out, err;
    int runs_ = 0;
};

TEST_F(Host, GoesOnAsLongAsModulesNeedIt) {
    const std::string ended = "agreed\nended\n", rounds = "started\nround\nround\nround\n" + ended;
    const std::pair<const char*, std::string> rows[] = {
        {"", "started\n" + ended},
        {"-tick", rounds},
        {"-once", "started\nround\n" + ended},
        {"/idle", rounds},
        {"-high", rounds},
        {"-ref", "started\nrefused\nround\n" + ended},
        {"--stay -quit", "started\n" + ended},
        {"-stay", "started\n" + ended},
#if !defined(_WIN32)
        {"--stay -int", "started\n" + ended},
        {"--stay -ref -int -quit", "started\nrefused\n" + ended},
#endif
    };
    for (const auto& [options, printed] : rows) {
        SCOPED_TRACE(options);
        EXPECT_EQ(run(options), 0) << err;
        EXPECT_EQ(out, printed);
        EXPECT_THAT(err, HasSubstr("Phase 4 initialization of worker"));
    }
}

TEST_F(Host, TellsFailuresOfModules) {
    folder_.makeFolder("none");
    folder_.makeFolder("text");
    folder_.write("text/text.qzx", "text");
    const struct {
        const char* options;
        int code;
        const char* told;
    } rows[] = {
        {"-err", 1, "Unknown error occurred. Kora Module 'worker'  Location 0x10 (16)  Reference 0x0 (0)"},
        {"-fail -err", 3, "Unknown error occurred."},
        {"-thro", 1, "Exception in TskCmdLine"},
        {"--tools none", 0, "There are no code modules in the specified tools directory '"},
        {"--tools text", 1, "\" loading module "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.options);
        EXPECT_EQ(run(row.options), row.code);
        EXPECT_THAT(err, HasSubstr(row.told));
        EXPECT_EQ(out, row.options[1] == '-' ? "" : "started\nagreed\nended\n");
    }
}

TEST_F(Host, ExplainsItsOptions) {
    EXPECT_EQ(run("--help"), 0);
    for (const char* explained : {"Usage:", "--ini", "--tools", "--stay"}) EXPECT_THAT(out, HasSubstr(explained));
    for (const char* options : {"--halp", "--tools", "-quit --ini", "--ini \"\"", "--ini none.ini", "--ini tools"}) {
        SCOPED_TRACE(options);
        EXPECT_EQ(run(options), 2);
        EXPECT_THAT(err, testing::AnyOf(HasSubstr("Usage:"), HasSubstr("none.ini is not there"),
                                        HasSubstr("tools cannot be read")));
        EXPECT_EQ(out, "");
    }
}

}  // namespace
