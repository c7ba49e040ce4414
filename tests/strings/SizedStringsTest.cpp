#include <kora/Str.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <random>
#include <string>

#include "tests/strings/SizedBuffer.h"

namespace {

constexpr std::size_t kAmple = 120;  // so large that no size needs to be given

// What an operation on a destination of `room` bytes leaves there, and the flag. '.' is NUL, '~' a byte that was not
// touched.
template <class Operation>
std::string outcome(std::size_t room, std::string_view held, Operation operation) {
    SizedBuffer buffer(room, held);
    StrAssign("xx", nullptr, 0);  // the flag is set before
    operation(buffer.data(), room == kAmple ? -1 : buffer.size());
    return buffer.bytes() + (StrStringError() ? " cut" : " whole");
}

// The rules for destinations, character by character.
struct Model {
    std::string bytes;
    bool flag = false;

    std::size_t length() const { return std::min(bytes.find('.'), bytes.size()); }
    void put(std::size_t at, char c) {
        if (at < bytes.size()) bytes[at] = c;
    }
    void write(std::size_t at, const std::string& text) {
        for (const char c : text) put(at++, c);
        put(at, '.');
        flag = at > bytes.size();
    }
    void insert(const std::string& text, std::size_t position) {
        const std::size_t s = text.size(), d = length();
        flag = !(s + d <= bytes.size() && position <= d);
        if (flag) return;
        for (std::size_t i = d; i-- > position;) put(i + s, bytes[i]);
        for (std::size_t i = 0; i < s; ++i) put(position + i, text[i]);
        put(s + d, '.');
    }
    void remove(std::size_t position, std::size_t count) {
        const std::size_t n = length();
        flag = position >= n;
        if (flag || count == 0) return;
        if (position + count > n) return put(position, '.');
        for (std::size_t i = position + count; i < n; ++i) put(i - count, bytes[i]);
        put(n - count, '.');
    }
};

// A text behind which nothing may be read: its bytes alone for a size within it, else those and the NUL.
std::unique_ptr<char[]> exactly(const std::string& text, int size) {
    const std::size_t end = size < 0 ? text.size() + 1 : std::min(static_cast<std::size_t>(size), text.size() + 1);
    auto bytes = std::make_unique<char[]>(end);
    std::copy_n(text.c_str(), end, bytes.get());
    return bytes;
}

}  // namespace

TEST(SizedStrings, DestinationsAgreeWithTheRulesCharacterByCharacter) {
    std::mt19937 random(20240611);
    for (int round = 0; round < 20000 && !HasFailure(); ++round) {
        const std::size_t room = random() % 8 ? random() % 9 : kAmple;
        const std::string held = randomText(random, "abc", 9).substr(0, room);
        const std::string a = randomText(random, "123", 6), b = randomText(random, "xyz", room < kAmple ? 6 : 90);
        const int n = random() % 2 ? -1 : static_cast<int>(random() % 8);
        const std::string sized = n < 0 ? a : a.substr(0, static_cast<std::size_t>(n));
        const auto counted = exactly(a, n), ended = exactly(b, -1);
        const auto position = static_cast<int>(random() % 10) - 1;
        const auto count = random() % 9 ? static_cast<int>(random() % 9) - 1 : INT_MAX;
        const auto from = static_cast<std::size_t>(std::max(position, 0));
        SCOPED_TRACE(testing::Message() << "round " << round << ": room " << room << " held '" << held << "' a '"
                                        << sized << "' b '" << b << "' at " << position << " count " << count);
        const auto check = [&](auto operation, auto rule) {
            Model model{SizedBuffer(room, held).bytes()};
            rule(model);
            EXPECT_EQ(outcome(room, held, operation), model.bytes + (model.flag ? " cut" : " whole"));
        };
        const char* const src = counted.get();
        check([&](char* s, int size) { StrAssign(ended.get(), s, size); }, [&](Model& m) { m.write(0, b); });
        check([&](char* s, int size) { StrAssign(src, n, s, size); }, [&](Model& m) { m.write(0, sized); });
        check([&](char* s, int size) { StrAppend(ended.get(), s, size); }, [&](Model& m) { m.write(m.length(), b); });
        check([&](char* s, int size) { StrAppend(src, n, s, size); }, [&](Model& m) { m.write(m.length(), sized); });
        check([&](char* s, int size) { StrConcat(src, n, ended.get(), -1, s, size); },
              [&](Model& m) { m.write(0, sized + b); });
        check([&](char* s, int size) { StrConcat(s, size, src, n, s, size); },
              [&](Model& m) { m.write(m.length(), sized); });
        check([&](char* s, int size) { StrCopy(src, 1, static_cast<int>(sized.size()) - 1, s, size); },
              [&](Model& m) { m.write(0, sized.empty() ? "" : sized.substr(1)); });
        check([&](char* s, int size) { StrInsert(src, n, s, size, position); },
              [&](Model& m) { m.insert(sized, from); });
        check([&](char* s, int size) { StrDelete(s, size, position, count); },
              [&](Model& m) { m.remove(from, static_cast<std::size_t>(std::max(count, 0))); });
    }
}

