#include <gtest/gtest.h>
#include <kora/File.h>
#include <kora/Par.h>

#include <functional>
#include <memory>
#include <random>
#include <tuple>

#include "tests/parse/ReaderModel.h"
#include "tests/support/RecordedPresenter.h"
#include "tests/support/TestFolder.h"
#include "tests/support/VirtualSlot.h"

namespace {

using kora::test::ReaderModel;
using kora::test::TestFolder;

template <class Array = RamArray>
std::unique_ptr<Array> arrayOf(const std::string& text) {
    auto array = std::make_unique<Array>();
    EXPECT_TRUE(array->RamAllocate(static_cast<unsigned long>(text.size())));
    for (unsigned long i = 0; i < text.size(); ++i)
        array->RamArray::operator[](i) = static_cast<unsigned char>(text[i]);
    return array;
}

/// Shows what a derived reader sees, and writes down which operations were reached through the virtual table.
class OpenReader : public ParSource {
public:
    OpenReader() : ParSource(nullptr) {}
    explicit OpenReader(const std::string& text, ParMode mode = ParModeLine, bool keep = false) : OpenReader() {
        text_ = arrayOf(text);
        EXPECT_EQ(ParOpen(nullptr, false, text_.get(), mode, true, keep), 0);
    }
    void ParClose() override { calls += "Close ", ParSource::ParClose(); }
    long GetPos() override { return calls += "GetPos ", ParSource::GetPos(); }
    void Seek(long to) override { calls += "Seek ", ParSource::Seek(to); }
    void ParBlanksSkip() override { calls += "Blanks ", ParSource::ParBlanksSkip(); }
    bool ParToken(char* buffer, ParCharSet set, short max) override {
        return calls += "Token ", ParSource::ParToken(buffer, set, max);
    }
    std::string take() { return std::exchange(calls, ""); }
    short open(FilePath& file, bool ask = false) { return ParOpen(&file, ask, nullptr, ParModeLine, false, false); }
    /// The characters up to the statement end.
    std::string statement() {
        std::string read;
        for (; !ParStmtEnd(); ParCharNext()) read += ParCharCurrent();
        return read;
    }
    std::string token(const char* members, short max = 80) {
        ParCharSet set;
        char buffer[81];
        ParCharSetInit(&set, members, -1);
        ParToken(buffer, set, max);
        return buffer;
    }
    std::string block(long from, long to) {
        CString bytes = "old";
        GetBlock(from, to, bytes);
        return bytes;
    }
    using ParSource::commentDepth;
    using ParSource::maxPos;
    using ParSource::savedPos;
    using ParSource::sawComment;
    using ParSource::sawText;

private:
    std::string calls;
    std::unique_ptr<RamArray> text_;
};

TEST(ParSource, SlotsStandInOrder) {
    using kora::test::virtualSlot;
    using P = ParSource;
    const int slots[] = {
        virtualSlot(&P::ParOpen),        virtualSlot(&P::ParClose),
        virtualSlot(&P::ParCharSetInit), virtualSlot(&P::ParCharNextEscape),
        virtualSlot(&P::ParCharNext),    virtualSlot(&P::ParCharCurrent),
        virtualSlot(&P::ParStmtEnd),     virtualSlot(&P::ParFileEnd),
        virtualSlot(&P::ParStmtNext),    virtualSlot(&P::GetPos),
        virtualSlot(&P::Seek),           virtualSlot(&P::ParBackspace),
        virtualSlot(&P::ParBlanksSkip),  virtualSlot(&P::ParToken),
        virtualSlot(&P::ParShort),       virtualSlot(&P::ParLong),
        virtualSlot(&P::ParInt64),       virtualSlot(&P::ParCompare),
        virtualSlot(&P::ParCharsNumGet), virtualSlot(&P::ParCharsSrcNameGet),
        virtualSlot(&P::ParCharsAllGet),
    };
    int slot = 1;  // behind the destructor
    for (const int each : slots) EXPECT_EQ(each, slot++);
    EXPECT_EQ(virtualSlot(&P::GetBlock), -1);
}

TEST(ParSource, CommentsAndStatementEndsAreNotSeen) {
    struct Row {
        const char* text;
        ParMode mode;
        std::vector<std::string> statements;
    };
    const Row rows[] = {
        {"a {note} b\n", ParModeLine, {"a  b"}},
        {"a\n{c}\nb\n", ParModeLine, {"a", "b"}},
        {"a\n\nb", ParModeLine, {"a", "", "b"}},
        {"{a {b} c}\nx\n", ParModeLine, {"x"}},
        {"aa{;\n};b;", ParModeSemicolon, {"aa", "b"}},
        {"ab\ncd;e", static_cast<ParMode>(7), {"ab cd", "e"}},
        {"a}b\n", ParModeLine, {"a}b"}},
        {"\ta\x01\xFF\n", ParModeLine, {" a \xFF"}},
        {"ab{never ends\n\n", ParModeLine, {"ab"}},
        // the first character is not text yet when the end comes
        {"x{c}\ny\n", ParModeLine, {"xy"}},
        {"xx{c}\ny\n", ParModeLine, {"xx", "y"}},
    };
    for (const Row& row : rows) {
        OpenReader reader(row.text, row.mode);
        std::vector<std::string> statements;
        while (!reader.ParFileEnd()) {
            statements.push_back(reader.statement());
            if (!reader.ParFileEnd()) reader.ParStmtNext();
        }
        EXPECT_EQ(statements, row.statements) << row.text;
    }
    EXPECT_EQ(OpenReader(std::string("\ta\0b\r\n", 6), ParModeLine, /*keep=*/true).statement(), "\tab\r");
    // The depth is counted in 16 bits: one brace more than fits leads out of the comment.
    EXPECT_EQ(OpenReader(std::string(32767, '{') + "x{a}b\n").statement(), "a}b");
}

TEST(ParSource, ClassesHoldWhatTheyAreMadeOf) {
    OpenReader reader("  abcdef\xE4 a;{x};b", ParModeSemicolon);
    EXPECT_EQ(reader.token("", 3), "abc");  // no characters are the class of all but the blank
    EXPECT_EQ(reader.ParCharCurrent(), 'd');
    EXPECT_EQ(reader.token(nullptr, 0), "");
    EXPECT_EQ(reader.token("abcdef\xE4"), "def");  // of no bitmap class
    EXPECT_EQ(reader.token(nullptr), "\xE4");
    EXPECT_EQ(reader.token("ab;{}x"), "a");  // statement ends and braces are in vain
    std::string built[3];
    for (int c = 0; c < 256; ++c) {
        int i = 0;
        for (const ParCharSet* set : {reader.ParCharsNumGet(), reader.ParCharsSrcNameGet(), reader.ParCharsAllGet()})
            built[i++] += c < 128 && (set->bits[c / 16] >> c % 16 & 1) != 0 ? std::string(1, static_cast<char>(c)) : "";
    }
    EXPECT_EQ(built[0], "-0123456789ABCDEFH");
    EXPECT_EQ(built[1], "/0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
    EXPECT_TRUE(built[2].empty() && reader.ParCharsAllGet()->all && !reader.ParCharsNumGet()->all);
}

TEST(ParSource, Numbers) {
    OpenReader reader(" 0FFH 70000 1234567890123 -12;x", ParModeSemicolon);
    short small = 7;
    long number = 7;
    int64 large = 7;
    EXPECT_TRUE(reader.ParLong(&number));
    EXPECT_EQ(number, 255);
    reader.ParBackspace();
    EXPECT_TRUE(reader.ParLong(nullptr));
    EXPECT_TRUE(reader.ParShort(&small));
    EXPECT_EQ(small, static_cast<short>(70000));
    EXPECT_TRUE(reader.ParInt64(&large));
    EXPECT_EQ(large, 1234567890123);
    EXPECT_TRUE(reader.ParShort(&small));
    EXPECT_EQ(small, -12);
    EXPECT_TRUE(reader.ParStmtEnd() && !reader.ParFileEnd());
    EXPECT_EQ(reader.ParCharCurrent(), '\0');
    reader.ParStmtNext();
    EXPECT_FALSE(reader.ParInt64(&large) || reader.ParLong(&number) || reader.ParShort(&small) ||
                 reader.ParInt64(nullptr));
    EXPECT_TRUE(large == 1234567890123 && number == 255 && small == -12);
    EXPECT_EQ(reader.ParCharCurrent(), 'x');
}

TEST(ParSource, ComparesAhead) {
    OpenReader reader("ENDIF{c} x\nEND");
    struct Row {
        const char* text;
        bool equal;
        long pos;
    };
    static constexpr Row rows[] = {
        {"ENDX", false, 0},   {"end", false, 0},  {"END", true, 3},
        {"", true, 3},        {nullptr, true, 3}, {"IF xy", false, 3},  // over the statement's end
        {"IF x\n", false, 3},                                           // and the end is no character
        {"IF x", true, 10},   {"E", false, 10},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(reader.ParCompare(row.text), row.equal) << row.text;
        EXPECT_EQ(reader.GetPos(), row.pos);
    }
    EXPECT_TRUE(reader.ParStmtEnd());
    reader.ParStmtNext();
    EXPECT_FALSE(reader.ParCompare("ENDE"));
    EXPECT_TRUE(reader.ParCompare("END"));
    EXPECT_TRUE(reader.ParFileEnd());
}

TEST(ParSource, ReadsFilesWholeOrNotAtAll) {
    const TestFolder folder;
    kora::test::RecordedPresenter user;
    OpenReader reader;
    for (const std::size_t size : {0u, 1u, 17u, 4096u, 100'001u}) {
        std::string text;
        for (std::size_t i = 0; i < size; ++i) text += static_cast<char>(i * 7 % 253);
        folder.write("a.txt", text);
        FilePath path(folder.path("a.txt").c_str());
        ASSERT_EQ(reader.open(path), 0);
        EXPECT_EQ(reader.ParFileEnd(), size == 0);
        EXPECT_TRUE(reader.block(-5, 200'000) == text) << size;
        for (const long from : {0L, 5L, 1'000L, 99'999L})
            EXPECT_EQ(reader.block(from, from + 40), text.substr(std::min(size, static_cast<std::size_t>(from)), 40));
        EXPECT_EQ(reader.block(10, 5), "");
    }
    folder.makeFolder("b.txt");
    for (const char* name : {"none.txt", "b.txt"}) {
        FilePath path(folder.path(name).c_str());
        EXPECT_EQ(reader.open(path), -1) << name;
        EXPECT_TRUE(reader.ParFileEnd() && reader.ParStmtEnd() && reader.block(0, 10).empty());
    }
    EXPECT_TRUE(user.asked.empty());
    FilePath nameless((folder.path() + "\\").c_str()), other(folder.path("other.dat").c_str());
    EXPECT_EQ(reader.open(nameless), -1);  // cancelled
    user.chosen = folder.path("a.txt");
    EXPECT_EQ(reader.open(nameless), 0);
    EXPECT_EQ(reader.open(other, /*ask=*/true), 0);
    ASSERT_EQ(user.asked.size(), 3u);
    EXPECT_EQ(user.asked[2].filter, "Text Files;txt");
    EXPECT_EQ(user.asked[2].prompt, "");
    EXPECT_EQ(user.asked[2].path, folder.path("other.txt"));
}

TEST(ParSource, ClosedReaderHasNothing) {
    OpenReader reader;
    EXPECT_EQ(reader.ParOpen(nullptr, false, nullptr, ParModeLine, false, false), -1);
    for (int round = 0; round < 2; ++round) {
        reader.ParCharNext();
        reader.ParCharNextEscape();
        reader.ParStmtNext();
        reader.ParBackspace();
        reader.Seek(5);
        short number;
        EXPECT_FALSE(reader.ParShort(&number) || reader.ParCompare("x") || !reader.block(0, 10).empty());
        EXPECT_TRUE(reader.ParStmtEnd() && reader.ParFileEnd() && reader.ParCharCurrent() == '\0');
        const auto text = arrayOf("abc");
        EXPECT_EQ(reader.ParOpen(nullptr, false, text.get(), ParModeLine, false, false), 0);
        EXPECT_EQ(reader.ParCharCurrent(), 'a');
        reader.ParClose();
    }
}

TEST(ParSource, OverridesAreReached) {
    OpenReader reader("ab 12 34 56;", ParModeSemicolon);
    reader.take();
    const auto text = arrayOf("ab 12 34 56;");
    reader.ParOpen(nullptr, false, text.get(), ParModeSemicolon, false, false);
    EXPECT_EQ(reader.take(), "Close Seek ");
    for (const auto& [sought, calls] : {std::pair{"x", ""}, {"ax", "Seek "}, {"ay", ""}, {"ab", "Seek "}}) {
        reader.ParCompare(sought);
        EXPECT_EQ(reader.take(), calls) << sought;
    }
    short small;
    long number;
    int64 large;
    EXPECT_TRUE(reader.ParShort(&small) && reader.ParLong(&number) && reader.ParInt64(&large));
    EXPECT_EQ(reader.take(), "GetPos Token Blanks GetPos Token Blanks GetPos Token Blanks ");
    reader.ParBackspace();
    EXPECT_EQ(reader.take(), "Seek ");
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

// The array is the caller's: it may be allocated anew, and emptied, while a reader is open on it.
TEST(ParSource, ArraysMayChangeBetweenReads) {
    const auto text = arrayOf(std::string(3000, 'a'));
    OpenReader reader;
    EXPECT_EQ(reader.ParOpen(nullptr, false, text.get(), ParModeLine, false, false), 0);
    EXPECT_TRUE(text->RamAllocate(60000));
    (*text)[1] = 'c';
    reader.ParCharNext();
    EXPECT_EQ(reader.ParCharCurrent(), 'c');
    text->RamDeallocate();
    reader.token(nullptr);
    reader.ParStmtNext();
    EXPECT_TRUE(reader.ParFileEnd());
    reader.ParClose();
}

/// Random operations on a random text, against the model: as the caller's array, as a derived one, as a file.
class RandomReading {
public:
    RandomReading(unsigned seed, const TestFolder& folder) : random_(seed) {
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
        kind_ = below(3);
        if (kind_ == 2) {
            folder.write("random.txt", model_.text);
            FilePath path(folder.path("random.txt").c_str());
            EXPECT_EQ(reader_.ParOpen(&path, false, nullptr, mode, true, model_.keepControl), 0);
        } else {
            std::string bytes = model_.text;
            if (kind_ == 1)
                for (char& c : bytes) --c;
            array_ = kind_ == 1 ? arrayOf<ShiftedArray>(bytes) : arrayOf(bytes);
            EXPECT_EQ(reader_.ParOpen(nullptr, false, array_.get(), mode, true, model_.keepControl), 0);
        }
        model_.open();
    }
    ~RandomReading() { reader_.ParClose(); }

    void step() {
        const std::function<void()> operations[] = {
            [&] { reader_.ParCharNext(), model_.next(); },
            [&] { reader_.ParCharNextEscape(), model_.nextEscape(); },
            [&] { reader_.ParStmtNext(), model_.stmtNext(); },
            [&] { reader_.ParBackspace(), model_.backspace(); },
            [&] { reader_.ParBlanksSkip(), model_.blanksSkip(); },
            [&] {
                const long to = static_cast<long>(below(model_.text.size() + 3)) - 1;
                reader_.Seek(to), model_.seek(to);
            },
            [&] { token(); },
            [&] { change(); },
            [&] {
                std::string sought = ahead();
                if (below(2)) sought.resize(below(sought.size() + 1));
                if (below(3) == 0) sought += "ab1 {\n"[below(6)];
                EXPECT_EQ(reader_.ParCompare(sought.c_str()), model_.compare(sought)) << sought;
            },
        };
        static constexpr int often[] = {0, 0, 1, 2, 3, 3, 4, 5, 6, 6, 7, 8, 8, 8};
        operations[often[below(std::size(often))]]();
        EXPECT_EQ(
            std::tuple(reader_.ParCharCurrent(), reader_.GetPos(), reader_.savedPos, reader_.maxPos,
                       reader_.ParStmtEnd(), reader_.ParFileEnd(), reader_.commentDepth, reader_.sawText,
                       reader_.sawComment),
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
        reader_.ParCharSetInit(&set, members, -1);
        char taken[81];
        std::string expected;
        const bool any = model_.token(expected, members && *members == '\xFF' ? "z " : members, max);
        EXPECT_EQ(reader_.ParToken(taken, set, static_cast<short>(max)), any);
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
    /// Changes a byte of the caller's array.
    void change() {
        if (!array_ || model_.text.empty()) return;
        const unsigned at = below(model_.text.size());
        model_.text[at] = "a {}\n;"[below(6)];
        array_->RamArray::operator[](at) = static_cast<unsigned char>(model_.text[at] - (kind_ == 1));
    }

    std::mt19937 random_;
    ReaderModel model_;
    unsigned kind_ = 0;
    std::unique_ptr<RamArray> array_;
    OpenReader reader_;
};

TEST(ParSource, RandomOperationsAgainstTheModel) {
    const TestFolder folder;
    for (unsigned seed = 0; seed < 1500; ++seed) {
        RandomReading reading(seed, folder);
        for (int i = 0; i < 60 && !testing::Test::HasFailure(); ++i) reading.step();
        ASSERT_FALSE(testing::Test::HasFailure())
            << "seed " << seed << " text " << testing::PrintToString(reading.text());
    }
}

}  // namespace
