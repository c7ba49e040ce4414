#include <kora/Par.h>
#include <kora/Str.h>

#include <algorithm>

#include "core/VirtualSlots.h"
#include "parse/RamView.h"
#include "strings/Bytes.h"
#include "strings/FirstByte.h"

namespace {

constexpr short kNumberLength = 64;

bool isMember(const ParCharSet& set, unsigned char c) {
    if (set.all) return c != ' ';
    return c < 128 && (set.bits[c / 16] >> c % 16 & 1) != 0;
}

/// Where the first character below @p lowest, opening brace or statement end stands, or @p end.
inline const unsigned char* endOfText(const unsigned char* at, const unsigned char* end, unsigned char lowest,
                                      char stmtEndChar) {
    return kora::firstByte(
        at, end,
        [=](unsigned char c) { return c < lowest || c == '{' || c == static_cast<unsigned char>(stmtEndChar); },
        [=](std::uint64_t bytes) {
            return kora::bytesBelow(bytes, lowest) | kora::bytesEqual(bytes, '{') |
                   kora::bytesEqual(bytes, stmtEndChar);
        });
}

/// Where the first brace of either kind stands, or @p end.
const unsigned char* findBrace(const unsigned char* at, const unsigned char* end) {
    return kora::firstByte(
        at, end, [](unsigned char c) { return c == '{' || c == '}'; },
        [](std::uint64_t bytes) { return kora::bytesEqual(bytes, '{') | kora::bytesEqual(bytes, '}'); });
}

/// Copies what stands from @p at to @p end, and answers how long that is.
inline std::size_t copy(char* to, const unsigned char* at, const unsigned char* end) {
    const auto size = static_cast<std::size_t>(end - at);
    kora::moveText(to, reinterpret_cast<const char*>(at), size);
    return size;
}

}  // namespace

/// No text, at @p index.
inline ParSource::Cursor ParSource::nothing(std::int32_t index) {
    cursorEnd_ = index;
    return {nullptr, nullptr};
}

/// The text from @p index on, as far as it stands together in the array; nothing at the end, and where only the array
/// itself can answer. Not kept from one operation to the next, since the caller's array may change between.
inline ParSource::Cursor ParSource::block(std::int32_t index) {
    std::uint32_t count;
    if (!plainData_ || index >= length) return nothing(index);
    const auto* const at = kora::RamView::at(*data, static_cast<std::uint32_t>(index), count);
    if (!at) return nothing(index);
    count = std::min(count, static_cast<std::uint32_t>(length - index));
    cursorEnd_ = index + static_cast<std::int32_t>(count);
    return {at, at + count};
}

/// The same of a text that has such an index: at least one byte, if need be the one that the array answers.
ParSource::Cursor ParSource::ahead(std::int32_t index) {
    const Cursor cursor = block(index);
    if (cursor.at) return cursor;
    answered_ = (*data)[static_cast<unsigned long>(index)];
    cursorEnd_ = index + 1;
    return {&answered_, &answered_ + 1};
}

/// The text that stands together ahead, where a character in it that has no meaning would be read as it is.
inline ParSource::Cursor ParSource::plainAhead() {
    if (fileEnd || stmtEnd || commentDepth > 0) return nothing(pos);
    return block(pos);
}

/// Ends an operation that has read up to @p cursor.
inline void ParSource::stopAt(Cursor cursor) {
    const std::int32_t index = indexOf(cursor);
    if (trackMax && index != pos) maxPos = std::max(maxPos, index - 1);
    pos = index;
}

/// Whether a character outside comments is more than itself.
inline bool ParSource::hasMeaning(unsigned char c) const {
    return c < ' ' || c == '{' || c == static_cast<unsigned char>(stmtEndChar);
}

/// Takes a character outside comments that does not open one. False where that delivers nothing, and reading goes on.
inline bool ParSource::deliver(unsigned char c) {
    if (c == static_cast<unsigned char>(stmtEndChar)) {
        // A statement of comments alone is none.
        current = '\0';
        stmtEnd = sawText || !sawComment;
        sawText = false;
        sawComment = false;
        return stmtEnd;
    }
    current = static_cast<char>(c < ' ' && !keepControl ? ' ' : c);
    if (current == '\0') return false;
    sawText = true;
    return true;
}

/// Reads one character with all that braces, statement ends and control characters mean; answers where it ends.
inline ParSource::Cursor ParSource::read(Cursor cursor) {
    if (cursor.at == cursor.end || *cursor.at == '{') return readOn(cursor);
    const Cursor behind{cursor.at + 1, cursor.end};
    return deliver(*cursor.at) ? behind : readOn(behind);
}

/// The same for whatever stands ahead, comments and other blocks included.
ParSource::Cursor ParSource::readOn(Cursor cursor) {
    std::int32_t opened = -1;  // where the comment began, if it did so in this reading
    current = '\0';
    while (!fileEnd && !stmtEnd) {
        if (cursor.at == cursor.end) {
            fileEnd = cursorEnd_ >= length;
            if (fileEnd) break;
            cursor = ahead(cursorEnd_);
        }
        if (commentDepth > 0) cursor.at = findBrace(cursor.at, cursor.end);
        if (cursor.at == cursor.end) continue;
        const std::int32_t index = indexOf(cursor);
        const unsigned char c = *cursor.at++;
        if (c == '{') {
            sawComment = true;
            if (commentDepth == 0 && index == commentStart_) {
                cursor = nothing(commentEnd_);
                continue;
            }
            if (commentDepth == 0) opened = index;
            commentDepth = static_cast<std::int16_t>(commentDepth + 1);
        } else if (commentDepth > 0) {
            --commentDepth;
            if (commentDepth == 0 && opened >= 0 && ownsData) {
                commentStart_ = opened;
                commentEnd_ = index + 1;
            }
        } else if (deliver(c)) {
            break;
        }
    }
    return cursor;
}

