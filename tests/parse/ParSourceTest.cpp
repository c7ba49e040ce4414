#include <gtest/gtest.h>
#include <kora/File.h>
#include <kora/Par.h>

#include <memory>
#include <random>

#include "tests/parse/ReaderModel.h"
#include "tests/support/RecordedPresenter.h"
#include "tests/support/TestFolder.h"
#include "tests/support/VirtualSlot.h"

using kora::test::ReaderModel;
using kora::test::RecordedPresenter;
using kora::test::TestFolder;
using kora::test::virtualSlot;

namespace {

template <class Array = RamArray>
std::unique_ptr<Array> arrayOf(const std::string& text) {
    auto array = std::make_unique<Array>();
    EXPECT_TRUE(array->RamAllocate(static_cast<unsigned long>(text.size())));
    for (std::size_t i = 0; i < text.size(); ++i)
        array->RamArray::operator[](static_cast<unsigned long>(i)) = static_cast<unsigned char>(text[i]);
    return array;
}

/// Shows what a derived reader sees.
class OpenReader : public ParSource {
public:
    OpenReader() : ParSource(nullptr) {}
    using ParSource::commentDepth;
    using ParSource::maxPos;
    using ParSource::savedPos;
    using ParSource::sawComment;
    using ParSource::sawText;
};

/// A reader on a text that it keeps.
class TextReader : public OpenReader {
public:
    explicit TextReader(const std::string& text, ParMode mode = ParModeLine, bool keep = false) : text_(arrayOf(text)) {
        EXPECT_EQ(ParOpen(nullptr, false, text_.get(), mode, true, keep), 0);
    }
    ~TextReader() override { ParClose(); }

    /// The characters up to the statement end.
    std::string statement() {
        std::string read;
        for (; !ParStmtEnd(); ParCharNext()) read += ParCharCurrent();
        return read;
    }
    std::string token(ParCharSet* set, short max = 80) {
        char buffer[81];
        ParToken(buffer, *set, max);
        return buffer;
    }
    RamArray& bytes() { return *text_; }

private:
    std::unique_ptr<RamArray> text_;
};

TEST(ParSource, SlotsStandInOrder) {
    int slot = 1;  // behind the destructor
    EXPECT_EQ(virtualSlot(&ParSource::ParOpen), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParClose), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParCharSetInit), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParCharNextEscape), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParCharNext), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParCharCurrent), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParStmtEnd), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParFileEnd), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParStmtNext), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::GetPos), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::Seek), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParBackspace), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParBlanksSkip), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParToken), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParShort), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParLong), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParInt64), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParCompare), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParCharsNumGet), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParCharsSrcNameGet), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::ParCharsAllGet), slot++);
    EXPECT_EQ(virtualSlot(&ParSource::GetBlock), -1);
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
        {"ab\ncd;e", ParModeSemicolon, {"ab cd", "e"}},
        {"a;b\nc", ParModeLine, {"a;b", "c"}},
        {"a}b\n", ParModeLine, {"a}b"}},
        {"\ta\x01\xFF\n", ParModeLine, {" a \xFF"}},
        {"ab{never ends\n\n", ParModeLine, {"ab"}},
        // the first character is not text yet when the end comes
        {"x{c}\ny\n", ParModeLine, {"xy"}},
        {"xx{c}\ny\n", ParModeLine, {"xx", "y"}},
    };
    for (const Row& row : rows) {
        TextReader reader(row.text, row.mode);
        std::vector<std::string> statements;
        while (!reader.ParFileEnd()) {
            statements.push_back(reader.statement());
            if (!reader.ParFileEnd()) reader.ParStmtNext();
        }
        EXPECT_EQ(statements, row.statements) << row.text;
    }
}

TEST(ParSource, ControlCharactersKept) {
    TextReader reader(std::string("\ta\0b\r\n", 6), ParModeLine, /*keep=*/true);
    EXPECT_EQ(reader.statement(), "\tab\r");
}

TEST(ParSource, RawBytes) {
    TextReader reader("{a}\n;", ParModeLine);
    EXPECT_EQ(reader.ParCharCurrent(), ';');  // a line of comment is none
    reader.Seek(0);
    TextReader quoted("q{\n;}", ParModeLine);
    for (const char c : std::string("{\n;}")) {
        quoted.ParCharNextEscape();
        EXPECT_EQ(quoted.ParCharCurrent(), c);
        EXPECT_FALSE(quoted.ParStmtEnd());
    }
    quoted.ParCharNextEscape();
    EXPECT_TRUE(quoted.ParFileEnd());
    quoted.ParBackspace();
    EXPECT_EQ(quoted.ParCharCurrent(), '}');
}

