#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/Platform.h"
#include "tests/support/ScopedPlaces.h"

namespace {

using namespace kora::platform;

// Names stand for themselves whatever they look like, and letter case does not count.
TEST(Registry, KeepsOddNamesApart) {
    const kora::test::ScopedPlaces places;
    const std::string base = "Kora Test " + std::to_string(processId());
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
    for (const std::string& name : names) EXPECT_TRUE(registryWrite(section, name, {RegistryType::binary, name}));
    RegistryValue found;
    for (std::string name : names) {
        const std::string bytes = name;
        for (char& c : name)
            if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
        EXPECT_TRUE(registryRead(sameSection, name, found)) << name;
        EXPECT_EQ(found.bytes, bytes);
    }
    EXPECT_TRUE(registryWrite(sameSection, "A", {RegistryType::binary, "new"}));
    EXPECT_TRUE(registryRead(section, "a", found));
    EXPECT_EQ(found.bytes, "new");
#if defined(_WIN32)
    std::system(("reg delete \"HKCU\\Software\\Veltrane\\Tessera5\\" + base + "\" /f >nul 2>&1").c_str());
#endif
}

}  // namespace
