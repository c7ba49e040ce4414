#include <kora/Ini.h>

#include <gtest/gtest.h>

#include <cstring>
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
    static void store(RegistryType type, const std::string& bytes) {
        ASSERT_TRUE(kora::platform::registryWrite(kSection, "v", {type, bytes}));
    }

    kora::test::ScopedPlaces places;
};

TEST_F(RegistryOptions, AreReadBack) {
    int number = 0;
    std::int64_t wide = 0;
    bool on = false;
    CString text;
    char bytes[3] = {};
    EXPECT_TRUE(SetRegOption(kSection, "n", -5) && GetRegOption(kSection, "n", number) && number == -5);
    EXPECT_EQ(GetRegOptionLen(kSection, "n"), 4);
    EXPECT_TRUE(SetRegOption(kSection, "w", std::int64_t{1} << 40) && GetRegOption(kSection, "w", wide));
    EXPECT_EQ(wide, std::int64_t{1} << 40);
    EXPECT_EQ(GetRegOptionLen(kSection, "w"), 8);
    EXPECT_TRUE(SetRegOption(kSection, "b", true) && GetRegOption(kSection, "b", on) && on);
    EXPECT_TRUE(SetRegOption(kSection, "b", false) && GetRegOption(kSection, "b", on) && !on);
    EXPECT_EQ(GetRegOptionLen(kSection, "b"), 4);
    EXPECT_TRUE(SetRegOption(kSection, "t", CString("a b")) && GetRegOption(kSection, "t", text) && text == "a b");
    EXPECT_EQ(GetRegOptionLen(kSection, "t"), 4);
    EXPECT_TRUE(SetRegOption(kSection, "t", "") && GetRegOption(kSection, "t", text) && text.empty());
    EXPECT_EQ(GetRegOptionLen(kSection, "t"), 1);
    EXPECT_TRUE(SetRegOption(kSection, "x", "\0\1\2", 3) && GetRegOption(kSection, "x", bytes, 3));
    EXPECT_EQ(std::memcmp(bytes, "\0\1\2", 3), 0);
    EXPECT_EQ(GetRegOptionLen(kSection, "x"), 3);
}

TEST_F(RegistryOptions, AreTakenByTypeAndSize) {
    using namespace std::string_literals;
    struct Row {
        RegistryType type;
        std::string bytes;
        bool number, wide, text;
    };
    const Row rows[] = {
        {RegistryType::number32, "\1\0\0\0"s, true, false, false},
        {RegistryType::binary, "\1\0\0\0"s, true, false, false},
        {RegistryType::binary, "\1\0\0"s, false, false, false},
        {RegistryType::binary, "\1\0\0\0\0"s, false, false, false},
        {RegistryType::number64, "\1\0\0\0\0\0\0\0"s, false, true, false},
        {RegistryType::binary, "\1\0\0\0\0\0\0\0"s, false, true, false},
        {RegistryType::text, "abc\0"s, false, false, true},
        {RegistryType::text, "abcdefg\0"s, false, false, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(row.type) << ' ' << row.bytes.size());
        store(row.type, row.bytes);
        int number = 7;
        std::int64_t wide = 7;
        bool on = false;
        CString text = "before";
        EXPECT_EQ(GetRegOption(kSection, "v", number), row.number);
        EXPECT_EQ(number, row.number ? 1 : 7);
        EXPECT_EQ(GetRegOption(kSection, "v", wide), row.wide);
        EXPECT_EQ(wide, row.wide ? 1 : 7);
        EXPECT_EQ(GetRegOption(kSection, "v", on), row.number);
        EXPECT_EQ(on, row.number);
        EXPECT_EQ(GetRegOption(kSection, "v", text), row.text);
        EXPECT_EQ(text, row.text ? row.bytes.c_str() : "before");
        EXPECT_EQ(GetRegOptionLen(kSection, "v"), static_cast<int>(row.bytes.size()));
    }
}

TEST_F(RegistryOptions, FillABufferOnlyWhole) {
    store(RegistryType::binary, "abcd");
    for (int size = 0; size < 4; ++size) {
        char buffer[] = "#####";
        EXPECT_FALSE(GetRegOption(kSection, "v", buffer, size));
        EXPECT_STREQ(buffer, "#####");
    }
    char buffer[] = "#####";
    EXPECT_TRUE(GetRegOption(kSection, "v", buffer, 5));
    EXPECT_STREQ(buffer, "abcd#");
    EXPECT_FALSE(GetRegOption(kSection, "v", buffer, -1));
    EXPECT_FALSE(GetRegOption(kSection, "v", nullptr, 4));
}

TEST_F(RegistryOptions, FailWithoutAWord) {
    int number = 7;
    EXPECT_FALSE(GetRegOption(kSection, "missing", number));
    EXPECT_FALSE(GetRegOption("No such section", "v", number));
    EXPECT_FALSE(GetRegOption(nullptr, "v", number));
    EXPECT_FALSE(GetRegOption(kSection, nullptr, number));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(GetRegOptionLen(kSection, "missing"), 0);
    EXPECT_EQ(GetRegOptionLen(nullptr, nullptr), 0);
    EXPECT_FALSE(SetRegOption(nullptr, "v", 1));
    EXPECT_FALSE(SetRegOption(kSection, nullptr, 1));
    EXPECT_FALSE(SetRegOption(kSection, "v", "x", -1));
    EXPECT_FALSE(SetRegOption(kSection, "v", static_cast<const void*>(nullptr), 1));
    EXPECT_TRUE(SetRegOption(kSection, "v", static_cast<const void*>(nullptr), 0));
    EXPECT_EQ(GetRegOptionLen(kSection, "v"), 0);
}

}  // namespace
