#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <random>

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
    for (int byte = 0; byte < 256; ++byte) every += static_cast<char>(byte);
    const RegistryValue values[] = {
        {RegistryType::text, std::string("text\0", 5)}, {RegistryType::number32, "\1\2\3\4"},
        {RegistryType::number64, "12345678"},           {RegistryType::binary, ""},
        {RegistryType::binary, every + every},
    };
    const std::string section = base + "\\Types";
    RegistryValue found{RegistryType::number64, "before"};
    EXPECT_FALSE(registryRead(section, "value", found));
    EXPECT_EQ(found.bytes, "before");
    for (const RegistryValue& value : values) {
        ASSERT_TRUE(registryWrite(section, "value", value));
        ASSERT_TRUE(registryRead(section, "value", found));
        EXPECT_EQ(found.type, value.type);
        EXPECT_EQ(found.bytes, value.bytes);
    }
    EXPECT_FALSE(registryRead(section, "other", found));
    EXPECT_FALSE(registryRead(section + "2", "value", found));
}

// Names stand for themselves whatever they look like, and letter case does not count.
TEST_F(Registry, KeepsOddNamesApart) {
    const std::string section = base + "\\Names";
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
    for (const std::string& name : names)
        ASSERT_TRUE(registryWrite(section, name, {RegistryType::binary, name})) << name;
    for (const std::string& name : names) {
        RegistryValue found;
        ASSERT_TRUE(registryRead(section, name, found)) << name;
        EXPECT_EQ(found.bytes, name);
    }
    RegistryValue found;
    ASSERT_TRUE(registryRead(base + "\\NAMES", "A.b", found));
    EXPECT_EQ(found.bytes, "a.b");
    ASSERT_TRUE(registryWrite(base + "\\names", "A", {RegistryType::binary, "new"}));
    ASSERT_TRUE(registryRead(section, "a", found));
    EXPECT_EQ(found.bytes, "new");
}

}  // namespace
