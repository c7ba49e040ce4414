#include <kora/Ini.h>

#include <gtest/gtest.h>

#include <string>

#include "platform/Platform.h"
#include "tests/support/ScopedPlaces.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

using kora::platform::RegistryType;

/// A section of the test's own.
class RegistryOptions : public testing::Test {
protected:
    static constexpr char kSection[] = "Test of Registry Options";

    ~RegistryOptions() override {
#if defined(_WIN32)
        RegDeleteKeyA(HKEY_CURRENT_USER, (std::string("Software\\Veltrane\\Tessera5\\") + kSection).c_str());
#endif
    }

    kora::test::ScopedPlaces places;
};

TEST_F(RegistryOptions, AreTakenByTypeAndSize) {
    using namespace std::string_literals;
    struct Row {
        RegistryType type;
        std::string bytes;
        char takenAs;
    };
    const Row rows[] = {{RegistryType::number32, "\1\0\0\0"s, 'n'},
                        {RegistryType::binary, "\1\0\0\0"s, 'n'},
                        {RegistryType::binary, "\1\0\0"s, ' '},
                        {RegistryType::binary, "\1\0\0\0\0"s, ' '},
                        {RegistryType::number64, "\1\0\0\0\0\0\0\0"s, 'w'},
                        {RegistryType::binary, "\1\0\0\0\0\0\0\0"s, 'w'},
                        {RegistryType::text, "abc\0"s, 't'},
                        {RegistryType::text, "abcdefg\0"s, 't'}};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(row.type) << ' ' << row.bytes.size());
        ASSERT_TRUE(kora::platform::registryWrite(kSection, "v", {row.type, row.bytes}));
        int number = 7;
        std::int64_t wide = 7;
        bool on = false;
        CString text = "before";
        EXPECT_EQ(GetRegOption(kSection, "v", number), row.takenAs == 'n');
        EXPECT_EQ(GetRegOption(kSection, "v", on), row.takenAs == 'n');
        EXPECT_EQ(GetRegOption(kSection, "v", wide), row.takenAs == 'w');
        EXPECT_EQ(GetRegOption(kSection, "v", text), row.takenAs == 't');
        EXPECT_EQ(number, row.takenAs == 'n' ? 1 : 7);
        EXPECT_EQ(on, row.takenAs == 'n');
        EXPECT_EQ(wide, row.takenAs == 'w' ? 1 : 7);
        EXPECT_EQ(text, row.takenAs == 't' ? row.bytes.c_str() : "before");
        EXPECT_EQ(GetRegOptionLen(kSection, "v"), static_cast<int>(row.bytes.size()));
    }
}

}  // namespace
