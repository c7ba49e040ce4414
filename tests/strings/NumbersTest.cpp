#include <kora/Str.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "tests/strings/SizedBuffer.h"

namespace {

std::string converted(const std::string& bits, int radix, bool upperCase = false) {
    const CString result = StrBinaryStrToRadix(bits, radix, upperCase);
    SizedBuffer buffer(bits.size() + 1);
    StrBinaryStrToRadix(bits.c_str(), -1, buffer.data(), buffer.size(), radix, upperCase);
    EXPECT_EQ(buffer.text(), result);
    return result;
}

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
    EXPECT_EQ(StrDec2Int("123", 2), 12);
    EXPECT_EQ(StrDec2Int("11H", 2), 11);
    EXPECT_EQ(StrDec2Int(nullptr, -1), 0);
}

TEST(StrInt2Dec, WritesThirtyTwoBits) {
    const auto written = [](long value, bool zeroPadded, std::size_t room = 16) {
        SizedBuffer buffer(room);
        StrInt2Dec(value, zeroPadded, buffer.data(), buffer.size());
        return buffer.text() + (StrStringError() ? " cut" : "");
    };
    EXPECT_EQ(written(42, true), "00042");
    EXPECT_EQ(written(-42, true), "-0042");
    EXPECT_EQ(written(123456, true), "123456");
    EXPECT_EQ(written(0, false), "0");
    EXPECT_EQ(written(std::numeric_limits<std::int32_t>::min(), false), "-2147483648");
    EXPECT_EQ(written(static_cast<long>(0xFFFFFFFFUL), false), "-1");
    EXPECT_EQ(written(42, true, 5), "00042");
    EXPECT_EQ(written(42, true, 4), "0004 cut");
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
        EXPECT_EQ(converted(row.bits, row.radix, row.upperCase), row.digits) << row.bits << " in " << row.radix;
    SizedBuffer buffer(9, "10101111");  // in its own place
    StrBinaryStrToRadix(buffer.data(), -1, buffer.data(), buffer.size(), 16, false);
    StrBinaryStrToRadix(buffer.data(), -1, buffer.data(), 1, 2, false);
    EXPECT_EQ(buffer.text(), "af");
}

TEST(StrBinaryStrToRadix, WritesNothingWithoutTheStatedRoom) {
    struct Row {
        int radix;
        std::size_t least;
        const char* digits;
    };
    // for twelve bits of 1, 4095
    static constexpr Row rows[] = {{3, 13, "12121200"}, {5, 7, "112340"}, {7, 7, "14640"},
                                   {9, 5, "5550"},      {15, 5, "1330"},  {17, 4, "e2f"},
                                   {31, 4, "483"},      {33, 3, "3p3"},   {36, 3, "35r"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.radix);
        EXPECT_EQ(convertedInto(row.least - 1, "111111111111", row.radix), std::string(row.least - 1, '~'));
        EXPECT_TRUE(convertedInto(row.least, "111111111111", row.radix).starts_with(row.digits));
    }
    EXPECT_EQ(convertedInto(2, "111111111111", 16), "ff") << "groups are cut silently";
    EXPECT_FALSE(StrStringError());
    EXPECT_EQ(convertedInto(3, "1111", 2), "111");
    EXPECT_TRUE(StrStringError());
    for (const int radix : {-1, 0, 1, 37}) EXPECT_EQ(convertedInto(3, "11", radix), "~~~") << radix;
    EXPECT_EQ(convertedInto(0, "11", 16), "");
    StrBinaryStrToRadix(nullptr, 1, nullptr, 1, 16, false);
    EXPECT_EQ(StrBinaryStrToRadix("11", 99, false), "");
}
