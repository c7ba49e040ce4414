#include <gmock/gmock.h>
#include <kora/Test.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

std::string quoted(const std::string& text) { return '"' + text + '"'; }

// Runs a command line and answers its exit code.
int run(const std::string& command) {
#if defined(_WIN32)
    return std::system(quoted(command).c_str());
#else
    const int status = std::system(command.c_str());
    return status % 256 == 0 ? status / 256 : -1;
#endif
}

// The host as a process, with real options.
TEST(Host, RunsAsLongAsModulesNeedItAndTellsTheirFailures) {
    TestFolder folder;
#if !defined(_WIN32)
    setenv("HOME", folder.NativeText().c_str(), 1);
    unsetenv("XDG_CONFIG_HOME");
#endif
    folder.Write("ts.ini", "[System]\ntoolfolder = " + folder.NativeText("tools") + "\n");
    folder.MakeFolder("tools");
    folder.MakeFolder("none");
    std::filesystem::copy_file(std::filesystem::path(KORA_FIXTURES) / "worker.qzx",
                               folder.Native() / "tools" / "worker.qzx");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.Native());

    const char *agreed = "started\nagreed\n", *phase4 = "Phase 4 initialization of worker";
    const char* rounds = "started\nround\nround\nround\nagreed\n";
    const struct {
        const char* options;
        int code;
        const char *printed, *told;
    } rows[] = {
        {"", 0, agreed, phase4},
        {"-tick", 0, rounds, phase4},
        {"/idle", 0, rounds, phase4},
        {"--stay -quit", 0, agreed, phase4},
#if !defined(_WIN32)
        {"--stay -int", 0, agreed, phase4},
        {"--trace", 0, agreed, phase4},
#endif
        // failures of modules
        {"-err", 1, agreed, "Unknown error occurred. Kora Module 'worker'  Location 0x10 (16)  Reference 0x0 (0)"},
        {"-thro", 1, agreed, "Exception in TskCmdLine"},
        {"--tools none", 0, "", "There are no code modules in the specified tools directory '"},
        // options that cannot be followed
        {"--halp", 2, "", "Usage:"},
        {"--ini none.ini", 2, "", "none.ini is not there"},
    };
    int runs = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.options);
        // Files of its own: what the first run of a session starts may keep those open.
        const std::string number = std::to_string(++runs);
        EXPECT_EQ(run(quoted(KORA_HOST) + " --ini ts.ini " + row.options + " > out" + number + " 2> err" + number),
                  row.code);
        std::string out = folder.Read("out" + number);
        std::erase(out, '\r');
        EXPECT_EQ(out, row.printed);
        EXPECT_THAT(folder.Read("err" + number), testing::HasSubstr(row.told));
    }
#if !defined(_WIN32)
    const std::string log = folder.Read("ts_error_log.txt");
    EXPECT_THAT(log, testing::ContainsRegex("Hello!\n\\$STARTDUMP.* Exit Trace\n")) << "of --trace alone";
    EXPECT_EQ(log.find("Hello!"), log.rfind("Hello!"));
#endif
    std::filesystem::current_path(before);
}

}  // namespace
