#include "strings/Format.h"

#include <gtest/gtest.h>
#include <kora/Str.h>

#include <bit>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "tests/support/TestFolder.h"

using kora::formatBounded;

namespace {

struct Formatted {
    int count;
    std::string text;
};

int bounded(char* buffer, std::size_t size, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int count = formatBounded(buffer, size, format, args);
    va_end(args);
    return count;
}

template <typename... Args>
Formatted formatted(const char* format, Args... args) {
    std::string text(20000, '~');
    const int count = bounded(text.data(), text.size(), format, args...);
    text.resize(count < 0 ? std::strlen(text.c_str()) : static_cast<std::size_t>(count));
    return {count, text};
}

template <typename... Args>
std::string shown(const char* format, Args... args) {
    return formatted(format, args...).text;
}

/// Random formats and arguments, the same on every platform: the C library of POSIX says whether they are right, and
/// a checksum that they are the same on Windows.
class RandomFormats {
public:
    explicit RandomFormats(unsigned seed) : random_(seed) {}

    unsigned below(unsigned n) { return static_cast<unsigned>(random_() % n); }
    std::uint64_t bits() { return random_() >> below(64); }

    /// %, flags, width and precision; the length and conversion come behind.
    std::string begin() {
        std::string format = below(4) == 0 ? "<" : "";
        format += '%';
        for (unsigned n = below(4); n-- > 0;) format += "-+ #0"[below(5)];
        if (below(2)) format += std::to_string(below(30));
        if (below(2)) format += '.';
        if (format.back() == '.' && below(4)) format += std::to_string(below(8) ? below(25) : below(400));
        return format;
    }