TEST(ParSource, Tokens) {
    TextReader reader("  abcdef a-b \xE4 12\n");
    EXPECT_EQ(reader.token(reader.ParCharsAllGet(), 3), "abc");
    EXPECT_EQ(reader.ParCharCurrent(), 'd');
    reader.ParBackspace();
    EXPECT_EQ(reader.ParCharCurrent(), ' ');
    EXPECT_EQ(reader.GetPos(), 0);
    EXPECT_EQ(reader.token(reader.ParCharsAllGet()), "abcdef");
    EXPECT_EQ(reader.token(reader.ParCharsSrcNameGet()), "a");
    EXPECT_EQ(reader.token(reader.ParCharsSrcNameGet()), "");
    EXPECT_EQ(reader.token(reader.ParCharsAllGet(), 0), "");
    EXPECT_EQ(reader.token(reader.ParCharsAllGet()), "-b");
    EXPECT_EQ(reader.token(reader.ParCharsSrcNameGet()), "");
    EXPECT_EQ(reader.token(reader.ParCharsAllGet()), "\xE4");

    ParCharSet set;
    reader.ParCharSetInit(&set, "12\xE4", 1);
    EXPECT_EQ(reader.token(&set), "1");
    reader.ParCharSetInit(&set, nullptr, -1);
    EXPECT_EQ(reader.token(&set), "2");
    EXPECT_TRUE(reader.ParStmtEnd());
    EXPECT_EQ(reader.token(&set), "");
    reader.ParCharSetInit(&set, "\xE4", -1);
    EXPECT_FALSE(set.all);
    // classes hold statement ends and braces in vain
    TextReader meaning("a;{x};b", ParModeSemicolon);
    meaning.ParCharSetInit(&set, "ab;{}x", -1);
    EXPECT_EQ(meaning.token(&set), "a");
}

TEST(ParSource, Numbers) {
    TextReader reader(" -12 0FFH 70000 1234567890123 x", ParModeSemicolon);
    short small = 7;
    long number = 7;
    int64 large = 7;
    EXPECT_TRUE(reader.ParShort(&small));
    EXPECT_EQ(small, -12);
    EXPECT_TRUE(reader.ParLong(&number));
    EXPECT_EQ(number, 255);
    reader.ParBackspace();
    EXPECT_TRUE(reader.ParLong(nullptr));
    EXPECT_TRUE(reader.ParShort(&small));
    EXPECT_EQ(small, static_cast<short>(70000));
    EXPECT_TRUE(reader.ParInt64(&large));
    EXPECT_EQ(large, 1234567890123);
    EXPECT_FALSE(reader.ParInt64(&large) || reader.ParLong(&number) || reader.ParShort(&small) ||
                 reader.ParInt64(nullptr));
    EXPECT_EQ(large, 1234567890123);
    EXPECT_EQ(reader.ParCharCurrent(), 'x');

    TextReader ends("-12;", ParModeSemicolon);
    EXPECT_TRUE(ends.ParShort(&small));
    EXPECT_EQ(small, -12);
    EXPECT_TRUE(ends.ParStmtEnd());
    EXPECT_FALSE(ends.ParFileEnd());
    EXPECT_EQ(ends.ParCharCurrent(), '\0');
}

TEST(ParSource, ComparesAhead) {
    TextReader reader("ENDIF{c} x\nEND");
    EXPECT_FALSE(reader.ParCompare("ENDX"));
    EXPECT_EQ(reader.ParCharCurrent(), 'E');
    EXPECT_EQ(reader.GetPos(), 0);
    EXPECT_FALSE(reader.ParCompare("end"));
    EXPECT_TRUE(reader.ParCompare("END"));
    EXPECT_EQ(reader.ParCharCurrent(), 'I');
    EXPECT_EQ(reader.GetPos(), 3);
    EXPECT_TRUE(reader.ParCompare(""));
    EXPECT_TRUE(reader.ParCompare(nullptr));
    EXPECT_EQ(reader.GetPos(), 3);
    EXPECT_FALSE(reader.ParCompare("IF xy"));   // over the statement's end
    EXPECT_FALSE(reader.ParCompare("IF x\n"));  // and the end is no character
    EXPECT_TRUE(reader.ParCompare("IF x"));
    EXPECT_TRUE(reader.ParStmtEnd());
    EXPECT_FALSE(reader.ParCompare("E"));
    EXPECT_TRUE(reader.ParStmtEnd());
    reader.ParStmtNext();
    EXPECT_FALSE(reader.ParCompare("ENDE"));
    EXPECT_TRUE(reader.ParCompare("END"));
    EXPECT_TRUE(reader.ParFileEnd());
}

