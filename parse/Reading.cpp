#include <kora/Par.h>
#include <kora/Str.h>

#include <algorithm>
#include <bit>
#include <cstring>

#include "core/VirtualSlots.h"
#include "parse/RamView.h"
#include "strings/Bytes.h"

namespace {

constexpr short kNumberLength = 64;

bool isMember(const ParCharSet& set, unsigned char c) {
    if (set.all) return c != ' ';
    return c < 128 && (set.bits[c / 16] >> c % 16 & 1) != 0;
}

/// Whether all members of a bitmap class mean nothing but themselves to the reader.
bool isPlain(const ParCharSet& set, char stmtEndChar) {
    return set.bits[0] == 0 && set.bits[1] == 0 && !isMember(set, '{') &&
           !isMember(set, static_cast<unsigned char>(stmtEndChar));
}

/// Where the first blank, control character, brace or statement end stands, or @p end.
const unsigned char* endOfWord(const unsigned char* at, const unsigned char* end, char stmtEndChar) {
    if constexpr (std::endian::native == std::endian::little) {
        constexpr std::uint64_t kBehindBlank = 0x2121212121212121, kHigh = 0x8080808080808080;
        for (; end - at >= 8; at += 8) {
            std::uint64_t bytes;
            std::memcpy(&bytes, at, sizeof bytes);
            // Bytes above the lowest one that is found may be found wrongly.
            const std::uint64_t found = ((bytes - kBehindBlank) & ~bytes & kHigh) | kora::bytesEqual(bytes, '{') |
                                        kora::bytesEqual(bytes, stmtEndChar);
            if (found != 0) return at + std::countr_zero(found) / 8;
        }
    }
    while (at != end && *at > ' ' && *at != '{' && *at != static_cast<unsigned char>(stmtEndChar)) ++at;
    return at;
}

/// Whether it is '{' or '}', which are two apart.
bool isBrace(unsigned char c) { return ((c - '{') & ~2) == 0; }

const unsigned char* find(const unsigned char* at, const unsigned char* end, char c) {
    const void* const found = std::memchr(at, c, static_cast<std::size_t>(end - at));
    return found ? static_cast<const unsigned char*>(found) : end;
}

}  // namespace

/// The text from @p index on, as far as it stands together in the array; nothing at the end, and where only the array
/// itself can answer. Not kept from one operation to the next, since the caller's array may change between.
inline ParSource::Span ParSource::block(std::int32_t index) const {
    std::uint32_t count;
    if (!plainData_ || index >= length) return {nullptr, nullptr};
    const auto* const at = kora::RamView::at(*data, static_cast<std::uint32_t>(index), count);
    if (!at) return {nullptr, nullptr};
    return {at, at + std::min(count, static_cast<std::uint32_t>(length - index))};
}

/// The same of a text that has such an index: at least one byte, for which there is @p room.
ParSource::Span ParSource::ahead(std::int32_t index, unsigned char& room) const {
    const Span span = block(index);
    if (span.begin) return span;
    room = (*data)[static_cast<unsigned long>(index)];
    return {&room, &room + 1};
}

/// Goes on by bytes that were examined.
inline void ParSource::advance(std::ptrdiff_t count) {
    pos += static_cast<std::int32_t>(count);
    if (trackMax && count != 0) maxPos = std::max(maxPos, pos - 1);
}

/// Whether a character outside comments is more than itself.
inline bool ParSource::hasMeaning(unsigned char c) const {
    return c < 32 || c == '{' || c == static_cast<unsigned char>(stmtEndChar);
}

/// Reads one character with all that braces, statement ends and control characters mean. @p span is what stands ahead,
/// or nothing where that is not known.
inline void ParSource::read(Span span) {
    if (span.begin == span.end || fileEnd || stmtEnd || commentDepth > 0) return interpret(span);
    const unsigned char c = *span.begin;
    if (!hasMeaning(c)) {
        current = static_cast<char>(c);
        sawText = true;
    } else if (c == static_cast<unsigned char>(stmtEndChar) && sawText) {
        current = '\0';
        stmtEnd = true;
        sawText = false;
        sawComment = false;
    } else {
        return interpret(span);
    }
    advance(1);
}

void ParSource::readNext() { read(block(pos)); }

/// The same for whatever stands ahead.
void ParSource::interpret(Span span) {
    std::int32_t opened = -1;
    current = '\0';
    while (!fileEnd && !stmtEnd && current == '\0') {
        unsigned char room;
        if (span.begin == span.end) {
            if (pos >= length) {
                fileEnd = true;
                return;
            }
            span = ahead(pos, room);
        }
        interpret(span, opened);
        span = {nullptr, nullptr};
    }
}

