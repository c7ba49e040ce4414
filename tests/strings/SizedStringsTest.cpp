#include <kora/Str.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

#include "tests/strings/SizedBuffer.h"

namespace {

// What an operation on a destination of `room` bytes leaves there, and the flag, as "bytes flag". '.' is NUL, '~' a
// byte that was not touched.
template <class Operation>
std::string outcome(std::size_t room, std::string_view held, Operation operation) {
    SizedBuffer buffer(room, held);
    StrAssign("xx", nullptr, 0);  // the flag is set before
    operation(buffer.data(), buffer.size());
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
    void assign(const std::string& text) {
        std::size_t at = 0;
        while (at < text.size() && at < bytes.size()) put(at, text[at]), ++at;
        put(at, '.');
        flag = text.size() > bytes.size();
    }
    void append(const std::string& text) {
        std::size_t at = length(), from = 0;
        while (from < text.size() && at < bytes.size()) put(at++, text[from++]);
        put(at, '.');
        flag = from < text.size();
    }
    void concat(const std::string& a, const std::string& b) {
        assign(a);
        for (std::size_t i = 0; i < b.size(); ++i) put(a.size() + i, b[i]);
        put(a.size() + b.size(), '.');
        flag = a.size() + b.size() > bytes.size();
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
    std::string outcome() const { return bytes + (flag ? " cut" : " whole"); }
};

}  // namespace

TEST(SizedStrings, LengthEndsAtTheNulOrTheSize) {
    EXPECT_EQ(StrLength("abc", -1), 3);
    EXPECT_EQ(StrLength("abc", 0), 0);
    EXPECT_EQ(StrLength("abc", 3), 3);
    EXPECT_EQ(StrLength("abc", 2), 2);
    EXPECT_EQ(StrLength("abc", 9), 3);
    EXPECT_EQ(StrLength("\xE9\xFF", -1), 2);
}

TEST(SizedStrings, TheFlagIsOneForAll) {
    StrAssign("xx", nullptr, 0);
    EXPECT_EQ(StrLength(nullptr, -1), 0);
    EXPECT_TRUE(StrStringError()) << "null leaves it alone";
    EXPECT_FALSE(StrStringError()) << "reading clears it";
    const auto clears = [](auto operation) {
        StrAssign("xx", nullptr, 0);
        operation();
        return !StrStringError();
    };
    EXPECT_TRUE(clears([] { StrLength("", 0); }));
    EXPECT_TRUE(clears([] { StrPos("abc", -1, "ab", -1); }));
    EXPECT_TRUE(clears([] { StrCompare("a", -1, "b", -1); }));
    EXPECT_TRUE(clears([] { StrEqualStr("a", "b", -1, true); }));
    EXPECT_TRUE(clears([] { ::operator delete(StrNew("a")); }));
    EXPECT_TRUE(clears([] { StrCompareName("a", -1, "b", -1, true); }));
    EXPECT_TRUE(clears([] { StrComparePattern("a", -1, "b", -1, true); }));
    EXPECT_FALSE(clears([] { StrNew(nullptr); }));
}

TEST(SizedStrings, InitIsTrueOnce) {
    const bool first = StrInit();
    StrAssign("xx", nullptr, 0);
    EXPECT_FALSE(StrInit());
    EXPECT_TRUE(StrStringError()) << "only the first call clears the flag";
    StrExit();
    EXPECT_FALSE(StrInit());
    (void)first;  // another test of this run may have been the first
}

TEST(SizedStrings, AssignFillsTheBufferToItsLastByte) {
    const auto assigned = [](std::size_t room) {
        return outcome(room, "", [](char* dst, int size) { StrAssign("abc", dst, size); });
    };
    EXPECT_EQ(assigned(5), "abc.~ whole");
    EXPECT_EQ(assigned(4), "abc. whole");
    EXPECT_EQ(assigned(3), "abc whole");
    EXPECT_EQ(assigned(2), "ab cut");
    EXPECT_EQ(assigned(0), " cut");
}

TEST(SizedStrings, NegativeSizesAreUnbounded) {
    SizedBuffer buffer(16);
    StrAssign("abcdef", -1, buffer.data(), -1);
    StrAppend("ghi", 2, buffer.data(), -1);
    StrInsert("--", -1, buffer.data(), -1, 3);
    StrDelete(buffer.data(), -1, 0, 1);
    EXPECT_EQ(buffer.bytes().substr(0, 10), "bc--defgh.");
    StrConcat("ab", -1, "cd", -1, buffer.data(), -1);
    EXPECT_EQ(buffer.text(), "abcd");
    StrCopy("abcd", 1, 2, buffer.data(), -1);
    EXPECT_EQ(buffer.text(), "bc");
    EXPECT_FALSE(StrStringError());
}

// Neither end of an unterminated source is read past; the sanitizers watch.
TEST(SizedStrings, CountedSourcesNeedNoNul) {
    const auto source = std::make_unique<char[]>(3);
    std::copy_n("abc", 3, source.get());
    EXPECT_EQ(outcome(4, "", [&](char* dst, int size) { StrAssign(source.get(), 3, dst, size); }), "abc. whole");
    EXPECT_EQ(outcome(4, "xy", [&](char* dst, int size) { StrAppend(source.get(), 2, dst, size); }), "xyab whole");
    EXPECT_EQ(outcome(2, "", [&](char* dst, int size) { StrAssign(source.get(), dst, size); }), "ab cut");
    EXPECT_EQ(outcome(4, "xy", [&](char* dst, int size) { StrAppend(source.get(), dst, size); }), "xyab cut");
    EXPECT_EQ(outcome(2, "", [&](char* dst, int size) { StrCopy(source.get(), 1, 2, dst, size); }), "bc whole");
    EXPECT_EQ(outcome(1, "", [&](char* dst, int size) { StrCopy(source.get(), 0, 2, dst, size); }), "a cut");
    EXPECT_EQ(outcome(2, "", [&](char* dst, int size) { StrCopy(source.get(), 0, -1, dst, size); }), ".~ whole");
}

TEST(SizedStrings, ConcatMayExtendItsFirstText) {
    for (const std::size_t room : {3U, 4U, 6U}) {
        SizedBuffer buffer(room, "ab");
        StrConcat(buffer.data(), buffer.size(), "cd", -1, buffer.data(), buffer.size());
        EXPECT_EQ(buffer.text(), std::string("abcd").substr(0, room));
        EXPECT_EQ(StrStringError(), room == 3);
    }
}

TEST(SizedStrings, InsertAndDeleteRefuseWhatDoesNotFit) {
    const auto inserted = [](std::size_t room, int position) {
        return outcome(room, "abc", [=](char* dst, int size) { StrInsert("12", 2, dst, size, position); });
    };
    EXPECT_EQ(inserted(6, 3), "abc12. whole");
    EXPECT_EQ(inserted(5, 1), "a12bc whole");
    EXPECT_EQ(inserted(4, 1), "abc. cut");
    EXPECT_EQ(inserted(9, 4), "abc.~~~~~ cut");
    EXPECT_EQ(inserted(5, -7), "12abc whole");
    const auto deleted = [](std::size_t room, int position, int count) {
        return outcome(room, "abc", [=](char* s, int size) { StrDelete(s, size, position, count); });
    };
    EXPECT_EQ(deleted(3, 1, 1), "ac. whole") << "there is room for the NUL now";
    EXPECT_EQ(deleted(4, 1, 2147483647), "a.c. whole");
    EXPECT_EQ(deleted(4, 3, 1), "abc. cut");
    EXPECT_EQ(deleted(4, 1, -1), "abc. whole");
    EXPECT_EQ(deleted(4, -2147483647, 1), "bc.. whole");
}

TEST(SizedStrings, DestinationsAgreeWithTheRulesCharacterByCharacter) {
    constexpr unsigned kSeed = 20240611;
    std::mt19937 random(kSeed);
    for (int round = 0; round < 20000; ++round) {
        const std::size_t room = random() % 9;
        const std::string held = randomText(random, "abc", 9).substr(0, room);
        const std::string a = randomText(random, "123", 6), b = randomText(random, "xyz", 6);
        const int aSize = random() % 2 ? -1 : static_cast<int>(random() % 8);
        const std::string sized = aSize < 0 ? a : a.substr(0, static_cast<std::size_t>(aSize));
        const std::size_t position = random() % 9, count = random() % 9;
        SCOPED_TRACE(testing::Message() << "seed " << kSeed << " round " << round << ": room " << room << " held '"
                                        << held << "' a '" << sized << "' b '" << b << "' at " << position << " count "
                                        << count);
        const Model start{SizedBuffer(room, held).bytes()};
        const auto check = [&](auto operation, auto rule) {
            Model model = start;
            rule(model);
            EXPECT_EQ(outcome(room, held, operation), model.outcome());
        };
        check([&](char* dst, int size) { StrAssign(b.c_str(), dst, size); }, [&](Model& m) { m.assign(b); });
        check([&](char* dst, int size) { StrAssign(b, dst, size); }, [&](Model& m) { m.assign(b); });
        check([&](char* dst, int size) { StrAssign(a.c_str(), aSize, dst, size); }, [&](Model& m) { m.assign(sized); });
        check([&](char* dst, int size) { StrAppend(b.c_str(), dst, size); }, [&](Model& m) { m.append(b); });
        check([&](char* dst, int size) { StrAppend(a.c_str(), aSize, dst, size); }, [&](Model& m) { m.append(sized); });
        check([&](char* dst, int size) { StrConcat(a.c_str(), aSize, b.c_str(), -1, dst, size); },
              [&](Model& m) { m.concat(sized, b); });
        check([&](char* dst, int size) { StrInsert(a.c_str(), aSize, dst, size, static_cast<int>(position)); },
              [&](Model& m) { m.insert(sized, position); });
        check([&](char* dst, int size) { StrDelete(dst, size, static_cast<int>(position), static_cast<int>(count)); },
              [&](Model& m) { m.remove(position, count); });
        if (HasFailure()) break;
    }
}

TEST(SizedStrings, CompareOrdersBytesAsSigned) {
    EXPECT_EQ(StrCompare("a", -1, "ab", -1), -1);
    EXPECT_EQ(StrCompare("ab", -1, "ab", 1), 1);
    EXPECT_EQ(StrCompare("ab", 1, "ac", 1), 0);
    EXPECT_EQ(StrCompare("\xE9", -1, "a", -1), -1);
    EXPECT_EQ(StrCompare("", -1, nullptr, -1), 0);
}

TEST(SizedStrings, EqualFoldsOnlyAsciiLetters) {
    EXPECT_TRUE(StrEqualStr("Abc", "aBC", -1, false));
    EXPECT_FALSE(StrEqualStr("Abc", "aBC", -1, true));
    EXPECT_TRUE(StrEqualStr("abc", 2, "abX", 2, true));
    EXPECT_FALSE(StrEqualStr("abc", "abc", 2, true));
    EXPECT_FALSE(StrEqualStr("\xE9", "\xC9", -1, false));
    EXPECT_TRUE(StrEqualStr("", 0, "x", 0, true));
}

TEST(SizedStrings, CStringsAndHeapCopies) {
    CString text = "old";
    StrAssign("abcd", 3, text);
    EXPECT_EQ(text, "abc");
    StrAppend("def", 2, text);
    StrAppend(text.c_str() + 1, 2, text);
    EXPECT_EQ(text, "abcdebc");
    EXPECT_EQ(StrToCString("abc", 2), "ab");
    EXPECT_EQ(StrToCString(nullptr, -1), "");
    char* copy = StrNew("abc");
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy, "abc");
    ::operator delete(copy);
    EXPECT_EQ(StrNew(nullptr), nullptr);
}

