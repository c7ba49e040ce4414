#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>

#include "strings/Bytes.h"

namespace kora {

/// Where formatted characters go: a window of memory that is filled, and what happens when it is full.
class FormatSink {
public:
    FormatSink(const FormatSink&) = delete;
    FormatSink& operator=(const FormatSink&) = delete;

    /// Takes @p length characters into the count. False when the count would pass what an int holds; nothing of the
    /// piece is to be written then.
    bool claim(std::int64_t length) {
        if (length > kMaxCount - count_) return false;
        count_ += static_cast<int>(length);
        return true;
    }
    int count() const { return count_; }  ///< characters claimed, whether there was room for them or not

    void write(const char* text, std::size_t length) {
        if (length > room_) {
            writePieces(text, length);
        } else {
            copy(text, length);
        }
    }
    void fill(char c, std::size_t length);
    /// Room for @p length characters that the caller fills in, or null where they have to be written.
    char* reserve(std::size_t length) {
        if (length > room_) return nullptr;
        room_ -= length;
        return std::exchange(at_, at_ + length);
    }
    /// Copies @p text up to a percent sign or the end, or as far as is worth doing byte by byte; answers how many
    /// characters. They are not claimed yet.
    int writeRun(const char* text) {
        char* const to = at_;
        const int most = room_ < 32 ? static_cast<int>(room_) : 32;
        int length = 0;
        for (; length < most && text[length] != '%' && text[length] != '\0'; ++length) to[length] = text[length];
        at_ = to + length, room_ -= static_cast<std::size_t>(length);
        return length;
    }

protected:
    FormatSink(char* window, std::size_t room) : at_(window), room_(room) {}
    ~FormatSink() = default;
    void window(char* at, std::size_t room) { at_ = at, room_ = room; }
    char* at() const { return at_; }

private:
    static constexpr int kMaxCount = 0x7FFFFFFF;

    /// Called with no room left; gives the window room again, or leaves it full and what follows is dropped.
    virtual void drain() {}
    /// Copies what there is room for. Pieces are short, and a text may stand in the buffer it is written to.
    void copy(const char* text, std::size_t length) {
        char* const to = at_;
        at_ += length, room_ -= length;
        if (length > 16) {
            std::memmove(to, text, length);
        } else {
            moveShort(to, text, length);
        }
    }
    void writePieces(const char* text, std::size_t length);
    bool makeRoom() { return room_ != 0 || (drain(), room_ != 0); }

    char* at_;
    std::size_t room_;
    int count_ = 0;
};

/// Writes into the caller's buffer; what does not fit is dropped.
class BufferSink final : public FormatSink {
public:
    /// As much room as one formatted text can need.
    static constexpr std::size_t kUnbounded = 0x7FFFFFFF;

    /// Room for @p room characters and the NUL.
    BufferSink(char* buffer, std::size_t room) : FormatSink(buffer, room) {}
    void terminate() { *at() = '\0'; }
};

/// Writes to a C stream in pieces.
class StreamSink final : public FormatSink {
public:
    explicit StreamSink(std::FILE* stream) : FormatSink(chunk_, sizeof chunk_), stream_(stream) {}
    bool flush();  ///< writes what is left; false when any piece could not be written

private:
    void drain() override { flush(); }

    std::FILE* stream_;
    bool failed_ = false;
    char chunk_[512];
};

/// Appends to a string in pieces.
class StringSink final : public FormatSink {
public:
    explicit StringSink(std::string& text) : FormatSink(chunk_, sizeof chunk_), text_(text) {}
    void flush();

private:
    void drain() override { flush(); }

    std::string& text_;
    char chunk_[256];
};

}  // namespace kora
