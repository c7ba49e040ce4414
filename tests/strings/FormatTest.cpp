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

#include "strings/FormatSink.h"

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
        const std::string format = random.begin() + "fFeEgGaA"[random.below(8)];
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
    EXPECT_EQ(random.sum(), 0xC0B9F0EFDE3466FDu);
}

TEST(Format, RandomLongDoubles) {
    RandomFormats random(3);
    for (int i = 0; i < 30000; ++i) {
        const std::string format = random.begin() + "L" + "fFeEgGaA"[random.below(8)];
        auto value = static_cast<long double>(random.bits());
        if (random.below(2)) value = -value;
        const int scale = random.below(4) ? static_cast<int>(random.below(160)) : static_cast<int>(random.below(16600));
        random.check(format, std::ldexp(value, random.below(2) ? -scale : scale));
        if (HasFatalFailure()) return;
    }
    EXPECT_EQ(random.sum(), 0xF6AE698F97FBF84Fu);
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

}  // namespace
