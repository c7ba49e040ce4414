#include <gtest/gtest.h>
#include <kora/Par.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <tuple>

#include "tests/parse/ReaderModel.h"
#include "tests/support/VirtualSlot.h"

namespace {

using kora::test::ReaderModel;

void fill(RamArray& array, const std::string& text) {
    array.RamDeallocate();
    EXPECT_TRUE(array.RamAllocate(static_cast<unsigned long>(text.size())));
    for (unsigned long i = 0; i < text.size(); ++i) array.RamArray::operator[](i) = static_cast<unsigned char>(text[i]);
}

TEST(ParSource, SlotsStandInOrder) {
    using P = ParSource;
    EXPECT_EQ(kora::test::firstOutOfSlot(&P::ParOpen, &P::ParClose, &P::ParCharSetInit, &P::ParCharNextEscape,
                                         &P::ParCharNext, &P::ParCharCurrent, &P::ParStmtEnd, &P::ParFileEnd,
                                         &P::ParStmtNext, &P::GetPos, &P::Seek, &P::ParBackspace, &P::ParBlanksSkip,
                                         &P::ParToken, &P::ParShort, &P::ParLong, &P::ParInt64, &P::ParCompare,
                                         &P::ParCharsNumGet, &P::ParCharsSrcNameGet, &P::ParCharsAllGet),
              0);
    EXPECT_EQ(kora::test::virtualSlot(&P::GetBlock), -1);
}

/// Shows what a derived reader sees.
class BareReader : public ParSource {
public:
    BareReader() : ParSource(nullptr) {}
    using ParSource::commentDepth;
    using ParSource::maxPos;
    using ParSource::savedPos;
    using ParSource::sawComment;
    using ParSource::sawText;
    using ParSource::stmtEndChar;
};

/// Writes down which operations were reached through the virtual table.
class OpenReader : public BareReader {
public:
    void ParClose() override { calls += "Close ", ParSource::ParClose(); }
    long GetPos() override { return calls += "GetPos ", ParSource::GetPos(); }
    void Seek(long to) override { calls += "Seek ", ParSource::Seek(to); }
    void ParBlanksSkip() override { calls += "Blanks ", ParSource::ParBlanksSkip(); }
    bool ParToken(char* buffer, ParCharSet set, short max) override {
        return calls += "Token ", ParSource::ParToken(buffer, set, max);
    }
    std::string take() { return std::exchange(calls, ""); }

private:
    std::string calls;
};

TEST(ParSource, OverridesAreReached) {
    RamArray text;
    fill(text, "ab 0FFH 70000 1234567890123;");
    OpenReader reader;
    reader.ParOpen(nullptr, false, &text, ParModeSemicolon, false, false);
    EXPECT_EQ(reader.take(), "Close Seek ");
    for (const auto& [sought, calls] : {std::pair{"x", ""}, {"ax", "Seek "}, {"ay", ""}, {"ab", "Seek "}}) {
        reader.ParCompare(sought);
        EXPECT_EQ(reader.take(), calls) << sought;
    }
    long number;
    short small;
    int64 large;
    EXPECT_TRUE(reader.ParLong(&number) && reader.ParShort(&small) && reader.ParInt64(&large));
    EXPECT_EQ(std::tuple(number, small, large), std::tuple(255, static_cast<short>(70000), 1234567890123));
    EXPECT_EQ(reader.take(), "GetPos Token Blanks GetPos Token Blanks GetPos Token Blanks ");
    EXPECT_FALSE(reader.ParLong(&number) || reader.ParShort(&small) || reader.ParInt64(&large));
    reader.take();
    reader.ParBackspace();
    EXPECT_EQ(reader.take(), "Seek ");
}

TEST(ParSource, ClosedReaderHasNothing) {
    ParSource reader(nullptr);
    EXPECT_EQ(reader.ParOpen(nullptr, false, nullptr, ParModeLine, false, false), -1);
    reader.ParCharNextEscape();
    reader.Seek(5);
    EXPECT_TRUE(reader.ParFileEnd() && reader.ParCharCurrent() == '\0' && !reader.ParCompare("x"));
}

// The blank, which was read by ParOpen(), counts as no text; the word does.
TEST(ParSource, WordBehindACommentIsAStatement) {
    RamArray text;
    fill(text, "{c} ab;cd;");
    ParSource reader(nullptr);
    reader.ParOpen(nullptr, false, &text, ParModeSemicolon, false, false);
    char token[9];
    EXPECT_TRUE(reader.ParToken(token, *reader.ParCharsAllGet(), 8) && reader.ParStmtEnd());
    EXPECT_STREQ(token, "ab");
}

/// An array whose bytes are not what its blocks hold.
class ShiftedArray : public RamArray {
public:
    unsigned char& operator[](unsigned long index) override {
        byte_ = static_cast<unsigned char>(RamArray::operator[](index) + 1);
        return byte_;
    }

private:
    unsigned char byte_ = 0;
};

/// Random operations on a random text, against the model: in a plain array and in a derived one, by a reader that
/// overrides operations and by one that does not.
class RandomReading {
public:
    explicit RandomReading(unsigned seed) : random_(seed) {
        static const char* const alphabets[] = {"ab {}\n;", "aaaaaaaab;\n ", "{}{}ab", "a1-H \t;\n{}",
                                                "\x01\xFFz \r\n;{}"};
        const std::string alphabet = alphabets[below(5)] + std::string(below(3) == 0 ? 1 : 0, '\0');
        const std::size_t length = below(3) ? below(60) : below(3000);
        while (model_.text.size() < length) {
            const char c = alphabet[below(alphabet.size())];
            model_.text.append(below(20) ? 1 : below(40), c);
        }
        const auto mode = static_cast<ParMode>(below(3));
        model_.statementEnd = mode == ParModeLine ? '\n' : ';';
        model_.keepControl = below(2) != 0;
        array_ = shifted_ ? std::make_unique<ShiftedArray>() : std::make_unique<RamArray>();
        fillArray();
        EXPECT_EQ(reader_->ParOpen(nullptr, false, array_.get(), mode, true, model_.keepControl), 0);
        model_.open();
        // A derived reader may end statements with whatever it likes.
        if (below(4) == 0) reader_->stmtEndChar = model_.statementEnd = "{} a\x01"[below(5)];
    }
    ~RandomReading() { reader_->ParClose(); }

