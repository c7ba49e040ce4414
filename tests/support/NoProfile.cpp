#include <gtest/gtest.h>
#include <kora/Ini.h>

#include <memory>

#include "tests/support/TestFolder.h"

// For test programs that have this among their sources: whoever runs them may have settings, the tests see none.
namespace {

class NoProfile : public testing::Environment {
    void SetUp() override {
        folder_ = std::make_unique<kora::test::TestFolder>();
        ASSERT_TRUE(IniMainFileSet(folder_->path("none.ini").c_str()));
    }
    void TearDown() override {
        IniMainFileSet(nullptr);
        folder_.reset();
    }

    std::unique_ptr<kora::test::TestFolder> folder_;
};

[[maybe_unused]] const testing::Environment* const noProfile = testing::AddGlobalTestEnvironment(new NoProfile);

}  // namespace