    template <typename Arg>
    void check(const std::string& format, Arg arg) {
        const Formatted ours = formatted((format + ">").c_str(), arg);
        for (const char c : ours.text) sum_ = (sum_ ^ static_cast<unsigned char>(c)) * 0x100000001B3;
#if !defined(_WIN32)
        std::string theirs(20000, '~');
        const int count = std::snprintf(theirs.data(), theirs.size(), (format + ">").c_str(), arg);
        theirs.resize(static_cast<std::size_t>(count));
        ASSERT_EQ(ours.text, theirs) << '"' << format << '"';
        ASSERT_EQ(ours.count, count) << '"' << format << '"';
#endif
    }
    std::uint64_t sum() const { return sum_; }

private:
    std::mt19937_64 random_;
    std::uint64_t sum_ = 0xCBF29CE484222325;
};

TEST(Format, RandomIntegers) {
    RandomFormats random(1);
    for (int i = 0; i < 40000; ++i) {
        const std::string begin = random.begin();
        const char conversion = "diuoxX"[random.below(6)];
        std::uint64_t bits = random.bits();
        if (random.below(2)) bits = 0 - bits;
        switch (random.below(5)) {
            case 0:
                random.check(begin + "hh" + conversion, static_cast<int>(bits));
                break;
            case 1:
                random.check(begin + "h" + conversion, static_cast<int>(bits));
                break;
            case 2:
                random.check(begin + conversion, static_cast<int>(bits));
                break;
            case 3:
                random.check(begin + "ll" + conversion, static_cast<long long>(bits));
                break;
            default:
                random.check(begin + "j" + conversion, static_cast<std::intmax_t>(bits));
                break;
        }
        if (HasFatalFailure()) return;
    }
    EXPECT_EQ(random.sum(), 0x07B83907D93DAF3Cu);
}

TEST(Format, RandomDoubles) {
    RandomFormats random(2);
    for (int i = 0; i < 60000; ++i) {
        std::string format = random.begin();
        format += "fFeEgGaA"[random.below(8)];
        const std::uint64_t bits = random.bits();
        const auto small = static_cast<int>(random.below(128));
        double value;
        switch (random.below(5)) {
            case 0:
                value = std::bit_cast<double>(random.bits() ^ bits << 52);
                break;
            case 1:
                value = std::bit_cast<double>(bits << small % 64);
                break;
            case 2:
                value = std::ldexp(static_cast<double>(bits >> 11), -small);
                break;
            // halves and nines, where rounding goes wrong
            case 3:
                value = std::ldexp(static_cast<double>(bits % 100000), -small % 12);
                break;
            default:
                value = static_cast<double>(bits % 1000) - std::ldexp(1.0, -small % 40);
        }
        random.check(format, value);
        if (HasFatalFailure()) return;
    }
    EXPECT_EQ(random.sum(), 0x20B296E0EC62CB5Bu);
}

TEST(Format, RandomLongDoubles) {
    RandomFormats random(3);
    for (int i = 0; i < 30000; ++i) {
        std::string format = random.begin() + 'L';
        format += "fFeEgGaA"[random.below(8)];
        auto value = static_cast<long double>(random.bits());
        if (random.below(2)) value = -value;
        const int scale = random.below(4) ? static_cast<int>(random.below(160)) : static_cast<int>(random.below(16600));
        random.check(format, std::ldexp(value, random.below(2) ? -scale : scale));
        if (HasFatalFailure()) return;
    }
    EXPECT_EQ(random.sum(), 0x1D5F9033BB0FB684u);
}

TEST(Format, RandomTexts) {
    RandomFormats random(4);
    for (int i = 0; i < 5000; ++i) {
        const std::string begin = random.begin();
        if (random.below(4)) {
            random.check(begin + "s", std::string(random.below(50), 'x').c_str());
        } else {
            random.check(begin + "c", static_cast<int>(random.below(256)));
        }
        if (HasFatalFailure()) return;
    }
    EXPECT_EQ(random.sum(), 0x735044921CD0083Eu);
}

struct Row {
    std::string ours;
    const char* expected;
};

template <std::size_t n>
void expectAll(const Row (&rows)[n]) {
    for (const Row& row : rows) EXPECT_EQ(row.ours, row.expected);
}

// What glibc prints where C leaves it open, and where other C libraries differ.
TEST(Format, IntegersAndFlags) {
    const Row rows[] = {
        {shown("%+d|% d|%+ d|% u|%+x", 1, 1, 1, 1, 1), "+1| 1|+1|1|1"},
        {shown("%-0+5d|%0-5d|%05d|%05.2d", 3, 3, -3, 3), "+3   |3    |-0003|   03"},
        {shown("%.0d|%+.0d|%5.0u|%#.0x|%#.0o|%#o", 0, 0, 0, 0, 0, 0), "|+|     ||0|0"},
        {shown("%#x|%#X|%#08x|%#o|%#.5o|%#b|%#010B", 255, 255, 255, 8, 8, 5, 5),
         "0xff|0XFF|0x0000ff|010|00010|0b101|0B00000101"},
        {shown("%hhd|%hhu|%hd|%hu", 511, 511, 0x18000, 0x18000), "-1|255|-32768|32768"},
        {shown("%lld|%Ld|%qd|%jd", LLONG_MIN, LLONG_MAX, 1LL, std::intmax_t{-1}),
         "-9223372036854775808|9223372036854775807|1|-1"},
        {shown("%zd|%td", std::size_t{5}, std::ptrdiff_t{-5}), "5|-5"},
        {shown("%zx|%tx|%lx", ~std::size_t{0}, std::ptrdiff_t{-1}, -1L).substr(0, 8), "ffffffff"},
        {shown("%*d|%-*d|%*d|%.*d|%.*d", 4, 1, 4, 1, -4, 1, 3, 1, -3, 1), "   1|1   |1   |001|1"},
        {shown("%'d|%'.2f", 1234567, 1234567.0), "1234567|1234567.00"},
    };
    expectAll(rows);
    EXPECT_EQ(shown("%lx", -1L).size(), 2 * sizeof(long));
    EXPECT_EQ(shown("%zx", ~std::size_t{0}).size(), 2 * sizeof(std::size_t));
}

TEST(Format, TextsPointersAndNothing) {
    const char* const null = nullptr;
    const char ends[] = {'a', 'b', 'c'};  // no NUL: a precision bounds the read
    int untouched = 7;
    const Row rows[] = {
        {shown("%s|%.6s|%.5s|%.0s|%9s|%-9s|", null, null, null, null, null, null),
         "(null)|(null)|||   (null)|(null)   |"},
        {shown("%.3s|%5.2s|%-5.2s|%05s", ends, ends, ends, "x"), "abc|   ab|ab   |    x"},
        {shown("%c%c|%3c|%-3c|%03c", 'a', 0x141, 'b', 'c', 'd'), "aA|  b|c  |  d"},
        {shown("%p|%8p|%-8p|%.3p|%08p", null, null, null, null, null), "(nil)|   (nil)|(nil)   |(nil)|   (nil)"},
        {shown("%p|%+p|%020p|% 20.12p", reinterpret_cast<void*>(0x1234), reinterpret_cast<void*>(0x1234),
               reinterpret_cast<void*>(0x1234), reinterpret_cast<void*>(0x1234)),
         "0x1234|+0x1234|0x000000000000001234|      0x000000001234"},
        {shown("a%nb%hhnc%d", &untouched, &untouched, 1), "abc1"},
        {shown("%ls|%.2ls|%5ls|%-5ls|%S|%lc|%3C", L"abc", L"abc", L"abc", L"abc", L"x", L'y', L'z'),
         "abc|ab|  abc|abc  |x|y|  z"},
        {shown("%hs|%hc|%%|%5%", "ab", 'c'), "ab|c|%|%"},
    };
    expectAll(rows);
    EXPECT_EQ(untouched, 7);
    EXPECT_EQ(formatted("a%cb", 0).text, std::string("a\0b", 3));
}

TEST(Format, FloatingPoint) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Row rows[] = {
        {shown("%f|%F|%+e|% G|%010f|%-6a|", infinity, -infinity, infinity, infinity, infinity, infinity),
         "inf|-INF|+inf| INF|       inf|inf   |"},
        {shown("%f|%F|%+e|%010g|%.1a", nan, nan, nan, nan, std::copysign(nan, -1.0)), "nan|NAN|+nan|       nan|-nan"},
        // half to even, from the binary value
        {shown("%.0f|%.0f|%.0f|%.1f|%.2f|%.0e|%.3g", 0.5, 1.5, 2.5, 0.25, 1.005, 2.5e10, 1.0005),
         "0|2|2|0.2|1.00|2e+10|1"},
        {shown("%.0f|%.1f|%.0e|%g|%.2g", 9.5, 9.95, 9.5, 999999.5, 99.5), "10|9.9|1e+01|1e+06|1e+02"},
        {shown("%f|%f|%.1f|%#.0f|%#.0e", 0.0, -0.0, -0.04, 1.0, 1.0), "0.000000|-0.000000|-0.0|1.|1.e+00"},
        {shown("%g|%g|%g|%g|%g|%g", 100000.0, 1000000.0, 0.0001, 0.00001, 1e100, -0.0),
         "100000|1e+06|0.0001|1e-05|1e+100|-0"},
        {shown("%#g|%#.3g|%#.3g|%#.0g|%.0g|%G", 0.0, 0.0, 1e10, 3.0, 3.5, 1e-10), "0.00000|0.00|1.00e+10|3.|4|1E-10"},
        {shown("%.20g|%.17e|%.25f", 0.1, DBL_MAX, 0.1),
         "0.10000000000000000555|1.79769313486231571e+308|0.1000000000000000055511151"},
        {shown("%g|%.0e|%.3e", 5e-324, 5e-324, DBL_MIN), "4.94066e-324|5e-324|2.225e-308"},
        {shown("%.0f", 1e23), "99999999999999991611392"},
        {shown("%08.2f|%+08.2f|%-8.2f|%08.2e", -3.14159, 3.14159, 3.14159, 3.14159),
         "-0003.14|+0003.14|3.14    |3.14e+00"},
        // hexadecimal: one bit in front of the point for a double, four for a long double
        {shown("%a|%A|%a|%a|%a", 1.0, 0.5, 0.0, -0.1, 5e-324),
         "0x1p+0|0X1P-1|0x0p+0|-0x1.999999999999ap-4|0x0.0000000000001p-1022"},
        {shown("%.0a|%.0a|%.1a|%.1a|%#.0a|%.16a|%015a", 1.5, 1.96875, 1.96875, 0.1, 1.0, 1.0, 1.0),
         "0x2p+0|0x2p+0|0x2.0p+0|0x1.ap-4|0x1.p+0|0x1.0000000000000000p+0|0x0000000001p+0"},
        {shown("%La|%La|%.0La|%.3La|%La", 1.0L, 3.14159265358979323846L, 1.99L, 15.9999L, 0.0L),
         "0x8p-3|0xc.90fdaa22168c235p-2|0x1p+1|0x1.000p+4|0x0p+0"},
        {shown("%La|%La|%Lg|%Lg", LDBL_MIN, std::numeric_limits<long double>::denorm_min(), LDBL_MAX,
               std::numeric_limits<long double>::denorm_min()),
         "0x8p-16385|0x0.000000000000001p-16385|1.18973e+4932|3.6452e-4951"},
        {shown("%Lf|%llf|%lf", 1.5L, 2.5L, 3.5), "1.500000|2.500000|3.500000"},
    };
    expectAll(rows);
}