// 32 characters are held; beyond them a comparison reads anew, and finds the end of the statement anew.
TEST(ParSource, ComparesBeyondWhatIsHeld) {
    for (std::size_t length = 30; length < 37; ++length) {
        SCOPED_TRACE(length);
        const std::string statement(length, 'a');
        TextReader reader(statement + "\nb");
        EXPECT_FALSE(reader.ParCompare((statement + "a").c_str()));
        EXPECT_FALSE(reader.ParCompare((statement + "a").c_str()));
        for (std::size_t shorter = 0; shorter < 3; ++shorter) {
            EXPECT_FALSE(reader.ParCompare((statement.substr(shorter + 1) + "bb").c_str()));
            EXPECT_EQ(reader.GetPos(), 0);
            EXPECT_TRUE(reader.ParCompare(statement.substr(shorter).c_str()));
            EXPECT_EQ(reader.ParStmtEnd(), shorter == 0);
            EXPECT_EQ(reader.GetPos(), static_cast<long>(length - shorter));
            reader.Seek(0);
            EXPECT_FALSE(reader.ParCompare((statement + "a").c_str()));
        }
    }
}

TEST(ParSource, Blocks) {
    std::string text;
    for (int i = 0; i < 30000; ++i) text += static_cast<char>('a' + i % 23);
    TextReader reader(text);
    CString block = "old";
    for (const auto& [from, to] : std::vector<std::pair<long, long>>{{0, 30000}, {17, 29999}, {5, 5}, {1000, 1001}}) {
        reader.GetBlock(from, to, block);
        EXPECT_EQ(block, text.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from)));
    }
    reader.GetBlock(-5, 3, block);
    EXPECT_EQ(block, text.substr(0, 3));
    reader.GetBlock(29990, 40000, block);
    EXPECT_EQ(block, text.substr(29990));
    reader.GetBlock(10, 5, block);
    EXPECT_EQ(block, "");
    EXPECT_EQ(reader.GetPos(), 0);
}

TEST(ParSource, SeeksWithinTheText) {
    TextReader reader("abc");
    reader.Seek(2);
    EXPECT_EQ(reader.ParCharCurrent(), 'c');
    for (const long beyond : {3L, 4L, 2000000000L}) {
        reader.Seek(beyond);
        EXPECT_TRUE(reader.ParFileEnd());
        EXPECT_EQ(reader.GetPos(), 3);
    }
    reader.Seek(-1);
    EXPECT_EQ(reader.ParCharCurrent(), 'a');
}

TEST(ParSource, ClosedReaderHasNothing) {
    OpenReader reader;
    EXPECT_EQ(reader.ParOpen(nullptr, false, nullptr, ParModeLine, false, false), -1);
    char token[9];
    short number = 5;
    CString block = "x";
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(reader.ParStmtEnd() && reader.ParFileEnd());
        EXPECT_EQ(reader.ParCharCurrent(), '\0');
        reader.ParCharNext();
        reader.ParCharNextEscape();
        reader.ParStmtNext();
        reader.ParBackspace();
        reader.Seek(5);
        EXPECT_FALSE(reader.ParToken(token, *reader.ParCharsAllGet(), 8));
        EXPECT_FALSE(reader.ParShort(&number));
        EXPECT_FALSE(reader.ParCompare("x"));
        reader.GetBlock(0, 10, block);
        EXPECT_EQ(block, "");
        EXPECT_TRUE(reader.ParStmtEnd() && reader.ParFileEnd());

        const auto text = arrayOf("abc");
        EXPECT_EQ(reader.ParOpen(nullptr, false, text.get(), ParModeLine, false, false), 0);
        EXPECT_EQ(reader.ParCharCurrent(), 'a');
        reader.ParClose();
    }
}

