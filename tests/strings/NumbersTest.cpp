#include <kora/Str.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <tuple>

#include "tests/strings/SizedBuffer.h"

namespace {

// What stands in a buffer of `room` bytes afterwards.
std::string convertedInto(std::size_t room, const char* bits, int radix) {
    SizedBuffer buffer(room, std::string(room, '~'));
    StrBinaryStrToRadix(bits, -1, buffer.data(), buffer.size(), radix, false);
    return buffer.bytes();
}

}  // namespace

TEST(StrDec2Int, ReadsTheStatedForms) {
    struct Row {
        const char* text;
        std::int64_t value;
    };
    // clang-format off
    static constexpr Row rows[] = {
        {"  -7", -7}, {"1010B", 10}, {"FFH", 255}, {"-FFH", -255}, {"12 34", 12}, {" 12H 3", 18},
        // what was read before a stop counts
        {"12x", 12}, {"1Fh", 1}, {"1B", 1}, {"12B", 1}, {"1-2", 1}, {"--2", 0}, {"\t5", 0},
        // no digits
        {"", 0}, {"   ", 0}, {"H", 0}, {"B", 0}, {"-", 0}, {"-H", 0}, {"ffh", 0}, {"AB", 0},
        // as far as 64 bits go, and beyond
        {"9223372036854775807", std::numeric_limits<std::int64_t>::max()}, {"FFFFFFFFFFFFFFFFH", -1},
        {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()}, {"18446744073709551617", 1},
        {"4294967295", 4294967295},
    };
    // clang-format on
    for (const Row& row : rows) {
        EXPECT_EQ(StrDec2Int64(row.text, -1), row.value) << row.text;
        EXPECT_EQ(StrDec2Int(row.text, -1), static_cast<std::int32_t>(row.value)) << row.text;
    }
}

TEST(StrBinaryStrToRadix, GroupsAndSums) {
    const std::string all(64, '1'), beyond = "1" + std::string(64, '0');
    struct Row {
        std::string bits;
        int radix;
        const char* digits;
        bool upperCase = false;
    };
    // clang-format off
    const Row rows[] = {
        {"11111", 16, "1f"}, {"11111", 16, "1F", true}, {"1111", 16, "f"}, {"101101", 8, "55"}, {"101", 4, "11"},
        {"1111111110", 32, "vu"}, {"ZZZZ0Z10zZ10XZ10", 16, "zzxx"}, {"ZZZZX000", 16, "ZX", true}, {"", 16, ""},
        // more than 64 bits
        {beyond, 2, "10000000000000000"}, {beyond, 3, "10000000000000000"}, {beyond, 10, "10000000000000000"},
        {beyond, 36, "10000000000000000"}, {beyond, 32, "g000000000000"},
        // sums; unknown bits count 0: 91 has two digits
        {"1111011", 10, "123"}, {all, 10, "18446744073709551615"}, {"0000", 10, "0"}, {"10Z1", 2, "10Z1"},
        {all, 3, "11112220022122120101211020120210210211220"}, {all, 36, "3W5E11264SGSF", true},
        {"1Z11011", 10, "zz"}, {"1Z1X011", 10, "XX", true},
    };
    // clang-format on
    for (const Row& row : rows)
        EXPECT_EQ(StrBinaryStrToRadix(row.bits, row.radix, row.upperCase), row.digits)
            << row.bits << " in " << row.radix;
}

TEST(StrBinaryStrToRadix, WritesNothingWithoutTheStatedRoom) {
    // 4095 in each radix, with the least room
    for (const auto& [radix, room, digits] :
         {std::tuple(3, 13U, "12121200"), {5, 7U, "112340"}, {9, 5U, "5550"}, {17, 4U, "e2f"}, {36, 3U, "35r"}}) {
        EXPECT_EQ(convertedInto(room - 1, "111111111111", radix), std::string(room - 1, '~')) << radix;
        EXPECT_TRUE(convertedInto(room, "111111111111", radix).starts_with(digits)) << radix;
    }
    EXPECT_EQ(convertedInto(2, "111111111111", 16), "ff") << "groups are cut silently";
    for (const int radix : {-1, 0, 1, 37}) EXPECT_EQ(convertedInto(3, "11", radix), "~~~") << radix;
}
