#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/Platform.h"
#include "tests/support/ScopedPlaces.h"

namespace {

using namespace kora::platform;

/// Values below a section of the tests' own: files in a folder of its own, or keys that are deleted at the end.
class Registry : public testing::Test {
protected:
#if defined(_WIN32)
    ~Registry() override {
        std::system(("reg delete \"HKCU\\Software\\Veltrane\\Tessera5\\" + base + "\" /f >nul 2>&1").c_str());
    }
#else
    kora::test::ScopedPlaces places;
#endif
    const std::string base = "Kora Test " + std::to_string(processId());
};

TEST_F(Registry, KeepsTypesAndBytes) {
    std::string every;
    for (int byte = 0; byte < 512; ++byte) every += static_cast<char>(byte);
    const RegistryValue values[] = {
        {RegistryType::text, std::string("text\0", 5)},
        {RegistryType::number32, "\1\2\3\4"},
        {RegistryType::number64, "12345678"},
        {RegistryType::binary, ""},
        {RegistryType::binary, every},
    };
    RegistryValue found{RegistryType::number64, "before"};
    EXPECT_FALSE(registryRead(base, "value", found));
    EXPECT_EQ(found.bytes, "before");
    for (const RegistryValue& value : values) {
        ASSERT_TRUE(registryWrite(base, "value", value));
        ASSERT_TRUE(registryRead(base, "value", found));
        EXPECT_EQ(found.type, value.type);
        EXPECT_EQ(found.bytes, value.bytes);
    }
    EXPECT_FALSE(registryRead(base, "other", found) || registryRead(base + "2", "value", found));
}

// Names stand for themselves whatever they look like, and letter case does not count.
TEST_F(Registry, KeepsOddNamesApart) {
    const std::string section = base + "\\Names", sameSection = base + "\\nAMES";
    const std::string names[] = {"",
                                 ".",
                                 "..",
                                 "a",
                                 "a.b",
                                 "a/b",
                                 "a\\b",
                                 "..\\..\\x",
                                 "%",
                                 "%61",
                                 "a b",
                                 " ",
                                 "con",
                                 "\xE4",
                                 std::string(200, 'n'),
                                 std::string(255, 'n')};
    for (const std::string& name : names) ASSERT_TRUE(registryWrite(section, name, {RegistryType::binary, name}));
    RegistryValue found;
    for (std::string name : names) {
        const std::string bytes = name;
        for (char& c : name)
            if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        ASSERT_TRUE(registryRead(sameSection, name, found)) << name;
        EXPECT_EQ(found.bytes, bytes);
    }
    ASSERT_TRUE(registryWrite(sameSection, "A", {RegistryType::binary, "new"}));
    ASSERT_TRUE(registryRead(section, "a", found));
    EXPECT_EQ(found.bytes, "new");
}

}  // namespace
