#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "strings/Bytes.h"

namespace kora {

/// Memory with room for what is put into it, one behind the other.
class FormatPlace {
public:
    static constexpr std::size_t kMaxPad = 16;
    static constexpr std::size_t kMaxMade = 64;

    explicit FormatPlace(char* at) : at_(at) {}

    void put(char c) { *at_++ = c; }
    /// Texts are short, and may stand in the buffer they are written to.
    void write(const char* text, std::size_t length) {
        moveText(at_, text, length);
        at_ += length;
    }
    void fill(char c, std::size_t length) {
        std::memset(at_, c, length);
        at_ += length;
    }
    /// At most kMaxPad blanks or zeros.
    void pad(char c, std::size_t length) {
        moveShort(at_, c == '0' ? "0000000000000000" : "                ", length);
        at_ += length;
    }
    /// At most kMaxMade characters that @p make puts before the end it is given.
    template <typename Make>
    void made(std::size_t length, const Make& make) {
        at_ += length;
        make(at_);
    }

private:
    char* at_;
};

/// Where formatted characters go: a window of memory that is filled, and what happens when it is full.
class FormatSink {
public:
    FormatSink(const FormatSink&) = delete;
    FormatSink& operator=(const FormatSink&) = delete;

    /// Characters so far, whether there was room for them or not.
    int count() const { return static_cast<int>(before_ + used_); }
    /// Whether an int can count @p length characters more. If not, nothing of the piece is to be written.
    bool canCount(std::uint64_t length) const { return length <= kMaxCount - before_ - used_; }

    /// Room for @p length characters that the caller fills in and that can be counted, or null: then they have to be
    /// written in pieces, if canCount() allows.
    char* reserve(std::uint64_t length) {
        if (length > size_ - used_) return nullptr;
        char* const place = window_ + used_;
        used_ += static_cast<std::size_t>(length);
        return place;
    }

    /// Copies @p text up to a percent sign or the end, or as far as is worth doing byte by byte; answers how many
    /// characters.
    std::size_t writeRun(const char* text) {
        char* const to = window_ + used_;
        const std::size_t room = size_ - used_;
        const std::size_t most = room < 32 ? room : 32;
        std::size_t length = 0;
        for (; length < most && text[length] != '%' && text[length] != '\0'; ++length) to[length] = text[length];
        used_ += length;
        return length;
    }

    // As FormatPlace has them, whether there is room or not.
    void put(char c) { write(&c, 1); }
    void write(const char* text, std::size_t length);
    void fill(char c, std::size_t length);
    void pad(char c, std::size_t length) { fill(c, length); }
    template <typename Make>
    void made(std::size_t length, const Make& make) {
        char room[FormatPlace::kMaxMade];
        make(room + sizeof room);
        write(room + sizeof room - length, length);
    }

protected:
    FormatSink(char* window, std::size_t size) : window_(window), size_(size < kMaxCount ? size : kMaxCount) {}
    ~FormatSink() = default;
    char* at() const { return window_ + used_; }
    /// Begins the window anew.
    void reopen();

private:
    static constexpr std::size_t kMaxCount = 0x7FFFFFFF;

    /// Called with the window full: reopens it, or leaves it so and what follows is dropped.
    virtual void drain() {}
    /// How many of @p length characters the window takes, at least one; none when they are dropped.
    std::size_t makeRoom(std::size_t length);

    char* window_;
    std::size_t size_;  // never more than can be counted
    std::size_t used_ = 0;
    std::size_t before_ = 0;  // characters that are not in the window: passed on or dropped
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
