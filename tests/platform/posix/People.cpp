#include <gtest/gtest.h>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

TEST(People, AreToldOnStandardErrorAndNeverWaitedFor) {
    static constexpr struct {
        unsigned style;
        int button;
    } rows[] = {
        {0x0, 1},   {0x1, 1},   {0x2, 3},    {0x3, 6},        {0x4, 6},   {0x5, 4},  // the first, unless
        {0x101, 2}, {0x102, 4}, {0x103, 7},  {0x104, 7},      {0x105, 2},            // the second
        {0x202, 5}, {0x203, 2},                                                      // or third is preferred
        {0x100, 1}, {0x204, 6}, {0x302, 3},  {0xF, 1},                               // one that is not there
        {0x40, 1},  {0x131, 2}, {0x2233, 2}, {0xFFFFFFFF, 1},                        // icons and modes do not count
    };
    for (const auto& [style, button] : rows) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(showAlert("What now? %s", style), button) << std::hex << style;
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "What now? %s\n");
    }
    testing::internal::CaptureStderr();
    bool suppress = true, traceToFile = true;
    std::string path = "before";
    showErrorDialog("broken", suppress, traceToFile);
    showProgress("half way");
    EXPECT_EQ(showContinueAlert(nullptr), 1219);
    EXPECT_FALSE(chooseFile("Open", "Text;txt", false, path) || chooseDirectory("Where", path));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "broken\nhalf way\n\n");
    EXPECT_TRUE(!suppress && traceToFile);
    EXPECT_EQ(path, "before");
}

}  // namespace
