#include "strings/Format.h"

#include <gtest/gtest.h>
#include <kora/Str.h>
#include <kora/Test.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstring>
#include <random>

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
        std::string cut(40, '~'), expected = cut;
        const auto room = static_cast<std::size_t>(sum_ % cut.size());
        bounded(cut.data(), room, (format + ">").c_str(), arg);
        if (room) expected.replace(0, std::min(room, ours.text.size() + 1), ours.text.substr(0, room - 1) + '\0');
        ASSERT_EQ(cut, expected) << '"' << format << '"';
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

// Small numbers so near to the middle of two that all their bits are needed, and where a carry runs through.
TEST(Format, FixedNotationRoundsExactly) {
    EXPECT_EQ(shown("%.4f|%.4f|%.5f|%.8f|%.9f", 5e-5, 1.5e-4, 1.5e-5, 5e-9, 1.5e-9),
              "0.0001|0.0001|0.00002|0.00000001|0.000000001");
    EXPECT_EQ(shown("%.0f|%.0f|%.0f|%#.0f|%.9f", 0.5, 1.5, 2.5, 0.0, 0.9999999999), "0|2|2|0.|1.000000000");
    EXPECT_EQ(shown("%.2f|%.9f|%.3f", 0x1p63, 0x1p64, -0x1.fffffffffffffp62),
              "9223372036854775808.00|18446744073709551616.000000000|-9223372036854774784.000");
}

// What glibc prints where C leaves it open, and where other C libraries differ.
TEST(Format, OpenQuestionsAreAnsweredAsByGlibc) {
    const char* const null = nullptr;
    const char ends[] = {'a', 'b', 'c'};  // no NUL: a precision bounds the read
    int untouched = 7;
    EXPECT_EQ(shown("%s|%.6s|%.5s|%9s|%p|%-8p|", null, null, null, null, null, null),
              "(null)|(null)||   (null)|(nil)|(nil)   |");
    EXPECT_EQ(shown("%.3s|%-5.2s|%05s|%p", ends, ends, "x", reinterpret_cast<void*>(0x1234)), "abc|ab   |    x|0x1234");
    EXPECT_EQ(shown("a%nb%hhnc%d", &untouched, &untouched, 1), "abc1");
    EXPECT_EQ(untouched, 7);
    EXPECT_EQ(shown("%ls|%5.2ls|%S|%lc|%hs|%5%", L"abc", L"abc", L"x", L'y', "z"), "abc|   ab|x|y|z|%");
    EXPECT_EQ(shown("%-*d|%*d|%.*d|%#b|%'d|%td", 4, 1, -4, 1, -3, 1, 5, 1234567, std::ptrdiff_t{-5}),
              "1   |1   |1|0b101|1234567|-5");
}

// Unknown conversions come out as they were understood; a format that ends inside one fails, as does a result that is
// longer than an int can say.
TEST(Format, BadFormatsAndHugeNumbers) {
    EXPECT_EQ(shown("%k|%0-5k|%lk|%y|%\x80", 1), "%k|%-5k|%k|%y|%\x80");
    EXPECT_EQ(shown("%+ #'0-5.3lk|%5.k|%.-5d|%5-d|%lhd", 1), "%#'+-5.3k|%5.0k|%.0-5d|%5-d|%hd");
    EXPECT_EQ(shown("%*k|%.*k|%.*k|%d", -7, -7, 3, 4), "%-7k|%k|%.3k|4");
    for (const char* format : {"abc%", "abc%-", "abc%5", "abc%5.", "abc%5.5", "abc%l", "abc%hh"}) {
        const Formatted result = formatted(format);
        EXPECT_EQ(result.count, -1) << format;
        EXPECT_EQ(result.text, "abc") << format;
    }
    EXPECT_EQ(formatted("%*d", INT_MIN, 1).count, -1);
    for (const char* format : {"%2147483648d", "%.2147483648d", "%99999999999999999999d", "x%2147483647d"})
        EXPECT_EQ(formatted(format, 1).count, -1) << format;
    for (const char* format : {"%.2147483647f", "%.2147483647e", "%.2147483647a", "%2147483647fx"})
        EXPECT_EQ(formatted(format, 1.0).count, -1) << format;
    char cut[8];
    EXPECT_EQ(bounded(cut, sizeof cut, "%.2147483645f", 1.0), INT_MAX);
    EXPECT_STREQ(cut, "1.00000");
}

TEST(Strsprintf, CountsTheNul) {
    char buffer[64] = "~~~~~";
    EXPECT_EQ(Strsprintf(buffer, "%s-%d", "ab", 5), 5);
    EXPECT_STREQ(buffer, "ab-5");
    EXPECT_EQ(Strsprintf(buffer, "%s, in its own place", buffer), 23);
    EXPECT_STREQ(buffer, "ab-5, in its own place");
}

TEST(Strfprintf, SaysWhenItCouldNotWrite) {
    const TestFolder folder;
    const std::string path = folder.NativeText("out.txt"), text(900, 'x');
    std::FILE* file = std::fopen(path.c_str(), "wb");
    EXPECT_EQ(Strfprintf(file, "%s%1000d", text.c_str(), 1), 1900);
    std::fclose(file);
    EXPECT_EQ(folder.Read("out.txt"), text + std::string(999, ' ') + "1");
    file = std::fopen(path.c_str(), "rb");
    EXPECT_EQ(Strfprintf(file, "%1000d%d", 1, 2), -1);
    std::fclose(file);
}

}  // namespace