/// Reads the next character as an operation of its own.
void ParSource::readNext() { stopAt(read(plainAhead())); }

/// Goes on to @p at, over characters that stand for themselves.
inline ParSource::Cursor ParSource::pass(Cursor cursor, const unsigned char* at) {
    if (cursor.at != at) sawText = true;
    return {at, cursor.end};
}

/// Reads one byte as it stands.
void ParSource::readRaw() {
    current = '\0';
    if (!fileEnd) fileEnd = pos >= length;
    if (fileEnd) return;
    const Cursor cursor = ahead(pos);
    current = static_cast<char>(*cursor.at);
    sawText = true;
    stopAt({cursor.at + 1, cursor.end});
}

void ParSource::ParCharNextEscape() {
    savedPos = position();
    readRaw();
    lookaheadClear();
}

void ParSource::ParCharNext() {
    savedPos = position();
    readNext();
    lookaheadClear();
}

char ParSource::ParCharCurrent() { return current; }

bool ParSource::ParStmtEnd() { return stmtEnd || fileEnd; }

bool ParSource::ParFileEnd() { return fileEnd; }

void ParSource::ParStmtNext() {
    if (!stmtEnd) {
        Cursor cursor = plainAhead();
        while (!stmtEnd && !fileEnd) cursor = read(pass(cursor, endOfText(cursor.at, cursor.end, ' ', stmtEndChar)));
        stopAt(cursor);
    }
    stmtEnd = false;
    readNext();
    lookaheadClear();
}

long ParSource::GetPos() { return position(); }

void ParSource::Seek(long to) {
    lookaheadClear();
    stmtEnd = false;
    fileEnd = false;
    pos = static_cast<std::int32_t>(std::clamp<std::int64_t>(to, 0, length));
    sawText = false;
    readNext();
}

void ParSource::ParBackspace() { Seek(savedPos); }

void ParSource::ParBlanksSkip() {
    savedPos = position();
    lookaheadClear();
    const auto isBlank = [this](unsigned char c) {
        return (c == ' ' || (c < ' ' && !keepControl)) && c != static_cast<unsigned char>(stmtEndChar);
    };
    Cursor cursor = plainAhead();
    while (current == ' ') cursor = read(pass(cursor, std::find_if_not(cursor.at, cursor.end, isBlank)));
    stopAt(cursor);
}

/// Where the members of a class that have no meaning end, or @p end.
inline const unsigned char* ParSource::endOfPlain(const unsigned char* at, const unsigned char* end,
                                                  const ParCharSet& set) const {
    if (set.all) return endOfText(at, end, ' ' + 1, stmtEndChar);
    while (at != end && isMember(set, *at) && !hasMeaning(*at)) ++at;
    return at;
}

/// Takes what most tokens are: a word that stands whole between a blank and a blank or the end of the statement. False,
/// with nothing done, where there is none.
inline bool ParSource::takeWord(char* buffer, const ParCharSet& set, short max) {
    if (current != ' ' || isMember(set, ' ') || max <= 0) return false;
    const Cursor cursor = plainAhead();
    const unsigned char* const end = endOfPlain(cursor.at, cursor.upTo(max), set);
    if (end == cursor.at || end == cursor.end || (*end != ' ' && *end != static_cast<unsigned char>(stmtEndChar)) ||
        *end == '{')
        return false;
    buffer[copy(buffer, cursor.at, end)] = '\0';
    sawText = true;
    deliver(*end);
    stopAt({end + 1, cursor.end});
    lookaheadClear();
    return true;
}

/// Takes any token, which begins at the current character.
bool ParSource::takeToken(char* buffer, const ParCharSet& set, short max) {
    std::ptrdiff_t count = 0;
    Cursor cursor = plainAhead();
    while (!stmtEnd && !fileEnd && count < max && isMember(set, static_cast<unsigned char>(current))) {
        buffer[count++] = current;
        const unsigned char* const end = endOfPlain(cursor.at, cursor.upTo(max - count), set);
        count += static_cast<std::ptrdiff_t>(copy(buffer + count, cursor.at, end));
        cursor = read(pass(cursor, end));
    }
    buffer[count] = '\0';
    stopAt(cursor);
    lookaheadClear();
    return count != 0;
}

bool ParSource::ParToken(char* buffer, ParCharSet set, short max) {
    savedPos = position();
    if (kora::runsCode(*this, &ParSource::ParBlanksSkip, ownBlanksSkip_) && takeWord(buffer, set, max)) return true;
    ParBlanksSkip();
    return takeToken(buffer, set, max);
}

/// Takes the token of a number. ParToken() saves the position too, but it may be overridden.
bool ParSource::numberToken(char* buffer) {
    savedPos = static_cast<std::int32_t>(GetPos());
    return ParToken(buffer, numChars, kNumberLength);
}

bool ParSource::ParShort(short* number) {
    char token[kNumberLength + 1];
    if (!numberToken(token)) return false;
    *number = static_cast<short>(StrDec2Int(token, kNumberLength));
    return true;
}

bool ParSource::ParLong(long* number) {
    char token[kNumberLength + 1];
    if (!numberToken(token)) return false;
    if (number) *number = StrDec2Int(token, kNumberLength);
    return true;
}

bool ParSource::ParInt64(int64* number) {
    char token[kNumberLength + 1];
    if (!numberToken(token)) return false;
    if (number) *number = StrDec2Int64(token, kNumberLength);
    return true;
}