TEST(StrPos, FindsTheFirstPlace) {
    EXPECT_EQ(StrPos("", -1, "abc", -1), 0);
    EXPECT_EQ(StrPos("", -1, "", -1), 0);
    EXPECT_EQ(StrPos("abc", -1, "ab", -1), -1);
    EXPECT_EQ(StrPos("b", -1, "abab", -1), 1);
    EXPECT_EQ(StrPos("bX", 1, "aab", 2), -1);
    EXPECT_EQ(StrPos("B", -1, "abab", -1), -1);
}

// Texts that repeat themselves lead into every branch of the search.
TEST(StrPos, AgreesWithTrialAtEveryStart) {
    constexpr unsigned kSeed = 7;
    std::mt19937 random(kSeed);
    for (int round = 0; round < 20000; ++round) {
        const std::string alphabet = std::string("ab\xE9").substr(0, 2 + random() % 2);
        std::string sought = randomText(random, alphabet, 5);
        std::string text = randomText(random, alphabet, 6);
        for (auto i = random() % 7; i > 0; --i) sought += sought.substr(0, 8);
        while (text.size() < 400 && random() % 9) text += random() % 2 ? text : sought.substr(0, random() % 20);
        text += std::string(random() % 2 ? 150 : 0, 'a');
        if (random() % 2) text += sought;
        const std::size_t expected = text.find(sought);
        ASSERT_EQ(StrPos(sought.c_str(), -1, text.c_str(), -1),
                  expected == std::string::npos ? -1 : static_cast<int>(expected))
            << "seed " << kSeed << " round " << round << ": '" << sought << "' in '" << text << "'";
    }
}

// Trial at every start would take 10^11 steps for each of these.
TEST(StrPos, NearMatchesEverywhereStayLinear) {
    const std::string run(300000, 'a');
    const std::string text = run + run + run;
    for (const std::string& sought : {run + 'b', 'b' + run, run + 'b' + run, 'c' + run + 'b' + run + 'c'}) {
        EXPECT_EQ(StrPos(sought.c_str(), -1, text.c_str(), -1), -1);
        const std::string holding = text + '-' + sought;
        EXPECT_EQ(StrPos(sought.c_str(), -1, holding.c_str(), -1), static_cast<int>(text.size() + 1));
    }
}
