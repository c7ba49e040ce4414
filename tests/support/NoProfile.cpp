#include <gtest/gtest.h>
#include <kora/Test.h>

#include <optional>

// For test programs that have this among their sources: whoever runs them may have settings, the tests see none.
namespace {

class NoProfile : public testing::Environment {
    void SetUp() override { profile_.emplace(); }
    void TearDown() override { profile_.reset(); }

    std::optional<TestProfile> profile_;
};

[[maybe_unused]] const testing::Environment* const noProfile = testing::AddGlobalTestEnvironment(new NoProfile);

}  // namespace