// Behind common beginnings of every length that is compared at once.
TEST(SizedStrings, BytesCompareAsSignedAndOnlyAsciiLettersHaveAnotherCase) {
    for (int code = 0; code < 256 * 256; ++code) {
        const auto a = static_cast<signed char>(code / 256), b = static_cast<signed char>(code % 256);
        const std::string common(static_cast<std::size_t>(code % 19), 'x');
        const std::string first = common + static_cast<char>(a), second = common + static_cast<char>(b);
        if (a == 0 || b == 0) continue;
        const bool cases = (code / 256 ^ code % 256) == 32 && ((a | 32) >= 'a' && (a | 32) <= 'z');
        ASSERT_EQ(StrCompare(first.c_str(), -1, second.c_str(), -1), (a > b) - (a < b)) << code;
        ASSERT_EQ(StrEqualStr(first.c_str(), second.c_str(), -1, true), a == b) << code;
        ASSERT_EQ(StrEqualStr(first.c_str(), -1, second.c_str(), -1, false), a == b || cases) << code;
    }
}

// Texts that repeat themselves lead into every branch of the search.
TEST(StrPos, AgreesWithTrialAtEveryStart) {
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        const std::string alphabet = std::string("ab\xE9").substr(0, 2 + random() % 2);
        std::string sought = randomText(random, alphabet, 5), text = randomText(random, alphabet, 6);
        for (auto i = random() % 7; i > 0; --i) sought += sought.substr(0, 8);
        while (text.size() < 400 && random() % 9) text += random() % 2 ? text : sought.substr(0, random() % 20);
        text += std::string(random() % 2 ? 150 : 0, 'a');
        if (random() % 2) text += sought;
        const auto size = random() % 2 ? -1 : static_cast<int>(random() % (text.size() + 2));
        const auto expected = text.substr(0, static_cast<std::size_t>(size)).find(sought);
        ASSERT_EQ(StrPos(sought.c_str(), -1, exactly(text, size).get(), size), static_cast<int>(expected))
            << "round " << round << ": '" << sought << "' in '" << text << "' of " << size;
    }
}

// Trial at every start would take 10^11 steps for each of these.
TEST(StrPos, NearMatchesEverywhereStayLinear) {
    const std::string run(300000, 'a'), text = run + run + run;
    for (const std::string& sought : {run + 'b', 'b' + run, run + 'b' + run, 'c' + run + 'b' + run + 'c'}) {
        EXPECT_EQ(StrPos(sought.c_str(), -1, text.c_str(), -1), -1);
        const std::string holding = text + '-' + sought;
        EXPECT_EQ(StrPos(sought.c_str(), -1, holding.c_str(), -1), static_cast<int>(text.size() + 1));
    }
}