    void step() {
        const std::function<void()> operations[] = {
            [&] { reader_->ParCharNext(), model_.next(); },
            [&] { reader_->ParCharNextEscape(), model_.nextEscape(); },
            [&] { reader_->ParStmtNext(), model_.stmtNext(); },
            [&] { reader_->ParBackspace(), model_.backspace(); },
            [&] { reader_->ParBlanksSkip(), model_.blanksSkip(); },
            [&] {
                const long to = static_cast<long>(below(model_.text.size() + 3)) - 1;
                reader_->Seek(to), model_.seek(to);
            },
            [&] { token(); },
            [&] { change(); },
            [&] {
                std::string sought = ahead();
                if (below(2)) sought.resize(below(sought.size() + 1));
                if (below(3) == 0) sought += "ab1 {\n"[below(6)];
                EXPECT_EQ(reader_->ParCompare(sought.c_str()), model_.compare(sought)) << sought;
            },
        };
        static constexpr int often[] = {0, 0, 1, 2, 3, 3, 4, 5, 6, 6, 7, 8, 8, 8};
        operations[often[below(std::size(often))]]();
        EXPECT_EQ(
            std::tuple(reader_->ParCharCurrent(), reader_->GetPos(), reader_->savedPos, reader_->maxPos,
                       reader_->ParStmtEnd(), reader_->ParFileEnd(), reader_->commentDepth, reader_->sawText,
                       reader_->sawComment),
            std::tuple(model_.current, model_.here(), model_.savedPos, model_.maxPos, model_.stmtEnd || model_.fileEnd,
                       model_.fileEnd, model_.depth, model_.sawText, model_.sawComment));
    }
    const std::string& text() const { return model_.text; }

private:
    unsigned below(std::size_t n) { return static_cast<unsigned>(random_() % n); }