TEST(ParSource, ReadsFiles) {
    TestFolder folder;
    OpenReader reader;
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, std::size_t{17}, std::size_t{4096}, std::size_t{100001}}) {
        SCOPED_TRACE(size);
        std::string text;
        for (std::size_t i = 0; i < size; ++i) text += static_cast<char>(i * 7 % 256);
        folder.write("a.txt", text);
        FilePath path(folder.path("a.txt").c_str());
        ASSERT_EQ(reader.ParOpen(&path, false, nullptr, ParModeLine, false, false), 0);
        EXPECT_EQ(reader.ParFileEnd(), size == 0);
        CString block;
        reader.GetBlock(0, 200000, block);
        EXPECT_TRUE(block == text);
    }
    folder.makeFolder("b.txt");
    for (const char* name : {"none.txt", "b.txt"}) {
        FilePath path(folder.path(name).c_str());
        EXPECT_EQ(reader.ParOpen(&path, false, nullptr, ParModeLine, false, false), -1) << name;
        EXPECT_TRUE(reader.ParFileEnd());
        CString block;
        reader.GetBlock(0, 10, block);
        EXPECT_EQ(block, "");
    }
}

TEST(ParSource, AsksForTheFile) {
    TestFolder folder;
    folder.write("chosen.txt", "chosen");
    RecordedPresenter user;
    OpenReader reader;
    FilePath path((folder.path() + "\\").c_str());
    EXPECT_EQ(reader.ParOpen(&path, false, nullptr, ParModeLine, false, false), -1);  // cancelled
    user.chosen = folder.path("chosen.txt");
    EXPECT_EQ(reader.ParOpen(&path, false, nullptr, ParModeLine, false, false), 0);
    EXPECT_EQ(reader.ParCharCurrent(), 'c');
    FilePath other(folder.path("other.dat").c_str());
    EXPECT_EQ(reader.ParOpen(&other, /*ask=*/true, nullptr, ParModeLine, false, false), 0);
    ASSERT_EQ(user.asked.size(), 3u);
    EXPECT_EQ(user.asked[2].filter, "Text Files;txt");
    EXPECT_EQ(user.asked[2].prompt, "");
    EXPECT_EQ(user.asked[2].path, folder.path("other.txt"));
    EXPECT_FALSE(user.asked[2].saving);
    // a name and no wish to be asked
    EXPECT_EQ(reader.ParOpen(&path, false, nullptr, ParModeLine, false, false), 0);
    EXPECT_EQ(user.asked.size(), 3u);
}

/// Writes down which operations were reached through the virtual table.
class CountedReader : public OpenReader {
public:
    ~CountedReader() override { ParClose(); }
    void ParClose() override { calls += "Close ", ParSource::ParClose(); }
    long GetPos() override { return calls += "GetPos ", ParSource::GetPos(); }
    void Seek(long to) override { calls += "Seek ", ParSource::Seek(to); }
    void ParBlanksSkip() override { calls += "Blanks ", ParSource::ParBlanksSkip(); }
    bool ParToken(char* buffer, ParCharSet set, short max) override {
        calls += "Token ";
        return ParSource::ParToken(buffer, set, max);
    }
    std::string take() { return std::exchange(calls, ""); }
    std::string calls;
};

TEST(ParSource, OverridesAreReached) {
    const auto text = arrayOf("ab 12 34 56;");
    CountedReader reader;
    reader.ParOpen(nullptr, false, text.get(), ParModeSemicolon, false, false);
    EXPECT_EQ(reader.take(), "Close Seek ");
    EXPECT_FALSE(reader.ParCompare("x"));
    EXPECT_EQ(reader.take(), "");
    EXPECT_FALSE(reader.ParCompare("ax"));
    EXPECT_EQ(reader.take(), "Seek ");
    EXPECT_FALSE(reader.ParCompare("ay"));
    EXPECT_EQ(reader.take(), "");
    EXPECT_TRUE(reader.ParCompare("ab"));
    EXPECT_EQ(reader.take(), "Seek ");
    short small;
    long number;
    int64 large;
    EXPECT_TRUE(reader.ParShort(&small) && reader.ParLong(&number) && reader.ParInt64(&large));
    EXPECT_EQ(reader.take(), "GetPos Token Blanks GetPos Token Blanks GetPos Token Blanks ");
    reader.ParBackspace();
    EXPECT_EQ(reader.take(), "Seek ");
    EXPECT_EQ(reader.ParCharCurrent(), ' ');
}

/// An array whose bytes are not what its blocks hold.
class ShiftedArray : public RamArray {
public:
    unsigned char& operator[](unsigned long index) override {
        ++reads;
        byte_ = static_cast<unsigned char>(RamArray::operator[](index) + 1);
        return byte_;
    }
    int reads = 0;

private:
    unsigned char byte_ = 0;
};

