#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <gtest/gtest.h>

#include "platform/Platform.h"

namespace {

using namespace kora::platform;

// Values of other programs and of any type are read as what they are, or as bytes.
TEST(RegistryRead, TakesEveryType) {
    const std::string section = "Kora Test Types " + std::to_string(processId());
    const std::string path = "Software\\Veltrane\\Tessera5\\" + section;
    HKEY key;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
              0);
    struct Row {
        DWORD stored;
        RegistryType read;
    };
    static constexpr Row rows[] = {
        {REG_SZ, RegistryType::text},         {REG_EXPAND_SZ, RegistryType::text},
        {REG_BINARY, RegistryType::binary},   {REG_DWORD, RegistryType::number32},
        {REG_QWORD, RegistryType::number64},  {REG_NONE, RegistryType::binary},
        {REG_MULTI_SZ, RegistryType::binary}, {REG_DWORD_BIG_ENDIAN, RegistryType::binary},
        {1234, RegistryType::binary},
    };
    const std::string bytes("%A%bcd\0\0", 8);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.stored);
        EXPECT_EQ(RegSetValueExA(key, "v", 0, row.stored, reinterpret_cast<const BYTE*>(bytes.data()), 8), 0);
        RegistryValue value;
        EXPECT_TRUE(registryRead(section, "v", value));
        EXPECT_EQ(value.type, row.read);
        EXPECT_EQ(value.bytes, bytes);
    }
    RegCloseKey(key);
    RegDeleteKeyA(HKEY_CURRENT_USER, path.c_str());
}

}  // namespace
