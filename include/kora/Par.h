#pragma once

#include <cstddef>

#include <kora/Kora.h>
#include <kora/Ram.h>

/// @file
/// The reader under the library's text formats.

class FilePath;
class TskKoraModule;

/// A number of 64 bits.
typedef std::int64_t int64;

/// What ends a statement. Every value but ParModeLine counts as ParModeSemicolon.
enum ParMode : std::int32_t {
    ParModeSemicolon = 0,  ///< a `;`
    ParModeLine = 1        ///< a line feed
};

/// A class of characters. Codes of 128 and above are never members of a bitmap.
struct ParCharSet {
    std::uint16_t bits[8];  ///< character c is bit c % 16 of word c / 16
    bool all;               ///< every character but the blank, whatever the bits say
};

/// Reads a text one character at a time for a parser written by hand: statements, blanks, tokens, numbers, keywords
/// with lookahead, and positions to return to.
///
/// Comments stand in braces, nest, and are never seen: they are removed, and statement ends recognised, in the reader
/// under every operation but ParCharNextEscape().
///
///     line mode, "a {note} b\n"    a, blank, blank, b, statement end
///     "{ a {b} c }\n"              nothing: a statement of comments alone is none
///     "\n"                         an empty statement
///     tab, carriage return ...     a blank each, unless control characters are kept
///
/// The reader stops at a statement end until ParStmtNext() or Seek(), and at the end of the text until Seek(); the
/// current character is 0 at both. Bytes from 0x80 up are ordinary characters.
///
/// Text that goes on without an end in a comment leaves the reader inside it: neither Seek() nor ParBackspace() leads
/// out again, only ParOpen() does.
///
/// Operations call each other through the virtual table where it is said so. The order of the virtual operations is
/// the interface; new ones go at the end.
class KORA_API ParSource {
public:
    /// A closed reader. The module is not kept.
    explicit ParSource(TskKoraModule*);
    /// ParClose().
    virtual ~ParSource();
    ParSource(const ParSource&) = delete;
    ParSource& operator=(const ParSource&) = delete;

    /// Closes what was open with ParClose(), takes a text and reads its first character through Seek().
    ///
    /// @param file        the file to read whole. Not used when @p data is given.
    /// @param ask         asks the user for the file, as also happens when it has no base name: its type becomes "txt"
    ///                    first, and FileDialogOpen() offers "Text Files;txt" without a prompt.
    /// @param data        the text, when not null. It stays the caller's and must outlive its use here. What is
    ///                    changed in it is seen when it is read; its length is taken now.
    /// @param trackMax    keeps the highest position that was read, in maxPos.
    /// @param keepControl delivers control characters as they are instead of as blanks; zero bytes are left out.
    ///
    /// The first character, which is read here, counts as no text: a first statement that is one character and a
    /// comment does not end, and goes on into the next.
    ///
    /// @return 0; -1 when the user cancelled, when the file cannot be read, and when memory ran out. The reader is
    ///         closed then.
    virtual short ParOpen(FilePath* file, bool ask, RamArray* data, ParMode mode, bool trackMax, bool keepControl);
    /// Lets go of the text, and deletes it when it was loaded from a file. Both end flags are set.
    virtual void ParClose();
    /// Makes a class of the first @p max characters of @p chars, or of all of them when @p max is negative. None at
    /// all makes the class of every character but the blank; characters of 128 and above are left out.
    virtual void ParCharSetInit(ParCharSet*, const char* chars, short max);
    /// ParCharNext() of the next byte as it stands: neither comments nor statement ends nor control characters mean
    /// anything, and a statement end does not stop it. For use inside quoted text.
    virtual void ParCharNextEscape();
    /// Reads the next character.
    virtual void ParCharNext();
    /// The current character; 0 at the end of a statement and of the text.
    virtual char ParCharCurrent();
    /// Whether the reader stands at the end of a statement, or of the text.
    virtual bool ParStmtEnd();
    /// Whether the text is exhausted.
    virtual bool ParFileEnd();
    /// Reads on to the end of the statement, and the first character of the next.
    virtual void ParStmtNext();
    /// The index of the current character, and of the end once it is reached.
    virtual long GetPos();
    /// Goes to an index, at most the end and at least 0, and reads one character from there. What was read of the
    /// statement before is forgotten: where nothing but a comment stands between the index and the statement's end, the
    /// character is one of the next statement. From an index within a comment its text is read.
    virtual void Seek(long);
    /// Undoes the last ParCharNext(), ParCharNextEscape(), ParBlanksSkip(), ParToken() or number: Seek() to where that
    /// began. There is no second step back.
    virtual void ParBackspace();
    /// Reads on while the current character is a blank.
    virtual void ParBlanksSkip();
    /// Skips blanks with ParBlanksSkip(), then takes characters while they belong to @p set, at most @p max.
    ///
    /// @param buffer room for @p max characters and the NUL.
    /// @return whether any was taken; @p buffer is the empty text if not.
    virtual bool ParToken(char* buffer, ParCharSet set, short max);
    /// Takes a number: a ParToken() of up to 64 characters of the class of numbers, read as StrDec2Int() reads it and
    /// cut to 16 bits. False, with nothing stored, when there is no such token; "H" is one, and is 0. All of the token
    /// is taken, also what StrDec2Int() does not look at: of "12ABC" and "1-2" nothing is left behind 12 and 1.
    virtual bool ParShort(short*);
    /// The same for 32 bits; null skips the number.
    virtual bool ParLong(long*);
    /// The same for 64 bits, as StrDec2Int64() reads it; null skips the number.
    virtual bool ParInt64(int64*);
    /// Whether the characters ahead, from the current one on, are exactly @p text; case matters, blanks are not
    /// skipped. If so, the reader goes on behind them with Seek(); if not, it stays, or returns with Seek(), where it
    /// was. What it has read of the first 32 characters is kept for the next comparison at the same place.
    ///
    ///     ENDIF    END     true, the current character is I
    ///     ENDIF    ENDX    false, the current character is E
    ///
    /// A text that reaches over the end of a statement never compares equal. The empty text, which null counts as,
    /// always does, and goes nowhere.
    virtual bool ParCompare(const char* text);
    /// The class of numbers, "-0123456789ABCDEFH"; callers may change this and the other two with ParCharSetInit().
    virtual ParCharSet* ParCharsNumGet();
    /// The class of names: letters, digits, `/` and `_`.
    virtual ParCharSet* ParCharsSrcNameGet();
    /// The class of every character but the blank.
    virtual ParCharSet* ParCharsAllGet();

