#pragma once

#include <kora/Sht.h>

#include <cstddef>
#include <cstring>
#include <string_view>

#include "strings/Bytes.h"

namespace kora {

/// What few cells have besides. Their row keeps it.
struct CellExtras {
    void* data = nullptr;
    std::int32_t markValue = 0;
    eShtCellAlign align = ShtCellAlignLeft;
    std::uint16_t flags = 0;
    char mark = 0;
};

/// A text cell, as small as can be, since a sheet may hold many millions: a short text stands in the cell itself. Cells
/// are moved as bytes, and one whose bytes are all zero is blank. What they own is the CellStore's, which writes them.
class TShtCell {
public:
    /// The text is the owner's, not the sheet's.
    bool isBorrowed() const { return length_ == 0 && outside().isBorrowed; }
    /// Text and length as they are told to the owner: those of a borrowed text are what the owner said.
    char* text() const { return length_ > 0 ? const_cast<char*>(bytes_) : outside().text; }
    std::int32_t length() const { return length_ > 0 ? length_ : outside().length; }
    /// What can be read.
    std::string_view view() const {
        const std::int32_t size = length();
        const char* const from = text();
        return from != nullptr && size > 0 ? std::string_view(from, static_cast<std::size_t>(size))
                                           : std::string_view();
    }

    /// A text that stands in the cell, and no extras: what most cells are.
    bool isPlain() const { return !hasExtras && length_ > 0; }
    char* plainText() const { return const_cast<char*>(bytes_); }
    std::int32_t plainLength() const { return length_; }

private:
    friend class CellStore;

    static constexpr std::size_t kLongestInside = 15;

    // Where the text is, when it does not stand in the cell. No text is one of the sheet's of no length.
    struct Outside {
        char* text;
        std::int32_t length;
        bool isBorrowed;
    };
    Outside outside() const {
        Outside found;
        std::memcpy(&found.text, bytes_, sizeof found.text);
        std::memcpy(&found.length, bytes_ + offsetof(Outside, length), sizeof found.length);
        std::memcpy(&found.isBorrowed, bytes_ + offsetof(Outside, isBorrowed), sizeof found.isBorrowed);
        return found;
    }
    void setOutside(const Outside& place) {
        std::memcpy(bytes_, &place, offsetof(Outside, isBorrowed) + sizeof place.isBorrowed);
        length_ = 0;
    }
    void setInside(const char* text, std::size_t length) {
        moveShort(bytes_, text, length);
        length_ = length & kLongestInside;
    }

    char bytes_[kLongestInside];  // the text, or where it is

public:
    bool hasExtras : 1;
    bool dirty : 1;
    bool isProtected : 1;
    bool multiLine : 1;

private:
    std::uint8_t length_ : 4;  // how many characters stand in bytes_; 0 when none do
};

// Reading at random takes twice as long in cells half as large again.
static_assert(sizeof(TShtCell) == 16);

inline constexpr TShtCell kBlankCell{};
inline constexpr CellExtras kNoExtras{};

}  // namespace kora
