#pragma once

#include <cstdint>
#include <vector>

#include "tools/kora-trace/Names.h"
#include "tools/kora-trace/Record.h"

namespace kora::tracelog {

// The fields of a code, as ERR() packs them.
inline constexpr std::uint32_t kLargestModule = 63, kLargestFile = 63, kLargestLocation = 0xFFF;
inline constexpr std::uint32_t kDataFlag = 1u << 24;

constexpr std::uint32_t levelOf(std::uint32_t code) { return code >> 28; }
constexpr bool hasData(std::uint32_t code) { return (code & kDataFlag) != 0; }
constexpr std::uint32_t moduleOf(std::uint32_t code) { return code >> 18 & kLargestModule; }
constexpr std::uint32_t fileOf(std::uint32_t code) { return code >> 12 & kLargestFile; }
constexpr std::uint32_t locationOf(std::uint32_t code) { return code & kLargestLocation; }
/// A file's place within its module.
constexpr std::uint32_t placeKey(std::uint32_t file, std::uint32_t location) { return file << 12 | location; }

enum class Kind : std::uint8_t {
    step,   ///< a code without a level
    fault,  ///< a code that ERR() filed
    word    ///< no code: data that nobody told the meaning of
};

/// A code with the data words that belong to it, or a word that is no code.
struct Item {
    Kind kind = Kind::word;
    std::size_t first = 0;             ///< the place of its first word in the dump
    std::size_t size = 1;              ///< words, the code among them
    std::uint32_t word = 0;            ///< the first word
    const PlaceName* place = nullptr;  ///< null for places without a name
};

/// What a dump's words say, without the slots that were never written.
std::vector<Item> decode(const Dump& dump, const NameTable& names);

/// The fault of the highest level, of equals the newest; null when there is none.
const Item* severest(const std::vector<Item>& items);

/// What the data word @p index of an item says, counted from 1.
const char* dataMeaning(const Item& item, std::size_t index);

}  // namespace kora::tracelog