// Unknown conversions come out as they were understood; a format that ends inside one fails.
TEST(Format, NoConversion) {
    const Row rows[] = {
        {shown("%k|%-5k|%0-5k|%-05k|%lk|%hhk", 1), "%k|%-5k|%-5k|%-5k|%k|%k"},
        {shown("%+ #'0-5.3lk|%5.k|%.-5d|%5-d|%lhd", 1), "%#'+-5.3k|%5.0k|%.0-5d|%5-d|%hd"},
        {shown("%*k|%.*k|%.*k|%d", -7, -7, 3, 4), "%-7k|%k|%.3k|4"},
        {shown("%\x80|%\n|%y|%D"), "%\x80|%\n|%y|%D"},
    };
    expectAll(rows);
    for (const char* format : {"abc%", "abc%-", "abc%5", "abc%5.", "abc%5.5", "abc%l", "abc%hh"}) {
        const Formatted result = formatted(format);
        EXPECT_EQ(result.count, -1) << format;
        EXPECT_EQ(result.text, "abc") << format;
    }
    EXPECT_EQ(formatted("a%lc", 0xE9).count, -1);
    EXPECT_EQ(formatted("a%ls", L"b\xE9").count, -1);
}

// Numbers that do not fit, and results longer than an int can say.
TEST(Format, BeyondInt) {
    EXPECT_EQ(formatted("%*d", INT_MIN, 1).count, -1);
    EXPECT_EQ(formatted("%.*d", INT_MIN, 1).text, "1");
    for (const char* format : {"%2147483648d", "%.2147483648d", "%99999999999999999999d", "x%2147483647d",
                               "%2147483647de", "%#.2147483647x"})
        EXPECT_EQ(formatted(format, 1, 1).count, -1) << format;
    for (const char* format :
         {"%.2147483647f", "%.2147483647e", "%.2147483647a", "%#.2147483647g", "%.2147483646e", "%2147483647fx"})
        EXPECT_EQ(formatted(format, 1.0).count, -1) << format;

    char cut[8];
    EXPECT_EQ(bounded(cut, sizeof cut, "%2147483647d", 1), INT_MAX);
    EXPECT_STREQ(cut, "       ");
    EXPECT_EQ(bounded(cut, sizeof cut, "%.2147483645f", 1.0), INT_MAX);
    EXPECT_STREQ(cut, "1.00000");
    EXPECT_EQ(bounded(cut, sizeof cut, "%.2147483647g", 0.5), 3);
    EXPECT_EQ(bounded(cut, sizeof cut, "%.100000f", 0.1), 100002);
    EXPECT_EQ(bounded(cut, sizeof cut, "%.20000Lf", std::numeric_limits<long double>::denorm_min()), 20002);
}