/// Goes on to behind the first character delivered or a statement end, or to the end of @p span. @p opened is where the
/// comment began, if it did so in this reading.
inline void ParSource::interpret(Span span, std::int32_t& opened) {
    const unsigned char* at = span.begin;
    while (at != span.end && current == '\0' && !stmtEnd) {
        if (commentDepth > 0) {
            at = leaveComment({at, span.end});
            if (commentDepth == 0 && opened >= 0 && ownsData) {
                commentStart_ = opened;
                commentEnd_ = pos + static_cast<std::int32_t>(at - span.begin);
            }
            continue;
        }
        const unsigned char c = *at;
        if (c == '{') {
            sawComment = true;
            const std::int32_t index = pos + static_cast<std::int32_t>(at - span.begin);
            if (commentDepth == 0 && index == commentStart_) return advance(commentEnd_ - pos);
            if (commentDepth == 0) opened = index;
            ++commentDepth;
        } else if (c == static_cast<unsigned char>(stmtEndChar)) {
            // A statement of comments alone is none.
            stmtEnd = sawText || !sawComment;
            sawText = false;
            sawComment = false;
        } else {
            current = static_cast<char>(c < 32 && !keepControl ? ' ' : c);
            if (current != '\0') sawText = true;
        }
        ++at;
    }
    advance(at - span.begin);
}

/// Goes on inside a comment, up to behind its end if that is within @p span; answers how far.
const unsigned char* ParSource::leaveComment(Span span) {
    constexpr std::ptrdiff_t kShort = 32;
    const unsigned char* at = span.begin;
    const unsigned char* closing = nullptr;
    while (commentDepth > 0) {
        // Most comments are short.
        const unsigned char* const stop = at + std::min(kShort, span.end - at);
        while (at != stop && !isBrace(*at)) ++at;
        if (at == stop && stop != span.end) {
            if (!closing || closing < at) closing = find(at, span.end, '}');
            at = find(at, closing, '{');
        }
        if (at == span.end) return at;
        if (*at++ == '}') {
            --commentDepth;
        } else {
            commentDepth = static_cast<std::int16_t>(commentDepth + 1);
            sawComment = true;
        }
    }
    return at;
}

/// The text that stands together ahead, where a character in it that has no meaning would be read as it is.
inline ParSource::Span ParSource::plainAhead() const {
    if (fileEnd || stmtEnd || commentDepth > 0) return {nullptr, nullptr};
    return block(pos);
}

/// Goes on over the characters of @p span before @p end, which have no meaning.
inline void ParSource::pass(Span& span, const unsigned char* end) {
    if (span.begin == end) return;
    sawText = true;
    advance(end - span.begin);
    span.begin = end;
}

/// Reads one byte as it stands.
void ParSource::readRaw() {
    current = '\0';
    if (fileEnd) return;
    if (pos >= length) {
        fileEnd = true;
        return;
    }
    unsigned char room;
    current = static_cast<char>(*ahead(pos, room).begin);
    advance(1);
    sawText = true;
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
    const auto means = [this](unsigned char c) { return hasMeaning(c); };
    while (!stmtEnd && !fileEnd) {
        Span span = plainAhead();
        pass(span, std::find_if(span.begin, span.end, means));
        read(span);
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

/// Reads on while the current character is a blank.
void ParSource::skipBlanks() {
    const auto isBlank = [this](unsigned char c) {
        return c == ' ' || (c < 32 && c != static_cast<unsigned char>(stmtEndChar) && !keepControl);
    };
    while (current == ' ') {
        Span span = plainAhead();
        // Most blanks stand alone.
        if (span.begin != span.end && isBlank(*span.begin)) pass(span, std::find_if_not(span.begin, span.end, isBlank));
        read(span);
    }
}

void ParSource::ParBlanksSkip() {
    savedPos = position();
    lookaheadClear();
    skipBlanks();
}

/// Where the members of a class that have no meaning end in @p span.
const unsigned char* ParSource::endOfPlain(Span span, const ParCharSet& set) const {
    if (set.all) return endOfWord(span.begin, span.end, stmtEndChar);
    if (isPlain(set, stmtEndChar))
        return std::find_if_not(span.begin, span.end, [&](unsigned char c) { return isMember(set, c); });
    return std::find_if_not(span.begin, span.end, [&](unsigned char c) { return isMember(set, c) && !hasMeaning(c); });
}

bool ParSource::ParToken(char* buffer, ParCharSet set, short max) {
    savedPos = position();
    if (kora::slotCode(*this, &ParSource::ParBlanksSkip) == ownBlanksSkip_)
        skipBlanks();
    else
        ParBlanksSkip();
    int count = 0;
    while (!stmtEnd && !fileEnd && count < max && isMember(set, static_cast<unsigned char>(current))) {
        buffer[count++] = current;
        Span span = plainAhead();
        const auto most = std::min<std::ptrdiff_t>(span.end - span.begin, max - count);
        const unsigned char* const end = endOfPlain({span.begin, span.begin + most}, set);
        const auto size = static_cast<std::size_t>(end - span.begin);
        kora::moveText(buffer + count, reinterpret_cast<const char*>(span.begin), size);
        count += static_cast<int>(size);
        pass(span, end);
        read(span);
    }
    buffer[count] = '\0';
    lookaheadClear();
    return count != 0;
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
