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

// Random formats and arguments, the same on every platform: the C library of POSIX says whether they are right, and a
// checksum that they are the same on Windows.
class RandomFormats {
public:
    explicit RandomFormats(unsigned seed) : random_(seed) {}

    unsigned below(unsigned n) { return static_cast<unsigned>(random_() % n); }
    std::uint64_t bits() { return random_() >> below(64); }

    // %, flags, width and precision; the length and conversion come behind.
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

TEST(Format, RandomNumbersAndTextsAreTheCLibrarys) {
    RandomFormats random(1);
    for (int i = 0; i < 120000 && !HasFatalFailure(); ++i) {
        const std::string format = random.begin();
        const std::uint64_t bits = random.below(2) ? random.bits() : 0 - random.bits();
        const auto small = static_cast<int>(random.below(128));
        const char floating = "fFeEgGaA"[random.below(8)];
        switch (random.below(8)) {
            case 0:
                random.check(format + "s", std::string(random.below(50), 'x').c_str());
                break;
            case 1:
                random.check(format + "c", small * 2);
                break;
            case 2:
            case 3: {
                static constexpr const char* lengths[] = {"hh", "h", "", "ll", "j"};
                const unsigned length = random.below(5);
                const std::string conversion = format + lengths[length] + "diuoxX"[random.below(6)];
                length < 3 ? random.check(conversion, static_cast<int>(bits))
                           : random.check(conversion, static_cast<std::int64_t>(bits));
                break;
            }
            case 4: {
                const int scale = random.below(4) ? small : static_cast<int>(random.below(16600));
                const auto value = static_cast<long double>(static_cast<std::int64_t>(bits));
                random.check(format + 'L' + floating, std::ldexp(value, bits % 2 ? -scale : scale));
                break;
            }
            default: {
                const double values[] = {std::bit_cast<double>(random.bits() ^ bits << 52),
                                         std::bit_cast<double>(bits << small % 64),
                                         std::ldexp(static_cast<double>(bits >> 11), -small),
                                         // halves and nines, where rounding goes wrong
                                         std::ldexp(static_cast<double>(bits % 100000), -small % 12),
                                         static_cast<double>(bits % 1000) - std::ldexp(1.0, -small % 40)};
                random.check(format + floating, values[random.below(5)]);
            }
        }
    }
    EXPECT_EQ(random.sum(), 0x366BDBD9A6DC247Au);
}

// What glibc prints where C leaves it open, and where other C libraries differ.
TEST(Format, IntegersAndFlags) {
    EXPECT_EQ(shown("%#b|%#010B|%#.5o", 5, 5, 8), "0b101|0B00000101|00010");
    EXPECT_EQ(shown("%hhd|%hhu|%hd|%hu", 511, 511, 0x18000, 0x18000), "-1|255|-32768|32768");
    EXPECT_EQ(shown("%lld|%Ld|%qd|%jd", LLONG_MIN, LLONG_MAX, 1LL, std::intmax_t{-1}),
              "-9223372036854775808|9223372036854775807|1|-1");
    EXPECT_EQ(shown("%zd|%td", std::size_t{5}, std::ptrdiff_t{-5}), "5|-5");
    EXPECT_EQ(shown("%*d|%-*d|%*d|%.*d|%.*d", 4, 1, 4, 1, -4, 1, 3, 1, -3, 1), "   1|1   |1   |001|1");
    EXPECT_EQ(shown("%'d|%'.2f", 1234567, 1234567.0), "1234567|1234567.00");
    EXPECT_EQ(shown("%lx", -1L).size(), 2 * sizeof(long));
    EXPECT_EQ(shown("%zx", ~std::size_t{0}).size(), 2 * sizeof(std::size_t));
}

TEST(Format, TextsPointersAndNothing) {
    const char* const null = nullptr;
    const char ends[] = {'a', 'b', 'c'};  // no NUL: a precision bounds the read
    int untouched = 7;
    EXPECT_EQ(shown("%s|%.6s|%.5s|%.0s|%9s|%-9s|", null, null, null, null, null, null),
              "(null)|(null)|||   (null)|(null)   |");
    EXPECT_EQ(shown("%.3s|%5.2s|%-5.2s|%05s", ends, ends, ends, "x"), "abc|   ab|ab   |    x");
    EXPECT_EQ(shown("%c%c|%3c|%-3c|%03c", 'a', 0x141, 'b', 'c', 'd'), "aA|  b|c  |  d");
    EXPECT_EQ(shown("%p|%8p|%-8p|%.3p|%08p", null, null, null, null, null), "(nil)|   (nil)|(nil)   |(nil)|   (nil)");
    EXPECT_EQ(shown("%p|%+p|%020p|% 20.12p", reinterpret_cast<void*>(0x1234), reinterpret_cast<void*>(0x1234),
                    reinterpret_cast<void*>(0x1234), reinterpret_cast<void*>(0x1234)),
              "0x1234|+0x1234|0x000000000000001234|      0x000000001234");
    EXPECT_EQ(shown("a%nb%hhnc%d", &untouched, &untouched, 1), "abc1");
    EXPECT_EQ(shown("%ls|%.2ls|%5ls|%-5ls|%S|%lc|%3C", L"abc", L"abc", L"abc", L"abc", L"x", L'y', L'z'),
              "abc|ab|  abc|abc  |x|y|  z");
    EXPECT_EQ(shown("%hs|%hc|%%|%5%", "ab", 'c'), "ab|c|%|%");
    EXPECT_EQ(untouched, 7);
    EXPECT_EQ(formatted("a%cb", 0).text, std::string("a\0b", 3));
}

TEST(Format, FloatingPoint) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(shown("%f|%F|%+e|% G|%010f|%-6a|", infinity, -infinity, infinity, infinity, infinity, infinity),
              "inf|-INF|+inf| INF|       inf|inf   |");
    EXPECT_EQ(shown("%f|%F|%+e|%010g|%.1a", nan, nan, nan, nan, std::copysign(nan, -1.0)),
              "nan|NAN|+nan|       nan|-nan");
    // half to even, from the binary value
    EXPECT_EQ(shown("%.0f|%.0f|%.0f|%.1f|%.2f|%.0e|%.3g", 0.5, 1.5, 2.5, 0.25, 1.005, 2.5e10, 1.0005),
              "0|2|2|0.2|1.00|2e+10|1");
    EXPECT_EQ(shown("%g|%.0e|%.3e", 5e-324, 5e-324, DBL_MIN), "4.94066e-324|5e-324|2.225e-308");
    // hexadecimal: one bit in front of the point for a double, four for a long double
    EXPECT_EQ(shown("%a|%A|%a|%a|%a", 1.0, 0.5, 0.0, -0.1, 5e-324),
              "0x1p+0|0X1P-1|0x0p+0|-0x1.999999999999ap-4|0x0.0000000000001p-1022");
    EXPECT_EQ(shown("%.0a|%.0a|%.1a|%.1a|%#.0a|%.16a|%015a", 1.5, 1.96875, 1.96875, 0.1, 1.0, 1.0, 1.0),
              "0x2p+0|0x2p+0|0x2.0p+0|0x1.ap-4|0x1.p+0|0x1.0000000000000000p+0|0x0000000001p+0");
    EXPECT_EQ(shown("%La|%La|%.0La|%.3La|%La", 1.0L, 3.14159265358979323846L, 1.99L, 15.9999L, 0.0L),
              "0x8p-3|0xc.90fdaa22168c235p-2|0x1p+1|0x1.000p+4|0x0p+0");
    EXPECT_EQ(shown("%La|%La|%Lg|%Lg", LDBL_MIN, std::numeric_limits<long double>::denorm_min(), LDBL_MAX,
                    std::numeric_limits<long double>::denorm_min()),
              "0x8p-16385|0x0.000000000000001p-16385|1.18973e+4932|3.6452e-4951");
    EXPECT_EQ(shown("%Lf|%llf|%lf", 1.5L, 2.5L, 3.5), "1.500000|2.500000|3.500000");
}