    /// The raw bytes from @p from up to, but not including, @p to, as far as there are any. Empty when memory ran out.
    void GetBlock(long from, long to, CString& out);

protected:
    char current;               ///< 0 when there is none
    bool stmtEnd;               ///< the current character ends a statement
    bool fileEnd;               ///< there are no more characters
    ParCharSet srcNameChars;    ///< see ParCharsSrcNameGet()
    ParCharSet allChars;        ///< see ParCharsAllGet()
    ParCharSet numChars;        ///< see ParCharsNumGet()
    std::int32_t pos;           ///< index of the next byte to read
    std::int32_t savedPos;      ///< where ParBackspace() goes
    std::int32_t maxPos;        ///< -1 when nothing was read; no operation reads it
    RamArray* data;             ///< the text; null when there is none
    bool ownsData;              ///< the destructor deletes data
    std::int32_t length;        ///< bytes of text
    char stmtEndChar;           ///< the character that ends a statement
    bool trackMax;              ///< maxPos is kept
    bool keepControl;           ///< control characters are delivered as they are, not as blanks
    std::int16_t commentDepth;  ///< how many comments are open at the current character
    bool sawText;               ///< a character was delivered since the last statement end
    bool sawComment;            ///< a comment began since then

private:
    friend KORA_API bool ParLineColumn(ParSource& source, long position, long& line, long& column, CString& text);

    /// Where an operation reads, in text that stands together. Its index is kept in pos when the operation ends.
    struct Cursor {
        const unsigned char* at;
        const unsigned char* end;

        const unsigned char* upTo(std::ptrdiff_t most) const { return at + (most < end - at ? most : end - at); }
    };

    RamArray* load(FilePath& file, bool ask);
    Cursor nothing(std::int32_t index);
    Cursor block(std::int32_t index);
    Cursor ahead(std::int32_t index);
    Cursor plainAhead();
    std::int32_t indexOf(Cursor cursor) const { return cursorEnd_ - static_cast<std::int32_t>(cursor.end - cursor.at); }
    void stopAt(Cursor cursor);
    bool hasMeaning(unsigned char c) const;
    Cursor read(Cursor cursor);
    bool deliver(unsigned char c);
    Cursor readOn(Cursor cursor);
    Cursor pass(Cursor cursor, const unsigned char* at);
    void readNext();
    void readRaw();
    std::int32_t position() const { return fileEnd ? pos : pos - 1; }
    const unsigned char* endOfPlain(const unsigned char* at, const unsigned char* end, const ParCharSet& set) const;
    bool takeWord(char* buffer, const ParCharSet& set, short max);
    bool takeToken(char* buffer, const ParCharSet& set, short max);
    bool numberToken(char* buffer);
    bool lookFurther(std::int32_t index, bool& moved);
    void lookaheadClear() { aheadCount_ = 0, aheadEnded_ = false; }

    // Characters that ParCompare() has read, the index behind each, and whether a statement end or the end of the text
    // follows them.
    static constexpr int kLookahead = 32;
    char aheadChars_[kLookahead];
    std::int32_t aheadPos_[kLookahead + 1];  ///< before the first, then behind each
    std::int32_t aheadCount_;
    bool aheadEnded_;
    bool plainData_;          ///< the array is no derived one, so its blocks may be read directly
    unsigned char answered_;  ///< the byte that another array has answered
    std::int32_t cursorEnd_;  ///< the index of the end of what was taken last
    // The last comment that was read over, in a text that nobody else can change: from its brace to behind its brace.
    std::int32_t commentStart_;
    std::int32_t commentEnd_;
    const void* ownBlanksSkip_;  // the reader's own code of the operation, which may be overridden
};

/// Where a position of a text stands, for messages: the number of its line and of its column, both from 1, and the line
/// without its end. A position counts as by ParSource::Seek(): at least 0, at most the end. Nothing of the reader
/// changes, and comments, statement ends and the reader's mode mean nothing here.
///
/// A line ends with a line feed, and a carriage return directly before that belongs to the end. A position in the end
/// counts as the column behind the line's last character. Behind a line feed that ends the text there is one line more,
/// an empty one. Columns are bytes: a tab is one, and whoever shows it wider does so for the text before the column
/// too.
///
///     "ab\ncd"      position 4    2, 2, "cd"        "ab\r\ncd"    position 3    1, 3, "ab"
///     "ab\n"        position 9    2, 1, ""          ""            position 0    1, 1, ""
///
/// Takes time linear in the position and in the length of its line.
/// @return false, with all three untouched, when the reader is closed, and when memory ran out.
KORA_API bool ParLineColumn(ParSource& source, long position, long& line, long& column, CString& text);
/// The same of the current character, ParSource::GetPos().
KORA_API bool ParLineColumn(ParSource& source, long& line, long& column, CString& text);