TEST(Format, BoundedAtEverySize) {
    const char* const whole = "left |12|  wide|0003.50|end";
    for (std::size_t size = 0; size < 40; ++size) {
        SCOPED_TRACE(size);
        std::string buffer(44, '~');
        EXPECT_EQ(bounded(buffer.data(), size, "%-5s|%d|%6s|%07.2f|end", "left", 12, "wide", 3.5), 27);
        const std::string kept = std::string(whole).substr(0, size == 0 ? 0 : size - 1);
        EXPECT_EQ(buffer.substr(0, kept.size()), kept);
        if (size != 0) {
            EXPECT_EQ(buffer[kept.size()], '\0');
        }
        EXPECT_EQ(buffer.find_first_not_of('~', size == 0 ? 0 : kept.size() + 1), std::string::npos);
    }
}

TEST(Format, TextsOfEveryLengthAsString) {
    for (int length = 0; length < 700; length += 7) {
        const std::string text(static_cast<std::size_t>(length), 'x');
        EXPECT_EQ(kora::formatText("%s%s|%*d", text.c_str(), (text + "%d").c_str(), length, 1),
                  text + text + "%d|" + std::string(length > 1 ? static_cast<std::size_t>(length - 1) : 0, ' ') + "1");
    }
}

TEST(Strsprintf, CountsTheNul) {
    char buffer[64] = "~~~~~";
    EXPECT_EQ(Strsprintf(buffer, "%s-%d", "ab", 5), 5);
    EXPECT_STREQ(buffer, "ab-5");
    EXPECT_EQ(Strsprintf(buffer, ""), 1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(Strsprintf(buffer, "ab%"), -1);
    EXPECT_STREQ(buffer, "ab");
    // a text may grow in its own place
    EXPECT_EQ(Strsprintf(buffer, "%s, a text that is longer than a word", buffer), 38);
    EXPECT_STREQ(buffer, "ab, a text that is longer than a word");
    EXPECT_EQ(Strsprintf(nullptr, "x"), -1);
    EXPECT_EQ(Strsprintf(buffer, nullptr), -1);
}

TEST(Strfprintf, WritesAndCounts) {
    EXPECT_EQ(Strfprintf(nullptr, "x"), -1);
    std::FILE* const file = std::tmpfile();
    ASSERT_TRUE(file);
    EXPECT_EQ(Strfprintf(file, nullptr), -1);
    const std::string text(300, 'x');
    EXPECT_EQ(Strfprintf(file, "%s%s%s%1000d", text.c_str(), text.c_str(), text.c_str(), 1), 1900);
    EXPECT_EQ(Strfprintf(file, ""), 0);
    std::rewind(file);
    std::string read(2000, '\0');
    read.resize(std::fread(read.data(), 1, read.size(), file));
    EXPECT_EQ(read, text + text + text + std::string(999, ' ') + "1");
    std::fclose(file);
}

TEST(Strfprintf, SaysWhenItCouldNotWrite) {
    const kora::test::TestFolder folder;
    folder.write("kept.txt", "kept");
    std::FILE* const readOnly = std::fopen(folder.nativeText("kept.txt").c_str(), "rb");
    ASSERT_TRUE(readOnly);
    EXPECT_LT(Strfprintf(readOnly, "%d", 1), 0);
    EXPECT_LT(Strfprintf(readOnly, "%1000d%d", 1, 2), 0);
    std::fclose(readOnly);
    EXPECT_EQ(folder.read("kept.txt"), "kept");
}

}  // namespace