// Unknown conversions come out as they were understood; a format that ends inside one fails.
TEST(Format, NoConversion) {
    EXPECT_EQ(shown("%k|%-5k|%0-5k|%-05k|%lk|%hhk", 1), "%k|%-5k|%-5k|%-5k|%k|%k");
    EXPECT_EQ(shown("%+ #'0-5.3lk|%5.k|%.-5d|%5-d|%lhd", 1), "%#'+-5.3k|%5.0k|%.0-5d|%5-d|%hd");
    EXPECT_EQ(shown("%*k|%.*k|%.*k|%d", -7, -7, 3, 4), "%-7k|%k|%.3k|4");
    EXPECT_EQ(shown("%\x80|%\n|%y|%D"), "%\x80|%\n|%y|%D");
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
    for (std::size_t length = 0; length < 700; length += 7) {
        const std::string text(length, 'x');
        EXPECT_EQ(kora::formatText("%s%s|%*d", text.c_str(), (text + "%d").c_str(), static_cast<int>(length), 1),
                  text + text + "%d|" + std::string(length > 1 ? length - 1 : 0, ' ') + "1");
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

TEST(Strfprintf, WritesCountsAndSaysWhenItCouldNot) {
    const kora::test::TestFolder folder;
    const std::string path = folder.nativeText("out.txt"), text(300, 'x');
    EXPECT_EQ(Strfprintf(nullptr, "x"), -1);
    std::FILE* file = std::fopen(path.c_str(), "wb");
    ASSERT_TRUE(file);
    EXPECT_EQ(Strfprintf(file, nullptr), -1);
    EXPECT_EQ(Strfprintf(file, "%s%s%s%1000d", text.c_str(), text.c_str(), text.c_str(), 1), 1900);
    EXPECT_EQ(Strfprintf(file, ""), 0);
    std::fclose(file);
    const std::string written = text + text + text + std::string(999, ' ') + "1";
    EXPECT_EQ(folder.read("out.txt"), written);
    file = std::fopen(path.c_str(), "rb");
    ASSERT_TRUE(file);
    EXPECT_EQ(Strfprintf(file, "%d", 1), -1);
    EXPECT_EQ(Strfprintf(file, "%1000d%d", 1, 2), -1);
    std::fclose(file);
    EXPECT_EQ(folder.read("out.txt"), written);
}

}  // namespace
