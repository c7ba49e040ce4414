#pragma once

#include <kora/Sht.h>

#include <cstring>
#include <string_view>

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
    bool isBorrowed() const { return place_ == kBorrowed; }  ///< the text is the owner's, not the sheet's
    /// Text and length as they are told to the owner: those of a borrowed text are what the owner said.
    char* text() const {
        if (place_ <= kLongestInside) return place_ > 0 ? const_cast<char*>(bytes_) : nullptr;
        return outside().text;
    }
    std::int32_t length() const { return place_ <= kLongestInside ? place_ : outside().length; }
    /// What can be read.
    std::string_view view() const {
        const std::int32_t size = length();
        const char* const from = text();
        return from != nullptr && size > 0 ? std::string_view(from, static_cast<std::size_t>(size))
                                           : std::string_view();
    }

    /// A text that stands in the cell, and no extras: what most cells are.
    bool isPlain() const { return static_cast<std::uint8_t>(place_ - 1) < kLongestInside && !hasExtras; }
    char* plainText() const { return const_cast<char*>(bytes_); }
    std::int32_t plainLength() const { return place_; }

private:
    friend class CellStore;

    static constexpr std::uint8_t kLongestInside = 14;
    static constexpr std::uint8_t kOwned = 15;
    static constexpr std::uint8_t kBorrowed = 16;

    struct Outside {
        char* text;
        std::int32_t length;
    };
    Outside outside() const {
        Outside found;
        std::memcpy(&found.text, bytes_, sizeof found.text);
        std::memcpy(&found.length, bytes_ + sizeof found.text, sizeof found.length);
        return found;
    }
    void setOutside(char* text, std::int32_t length, std::uint8_t place) {
        std::memcpy(bytes_, &text, sizeof text);
        std::memcpy(bytes_ + sizeof text, &length, sizeof length);
        place_ = place;
    }

    char bytes_[kLongestInside];
    std::uint8_t place_;  // how many characters stand in bytes_, or what text the pointer and length there tell

public:
    bool dirty : 1;
    bool isProtected : 1;
    bool multiLine : 1;
    bool hasExtras : 1;
};

// Reading at random takes twice as long in cells half as large again.
static_assert(sizeof(TShtCell) == 16);

inline constexpr TShtCell kBlankCell{};
inline constexpr CellExtras kNoExtras{};

}  // namespace kora
