#include <kora/Ini.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

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
    const auto length = [](const char* name) { return GetRegOptionLen(kSection, name); };
    EXPECT_TRUE(SetRegOption(kSection, "n", -5) && GetRegOption(kSection, "n", number) && number == -5);
    EXPECT_TRUE(SetRegOption(kSection, "w", std::int64_t{1} << 40) && GetRegOption(kSection, "w", wide));
    EXPECT_EQ(wide, std::int64_t{1} << 40);
    EXPECT_TRUE(SetRegOption(kSection, "b", true) && GetRegOption(kSection, "b", on) && on);
    EXPECT_TRUE(SetRegOption(kSection, "b", false) && GetRegOption(kSection, "b", on) && !on);
    EXPECT_TRUE(SetRegOption(kSection, "t", CString("a b")) && GetRegOption(kSection, "t", text) && text == "a b");
    EXPECT_TRUE(SetRegOption(kSection, "e", "") && GetRegOption(kSection, "e", text) && text.empty());
    EXPECT_TRUE(SetRegOption(kSection, "x", "\0\1\2", 3) && GetRegOption(kSection, "x", bytes, 3));
    EXPECT_EQ(std::string(bytes, 3), std::string("\0\1\2", 3));
    EXPECT_EQ((std::vector{length("n"), length("w"), length("b"), length("t"), length("e"), length("x")}),
              (std::vector{4, 8, 4, 4, 1, 3}));
}

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
        store(row.type, row.bytes);
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

TEST_F(RegistryOptions, FailWithoutAWord) {
    store(RegistryType::binary, "abcd");
    char buffer[] = "#####";
    for (const int size : {-1, 0, 3}) EXPECT_FALSE(GetRegOption(kSection, "v", buffer, size));
    EXPECT_FALSE(GetRegOption(kSection, "v", nullptr, 4));
    EXPECT_STREQ(buffer, "#####");
    EXPECT_TRUE(GetRegOption(kSection, "v", buffer, 5));
    EXPECT_STREQ(buffer, "abcd#");

    const std::pair<const char*, const char*> missing[] = {
        {kSection, "missing"}, {"No such section", "v"}, {nullptr, "v"}, {kSection, nullptr}};
    for (const auto& [section, name] : missing) {
        int number = 7;
        EXPECT_FALSE(GetRegOption(section, name, number) || number != 7);
        EXPECT_EQ(GetRegOptionLen(section, name), 0);
    }
    const void* const nothing = nullptr;
    EXPECT_FALSE(SetRegOption(nullptr, "v", 1) || SetRegOption(kSection, nullptr, 1));
    EXPECT_FALSE(SetRegOption(kSection, "v", "x", -1) || SetRegOption(kSection, "v", nothing, 1));
    EXPECT_TRUE(SetRegOption(kSection, "v", nothing, 0));
    EXPECT_EQ(GetRegOptionLen(kSection, "v"), 0);
}

}  // namespace