TEST(ParSource, DerivedArraysAreAskedForEachByteOnce) {
    std::string text = "ab {c{d}e} 12\nxy";
    for (char& c : text) --c;
    const auto array = arrayOf<ShiftedArray>(text);
    OpenReader reader;
    EXPECT_EQ(reader.ParOpen(nullptr, false, array.get(), ParModeLine, false, false), 0);
    char token[9];
    EXPECT_TRUE(reader.ParToken(token, *reader.ParCharsAllGet(), 8));
    EXPECT_STREQ(token, "ab");
    short number;
    EXPECT_TRUE(reader.ParShort(&number));
    EXPECT_EQ(number, 12);
    reader.ParStmtNext();
    while (!reader.ParFileEnd()) reader.ParCharNext();
    EXPECT_EQ(array->reads, static_cast<int>(text.size()));
}

// The array is the caller's: it may be filled anew, and even be allocated anew, while a reader is open on it.
TEST(ParSource, ArraysMayChangeBetweenReads) {
    const auto text = arrayOf(std::string(3000, 'a'));
    OpenReader reader;
    EXPECT_EQ(reader.ParOpen(nullptr, false, text.get(), ParModeLine, false, false), 0);
    (*text)[1] = 'b';
    reader.ParCharNext();
    EXPECT_EQ(reader.ParCharCurrent(), 'b');
    EXPECT_TRUE(text->RamAllocate(60000));
    (*text)[2] = 'c';
    reader.ParCharNext();
    EXPECT_EQ(reader.ParCharCurrent(), 'c');
    text->RamDeallocate();
    char token[200];
    reader.ParToken(token, *reader.ParCharsAllGet(), 100);
    reader.ParStmtNext();
    EXPECT_TRUE(reader.ParFileEnd());
}

TEST(ParSource, DeepNestingWraps) {
    // The depth is counted in 16 bits: one brace more than fits leads out of the comment.
    TextReader reader(std::string(32767, '{') + "x{a}b\n");
    EXPECT_EQ(reader.statement(), "a}b");
    EXPECT_EQ(reader.commentDepth, -32768);
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
            const char c = alphabet[below(static_cast<unsigned>(alphabet.size()))];
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
        switch (const unsigned operation = below(14); operation) {
            case 0:
            case 1:
                reader_.ParCharNext(), model_.next();
                break;
            case 2:
                reader_.ParCharNextEscape(), model_.nextEscape();
                break;
            case 3:
                reader_.ParStmtNext(), model_.stmtNext();
                break;
            case 4:
            case 5:
                reader_.ParBackspace(), model_.backspace();
                break;
            case 6:
                reader_.ParBlanksSkip(), model_.blanksSkip();
                break;
            case 7: {
                const long to = static_cast<long>(below(static_cast<unsigned>(model_.text.size()) + 3)) - 1;
                reader_.Seek(to), model_.seek(to);
                break;
            }
            case 8:
            case 9: {
                static const char* const classes[] = {nullptr, "ab", "a1-H;{}\n\x01", "\xFFz "};
                const char* const members = classes[below(4)];
                const int max = below(4) ? 80 : static_cast<int>(below(4));
                ParCharSet set;
                reader_.ParCharSetInit(&set, members, -1);
                char token[81];
                std::string expected;
                const bool any = model_.token(expected, members && *members == '\xFF' ? "z " : members, max);
                EXPECT_EQ(reader_.ParToken(token, set, static_cast<short>(max)), any);
                EXPECT_EQ(std::string(token, expected.size() + 1), expected + '\0');
                break;
            }
            case 10:
                change();
                break;
            default: {
                std::string sought = ahead();
                if (below(2)) sought.resize(below(static_cast<unsigned>(sought.size()) + 1));
                if (below(3) == 0) sought += "ab1 {\n"[below(6)];
                EXPECT_EQ(reader_.ParCompare(sought.c_str()), model_.compare(sought)) << sought;
            }
        }
        EXPECT_EQ(reader_.ParCharCurrent(), model_.current);
        EXPECT_EQ(reader_.ParStmtEnd(), model_.stmtEnd || model_.fileEnd);
        EXPECT_EQ(reader_.ParFileEnd(), model_.fileEnd);
        EXPECT_EQ(reader_.GetPos(), model_.here());
        EXPECT_EQ(reader_.savedPos, model_.savedPos);
        EXPECT_EQ(reader_.maxPos, model_.maxPos);
        EXPECT_EQ(reader_.commentDepth, model_.depth);
        EXPECT_EQ(reader_.sawText, model_.sawText);
        EXPECT_EQ(reader_.sawComment, model_.sawComment);
    }
    const std::string& text() const { return model_.text; }

private:
    unsigned below(unsigned n) { return static_cast<unsigned>(random_() % n); }

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
        const unsigned at = below(static_cast<unsigned>(model_.text.size()));
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
