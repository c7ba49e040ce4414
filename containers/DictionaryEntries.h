#pragma once

#include <kora/DoubleList.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "strings/HashMix.h"

/// What a dictionary's lists hold, and keys as the index looks for them: with a mark of fixed size, which tells most
/// keys apart where the key itself lies elsewhere, and with a hash.
namespace kora {

struct DicNumeric : DoubleListElement {
    class Sought;
    using Key = long;
    using Mark = long;
    static constexpr bool kNeighboursCount = true;

    DicNumeric(long key_, void* value_) : key(key_), value(value_), newer(nullptr), older(nullptr) {}
    bool hasKey(long sought) const { return key == sought; }

    long key;
    void* value;
    DicNumeric* newer;  // those of the same key, as the index has them
    DicNumeric* older;
};

class DicNumeric::Sought {
public:
    explicit Sought(long key) : mark(key) {}

    // The index takes upper bits, and in a product those depend on every bit of the key.
    std::uint32_t hash() const {
        return static_cast<std::uint32_t>(hashProduct(static_cast<unsigned long>(mark)) >> 32);
    }
    bool isKeyOf(const DicNumeric*, Mark itsMark) const { return itsMark == mark; }

    Mark mark;
};

struct DicString : DoubleListElement {
    class Sought;
    using Key = const char*;
    /// The first sixteen characters, with zeros behind a shorter text.
    struct Mark {
        std::uint64_t first, second;
        bool operator==(const Mark&) const = default;
    };
    static constexpr bool kNeighboursCount = false;

    DicString(char* key_, void* value_) : key(key_), value(value_), newer(nullptr), older(nullptr) {}
    bool hasKey(const char* sought) const {
        if (key == nullptr || sought == nullptr) return key == sought;
        return std::strcmp(key, sought) == 0;
    }

    char* key;  // from StrNew; the dictionary frees it
    void* value;
    DicString* newer;
    DicString* older;
};

class DicString::Sought {
public:
    explicit Sought(const char* key) : mark{0, 1}, text_(key), length_(0) {
        if (key == nullptr) return;  // no text has that mark
        length_ = std::strlen(key);
        mark.first = upToEight(key, length_);
        mark.second = length_ <= 8 ? 0 : secondEight(key, length_);
    }

    std::uint32_t hash() const {
        std::uint64_t hash = hashMixed(mark.first) ^ mark.second;
        for (std::size_t at = sizeof mark; at < length_; at += 8)
            hash = hashMixed(hash) ^ upToEight(text_ + at, length_ - at);
        return hashFinished(hash);
    }
    bool isKeyOf(const DicString* entry, const Mark& itsMark) const {
        if (itsMark.first != mark.first || itsMark.second != mark.second) return false;
        return length_ < sizeof mark || entry->hasKey(text_);
    }

    Mark mark;

private:
    template <class Word>
    static std::uint64_t load(const char* from) {
        Word word;
        std::memcpy(&word, from, sizeof word);
        return word;
    }

    // In a short text two loads overlap, or three bytes do, so that no length needs a loop.
    static std::uint64_t upToEight(const char* text, std::size_t length) {
        if (length >= 8) return load<std::uint64_t>(text);
        if (length >= 4) return load<std::uint32_t>(text) | load<std::uint32_t>(text + length - 4) << (length - 4) * 8;
        if (length == 0) return 0;
        const auto byteAt = [text](std::size_t at) { return load<std::uint8_t>(text + at) << at * 8; };
        return byteAt(0) | byteAt(length / 2) | byteAt(length - 1);
    }
    static std::uint64_t secondEight(const char* text, std::size_t length) {
        if (length >= 16) return load<std::uint64_t>(text + 8);
        return load<std::uint64_t>(text + length - 8) >> (16 - length) * 8;
    }

    const char* text_;
    std::size_t length_;
};

}  // namespace kora