    void token() {
        static const char* const classes[] = {nullptr, "ab", "a1-H;{}\n\x01", "\xFFz "};
        const char* const members = classes[below(4)];
        const int max = below(4) ? 80 : static_cast<int>(below(4));
        ParCharSet set;
        reader_->ParCharSetInit(&set, members, -1);
        char taken[81];
        std::string expected;
        const bool any = model_.token(expected, members && *members == '\xFF' ? "z " : members, max);
        EXPECT_EQ(reader_->ParToken(taken, set, static_cast<short>(max)), any);
        EXPECT_EQ(std::string(taken, expected.size() + 1), expected + '\0');
    }
    /// What a comparison from here on would see.
    std::string ahead() const {
        ReaderModel copy = model_;
        std::string seen;
        for (; !copy.stmtEnd && !copy.fileEnd && copy.current != 0 && seen.size() < 40; copy.read())
            seen += copy.current;
        return seen;
    }
    void fillArray() {
        std::string bytes = model_.text;
        for (char& c : bytes) c = static_cast<char>(c - shifted_);
        fill(*array_, bytes);
    }
    /// The array is the caller's: a byte of it changes, at times the whole is allocated anew.
    void change() {
        if (model_.text.empty()) return;
        const unsigned at = below(model_.text.size());
        model_.text[at] = "a {}\n;"[below(6)];
        if (below(4) == 0) return fillArray();
        array_->RamArray::operator[](at) = static_cast<unsigned char>(model_.text[at] - shifted_);
    }

    std::mt19937 random_;
    ReaderModel model_;
    const bool shifted_ = below(2) != 0;
    std::unique_ptr<RamArray> array_;
    const std::unique_ptr<BareReader> reader_{below(2) ? new OpenReader : new BareReader};
};

TEST(ParSource, RandomOperationsAgainstTheModel) {
    for (unsigned seed = 0; seed < 4000; ++seed) {
        RandomReading reading(seed);
        for (int i = 0; i < 60 && !testing::Test::HasFailure(); ++i) reading.step();
        ASSERT_FALSE(testing::Test::HasFailure())
            << "seed " << seed << " text " << testing::PrintToString(reading.text());
    }
}

// Line, column and line of every position, reckoned from the text before it.
TEST(ParLineColumn, CountsLinesAndBytes) {
    using Place = std::tuple<long, long, CString>;
    std::mt19937 random(9);
    for (int round = 0; round < 300; ++round) {
        std::string text;
        for (std::size_t size = random() % (round % 20 ? 40 : 9000); text.size() < size;)
            text += "ab\t{};\r\r\n\n\xFF"[random() % 11];
        std::string bytes = text;
        for (char& c : bytes) c = static_cast<char>(c - (round % 3 == 0));  // which the derived array gives back
        RamArray plain;
        ShiftedArray derived;
        RamArray& array = round % 3 ? plain : derived;
        fill(array, bytes);
        ParSource reader(nullptr);
        Place place{7, 7, "x"};
        auto& [line, column, found] = place;
        EXPECT_FALSE(ParLineColumn(reader, line, column, found) || place != Place(7, 7, "x")) << "closed";
        reader.ParOpen(nullptr, false, &array, round % 2 ? ParModeLine : ParModeSemicolon, false, false);
        const long length = static_cast<long>(text.size());
        for (long position = -2; position < length + 3; position += 1 + length / 40) {
            const auto at = static_cast<std::size_t>(std::clamp(position, 0L, length));
            const std::string before = text.substr(0, at);
            const std::size_t begin = before.rfind('\n') + 1, end = std::min(text.find('\n', begin), text.size());
            CString whole = text.substr(begin, end - begin);
            if (end < text.size() && whole.ends_with('\r')) whole.pop_back();
            const Place expected{std::ranges::count(before, '\n') + 1, std::min(at - begin, whole.size()) + 1, whole};
            ASSERT_TRUE(ParLineColumn(reader, position, line, column, found));
            ASSERT_EQ(place, expected) << testing::PrintToString(text) << " at " << position;
            reader.Seek(position);
            if (reader.GetPos() != static_cast<long>(at)) continue;  // in a comment, or past one
            ASSERT_TRUE(ParLineColumn(reader, line, column, found));
            ASSERT_EQ(place, expected);
        }
    }
}

}  // namespace
